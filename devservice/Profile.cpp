#include "devservice/Profile.h"

#include "devservice/Providers.h"
#include "devservice/RowFile.h"
#include "devservice/WireText.h"

#include <algorithm>

namespace devservice {

namespace {

constexpr int Done = 200;
constexpr int BadRequest = 400;
constexpr int Unknown = 404;
constexpr int Taken = 409;

constexpr int LoggingIn = 1;
constexpr int Failed = 2;
constexpr int LoggedIn = 3;
constexpr int NoPlugin = 5;

std::string CardField(const std::string& field) {
    const auto inner = [&field](const char* tag) { return Element(field, tag).value_or(""); };
    const std::string id = inner("FieldId");
    const ProviderField* known = FindProviderField(id);
    return "<Field" + XmlAttribute("FieldName", inner("FieldName")) +
           XmlAttribute("Encrypted", Lower(inner("Encrypted")) == "true" ? "TRUE" : "FALSE") +
           XmlAttribute("FieldData", inner("FieldData")) + XmlAttribute("FieldId", id) +
           (known ? RuleAttributes(*known) : std::string()) + "/>";
}

} // namespace

std::optional<LoginSwitch> ParseLogin(const std::string& text) {
    const size_t at = text.rfind('@'); // the last one: a refusal may name an address
    const std::string how = text.substr(0, at);
    const size_t colon = how.find(':');
    const std::string word = how.substr(0, colon);
    const std::optional<std::string> rest =
        colon == std::string::npos ? std::nullopt : std::optional(how.substr(colon + 1));
    LoginSwitch result;
    result.name = at == std::string::npos ? std::string() : text.substr(at + 1);
    if (word == "after" && rest) {
        const auto seconds = NumberOf(*rest);
        result.login = Login::After;
        result.time = std::chrono::seconds(seconds.value_or(0));
        return seconds ? std::optional(result) : std::nullopt;
    }
    if (word == "refused" && rest) {
        result.login = Login::Refused;
        result.text = *rest;
        return result;
    }
    constexpr std::pair<std::string_view, Login> plain[] = {
        {"in", Login::In}, {"no-plugin", Login::NoPlugin}, {"never", Login::Never}};
    for (const auto& [name, login] : plain) {
        if (word == name && !rest) {
            result.login = login;
            return result;
        }
    }
    return {};
}

bool Profile::Load(SimTime now) {
    m_directories.clear();
    m_cards.clear();
    const std::vector<Row> rows = LoadRows(m_file);
    for (const Row& row : rows) {
        if (row.size() == 3 && row[0] == "card")
            m_cards[row[1]] = row[2];
        if (row.size() == 6 && row[0] == "vdir")
            m_directories.push_back({row[1], row[2], NumberOf(row[3]).value_or(Failed), row[4], row[5]});
    }
    for (VirtualDirectory& directory : m_directories)
        if (directory.status == LoggingIn)
            BeginLogin(directory, now);
    return std::filesystem::exists(m_file);
}

void Profile::Save() const {
    std::vector<Row> rows;
    rows.reserve(m_cards.size() + m_directories.size());
    for (const auto& [id, document] : m_cards)
        rows.push_back({"card", id, document});
    for (const VirtualDirectory& each : m_directories)
        rows.push_back(
            {"vdir", each.name, each.safeCardId, std::to_string(each.status), each.providerId, each.node});
    SaveRows(m_file, rows);
}

void Profile::SetLogin(const LoginSwitch& how, SimTime now) {
    if (how.name.empty())
        m_logins.clear();
    m_logins[Lower(how.name)] = how;
    for (VirtualDirectory& directory : m_directories)
        if (directory.status == LoggingIn && (how.name.empty() || SameName(how.name, directory.name)))
            BeginLogin(directory, now);
    Save();
}

const LoginSwitch& Profile::LoginOf(const std::string& name) const {
    static const LoginSwitch usual;
    for (const std::string& key : {Lower(name), std::string()})
        if (const auto found = m_logins.find(key); found != m_logins.end())
            return found->second;
    return usual;
}

void Profile::BeginLogin(VirtualDirectory& directory, SimTime now) {
    const LoginSwitch& how = LoginOf(directory.name);
    directory.status = LoggingIn;
    directory.inAt.reset();
    NoteTrouble(directory, {});
    if (!IsProvider(directory.providerId) || how.login == Login::NoPlugin) {
        directory.status = NoPlugin;
    } else if (how.login == Login::Refused) {
        directory.status = Failed;
        NoteTrouble(directory, how.text);
    } else if (how.login != Login::Never) {
        directory.inAt = now + how.time;
    }
    Settle(now);
}

void Profile::NoteTrouble(const VirtualDirectory& directory, const std::string& text) {
    const std::string setting = directory.providerId + '/' + directory.name;
    if (text.empty())
        m_settings.Remove(setting);
    else
        m_settings.Set(setting, "2", text);
}

void Profile::Settle(SimTime now) {
    bool changed = false;
    for (VirtualDirectory& directory : m_directories) {
        if (directory.status == LoggingIn && directory.inAt && now >= *directory.inAt) {
            directory.status = LoggedIn;
            directory.inAt.reset();
            changed = true;
        }
    }
    if (changed)
        Save();
}

void Profile::SetDirectories(std::vector<VirtualDirectory> directories) {
    m_directories = std::move(directories);
    Save();
}

const VirtualDirectory* Profile::Find(const std::string& name) const {
    const auto found = std::find_if(m_directories.begin(), m_directories.end(),
                                    [&](const VirtualDirectory& each) { return SameName(each.name, name); });
    return found == m_directories.end() ? nullptr : &*found;
}

VirtualDirectory* Profile::Entry(const std::string& name) {
    const VirtualDirectory* found = Find(name);
    return found ? m_directories.data() + (found - m_directories.data()) : nullptr;
}

int Profile::AddNode(const std::string& document, SimTime now) {
    const auto container = Element(document, "NodeContainer");
    const auto node = Element(document, "NodeXML");
    const std::string text = PercentDecode(node.value_or(""));
    const auto card = Element(text, "SafeCardId");
    const auto name = Element(text, "Display.Name");
    const auto provider = Element(text, "SPID");
    const bool whole = StartsWith(document, "<ZEPProfileReq>") && container == "Resources/VDirs" && node &&
                       Element(text, "VDir") && card && name && !name->empty() && provider;
    if (!whole || m_cards.count(*card) == 0)
        return BadRequest;
    if (Find(*name))
        return Taken;
    BeginLogin(m_directories.emplace_back(VirtualDirectory{*name, *card, LoggingIn, *provider, text}), now);
    Save();
    return Done;
}

int Profile::Relogin(const std::string& name, SimTime now) {
    VirtualDirectory* directory = Entry(name);
    if (!directory)
        return Unknown;
    BeginLogin(*directory, now);
    Save();
    return Done;
}

bool Profile::Remove(const std::string& name) {
    const VirtualDirectory* directory = Find(name);
    if (!directory)
        return false;
    m_directories.erase(m_directories.begin() + (directory - m_directories.data()));
    Save();
    return true;
}

bool Profile::Rename(const std::string& name, const std::string& newName) {
    VirtualDirectory* directory = Entry(name);
    const VirtualDirectory* other = Find(newName);
    if (!directory || (other && other != directory))
        return false;
    directory->name = newName;
    Save();
    return true;
}

int Profile::AddCard(const std::string& document) {
    const auto id = Element(document, "Id");
    const auto fields = Element(document, "Fields");
    // Cards come without the closing tag of their root.
    const bool whole = StartsWith(document, "<SafeCard><Name>") && id && !id->empty() && fields &&
                       document.size() >= 9 && document.substr(document.size() - 9) == "</Fields>";
    if (!whole)
        return BadRequest;
    for (const std::string& field : Elements(*fields, "Field"))
        if (!Element(field, "FieldName") || !Element(field, "FieldId") || !Element(field, "Encrypted") ||
            !IsBase64(Element(field, "FieldData").value_or("?")))
            return BadRequest;
    m_cards[*id] = document;
    Save();
    return Done;
}

std::optional<std::string> Profile::CardAnswer(const std::string& id) const {
    const auto found = m_cards.find(id);
    if (found == m_cards.end())
        return {};
    std::string fields;
    for (const std::string& field : Elements(found->second, "Field"))
        fields += CardField(field);
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><SafeCard" + XmlAttribute("Id", id) +
           XmlAttribute("Name", Element(found->second, "Name").value_or("")) + '>' + fields + "</SafeCard>";
}

std::string Profile::ListAnswer() const {
    std::string list;
    for (const VirtualDirectory& each : m_directories)
        list += "<VDir" + XmlAttribute("Name", each.name) + XmlAttribute("SafeCardId", each.safeCardId) +
                XmlAttribute("Status", std::to_string(each.status == NoPlugin ? Failed : each.status)) +
                XmlAttribute("SPId", each.providerId) + "/>";
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><Response><VDirs>" + list + "</VDirs></Response>";
}

} // namespace devservice
