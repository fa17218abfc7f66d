#pragma once

#include "devservice/Schedule.h"
#include "devservice/Settings.h"

#include <map>
#include <string_view>
#include <vector>

namespace devservice {

/// A mounted storage account as the list of virtual directories tells it.
struct VirtualDirectory {
    std::string name;
    std::string safeCardId;
    int status = 3; ///< 1 logging in, 2 failed, 3 logged in, 5 its provider is not known here
    std::string providerId{};
    std::string node{};            ///< the document that it was mounted with
    std::optional<SimTime> inAt{}; ///< when the login that is under way ends well; else it does not end
};

enum class Login { In, After, Refused, NoPlugin, Never };

/// How logins go, of all virtual directories or of one.
struct LoginSwitch {
    Login login = Login::In;
    std::chrono::seconds time{0}; ///< of After
    std::string text;             ///< of Refused
    std::string name;             ///< of the virtual directory; all when empty
};

/// "in", "after:SECONDS", "refused:TEXT", "no-plugin" or "never", each with "@NAME" behind its last part
/// where it is for one virtual directory only. None when the text is not understood.
std::optional<LoginSwitch> ParseLogin(const std::string& text);

/// The virtual directories and login cards, kept in a file that only its owner may read. The methods that
/// answer requests return HTTP's status.
class Profile {
public:
    Profile(std::filesystem::path file, Settings& settings) : m_file(std::move(file)), m_settings(settings) {}

    /// False when there is no file yet. Logins that were under way begin anew.
    bool Load(SimTime now);

    /// How logins go from now on, those that are under way too. One for all ends those for one.
    void SetLogin(const LoginSwitch& how, SimTime now);
    /// Ends the logins whose time has come.
    void Settle(SimTime now);

    const std::vector<VirtualDirectory>& Directories() const { return m_directories; }
    void SetDirectories(std::vector<VirtualDirectory> directories);
    const VirtualDirectory* Find(const std::string& name) const; ///< ignoring case

    int AddNode(const std::string& document, SimTime now);
    int Relogin(const std::string& name, SimTime now);
    bool Remove(const std::string& name);
    bool Rename(const std::string& name, const std::string& newName); ///< false when taken or unknown

    int AddCard(const std::string& document);
    std::optional<std::string> CardAnswer(const std::string& id) const;

    std::string ListAnswer() const;

private:
    VirtualDirectory* Entry(const std::string& name);
    const LoginSwitch& LoginOf(const std::string& name) const;
    void BeginLogin(VirtualDirectory& directory, SimTime now);
    void NoteTrouble(const VirtualDirectory& directory, const std::string& text);
    void Save() const;

    std::filesystem::path m_file;
    Settings& m_settings;
    std::vector<VirtualDirectory> m_directories;
    std::map<std::string, std::string> m_cards;  ///< documents by identifier
    std::map<std::string, LoginSwitch> m_logins; ///< by name in small letters; that of all by the empty one
};

} // namespace devservice
