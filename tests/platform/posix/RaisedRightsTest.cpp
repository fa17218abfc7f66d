#include "../Surroundings.h"
#include "platform/Folders.h"
#include "platform/Registry.h"
#include "platform/ServiceControl.h"
#include "platform/SharedFile.h"
#include "platform/Shell.h"

#include <doctest/doctest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace platform;

namespace {

const RegistryKey User{RegistryRoot::CurrentUser, "SOFTWARE\\Brenvia\\Settings"};

uid_t OwnerOf(const fs::path& path) {
    struct stat status = {};
    REQUIRE(::lstat(path.c_str(), &status) == 0);
    return status.st_uid;
}

/// A user's folders as a program with raised rights meets them; where the tests have no such rights they are
/// this user's own.
class UsersHome {
public:
    UsersHome() {
        Give(m_home.Path());
        WriteFile(m_outside.Path() / "secret", "Text=secret\n");
        ::chmod((m_outside.Path() / "secret").c_str(), 0600);
    }
    static bool IsRaised() { return ::geteuid() == 0; }
    static uid_t User() { return IsRaised() ? 12345 : ::geteuid(); }
    static void Give(const fs::path& path) {
        REQUIRE(::lchown(path.c_str(), User(), static_cast<gid_t>(-1)) == 0);
    }
    void Link(const fs::path& target, const fs::path& link) const {
        fs::create_directories(link.parent_path());
        fs::create_symlink(target, link);
        for (fs::path path = link; path != Path(); path = path.parent_path())
            Give(path);
    }
    const fs::path& Path() const { return m_home.Path(); }
    fs::path Outside() const { return m_outside.Path(); }
    bool IsSecretKept() const { return ReadFile(m_outside.Path() / "secret") == "Text=secret\n"; }

private:
    TemporaryHome m_home;
    TemporaryFolder m_outside;
    VariableSet m_user{"HOME", (m_home.Path() / "home").string()};
    VariableSet m_state{"XDG_STATE_HOME", {}};
};

} // namespace

TEST_CASE("what is made in a user's folder belongs to that user") {
    const UsersHome home;
    CHECK(MakeFolders(home.Path() / "logging/deep"));
    CHECK(AppendToFile(home.Path() / "logging/log", "line\n") == 5);
    CHECK(FileLock::TryAcquire(home.Path() / "logging/log.lock"));
    CHECK(WriteRegistryDword(User, "Width", 1));
    CHECK(WriteRegistryDword(User, "Width", 2));
    CHECK(ServiceLock::Take(home.Path() / "agent", "agent"));
    CHECK(MakeShortcut(home.Path() / "desktop", "A", "/a", ""));
    int seen = 0;
    for (const fs::directory_entry& made : fs::recursive_directory_iterator(home.Path())) {
        CAPTURE(made.path());
        CHECK(OwnerOf(made) == UsersHome::User());
        ++seen;
    }
    CHECK(seen == 12);
    const fs::path memory = ConsoleStateFile();
    CHECK(memory.is_absolute());
    CHECK(memory.string().starts_with(home.Path().string()) == !UsersHome::IsRaised());
}

TEST_CASE("no link in a user's folder leads to what is another's") {
    const UsersHome home;
    home.Link(home.Outside() / "secret", home.Path() / "log");
    CHECK_FALSE(AppendToFile(home.Path() / "log", "line\n"));
    CHECK_FALSE(FileLock::TryAcquire(home.Path() / "log"));

    const fs::path key = home.Path() / "brenvia/SOFTWARE/Brenvia/Settings.ini";
    home.Link(home.Outside() / "secret", key);
    home.Link(home.Outside() / "secret", key.string() + ".new");
    CHECK(WriteRegistryDword(User, "Width", 7));
    home.Link(home.Outside() / "secret", home.Path() / "desktop/A.desktop");
    CHECK(MakeShortcut(home.Path() / "desktop", "A", "/a", ""));
    CHECK(home.IsSecretKept());
    if (UsersHome::IsRaised()) {
        CHECK(ReadFile(key) == "Width=7\n");

        fs::create_hard_link(home.Outside() / "secret", home.Path() / "hard");
        CHECK_FALSE(AppendToFile(home.Path() / "hard", "line\n"));
        home.Link(home.Outside(), home.Path() / "linked");
        CHECK_FALSE(MakeFolders(home.Path() / "linked/made"));
        CHECK_FALSE(AppendToFile(home.Path() / "linked/made", "line\n"));
        CHECK_FALSE(fs::exists(home.Outside() / "made"));
        CHECK(home.IsSecretKept());
    }
    fs::create_directories(home.Path() / "real");
    UsersHome::Give(home.Path() / "real");
    home.Link(home.Path() / "real", home.Path() / "own");
    CHECK(AppendToFile(home.Path() / "own/log", "line\n"));
}

TEST_CASE("a start command counts only from those whose commands may be run") {
    const TemporaryHome home;
    const fs::path proof = home.Path() / "proof";
    const fs::path command = home.Path() / "agent.start";
    const std::string invoker = std::to_string(UsersHome::User());
    struct Case {
        const char* what;
        uid_t owner;
        mode_t mode;
        std::optional<std::string> invokedBy;
        bool runs;
    };
    const Case cases[] = {
        {"this user's own", ::geteuid(), 0644, {}, true},
        {"writable by the group", ::geteuid(), 0664, {}, false},
        {"writable by everybody", ::geteuid(), 0646, {}, false},
        {"the invoking user's", UsersHome::User(), 0644, invoker, true},
        {"another user's", UsersHome::User(), 0644, {}, !UsersHome::IsRaised()},
        {"another than the invoking user's", UsersHome::User(), 0644, "23456", !UsersHome::IsRaised()},
        {"invoked by nonsense", UsersHome::User(), 0644, invoker + "x", !UsersHome::IsRaised()},
    };
    for (const Case& expected : cases) {
        CAPTURE(expected.what);
        const VariableSet invokedBy("PKEXEC_UID", expected.invokedBy);
        const VariableSet notBySudo("SUDO_UID", {});
        REQUIRE(WriteStartCommand(home.Path(), "agent", {"/bin/touch", proof.string()}));
        REQUIRE(::chown(command.c_str(), expected.owner, static_cast<gid_t>(-1)) == 0);
        REQUIRE(::chmod(command.c_str(), expected.mode) == 0);
        const ServiceStart started = StartService("agent");
        CHECK(started.accepted == expected.runs);
        CHECK((expected.runs || started.refusal.find("another user") != std::string::npos));
        CHECK((!expected.runs || ComesTrue([&] { return fs::exists(proof); })));
        fs::remove(proof);
        fs::remove(command);
    }
    WriteFile(home.Path() / "elsewhere", "/bin/touch\n" + proof.string() + '\n');
    fs::create_symlink(home.Path() / "elsewhere", command);
    CHECK_FALSE(StartService("agent"));
    CHECK_FALSE(fs::exists(proof));
}
