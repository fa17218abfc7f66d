#include "devservice/ServiceRequests.h"

#include "devservice/BackupChange.h"
#include "devservice/BackupRecords.h"
#include "devservice/Providers.h"
#include "devservice/WireText.h"

#include <algorithm>

namespace devservice {

namespace {

constexpr char SettingsPath[] = "/settings/";
constexpr char SchedulePath[] = "/schedule/";
constexpr char ProfilePath[] = "/profile/";
constexpr char CardsPath[] = "/mysafe/";
constexpr char WritersPath[] = "/backupsvr/writers";
constexpr char CachePath[] = "/DavCache/";
constexpr char ResourcesPath[] = "/resources";
constexpr char Xml[] = "text/xml";

// What the quota of the home storage is, and what older versions of files use of it.
constexpr uint64_t Allocated = uint64_t{25} << 30;
constexpr uint64_t UsedByVersions = uint64_t{9'986'000'000};

const Answer NotFound{404, "There is no such thing here.\n"};
const Answer BadRequest{400, "This request cannot be understood.\n"};
const Answer Done{200, "OK"};
const Answer NotLoggedIn{503, "This storage is not logged in.\n"};

/// The status that a part of the service came to, with words.
Answer Outcome(int status) {
    return status == Done.status ? Done : Answer{status, "The service did not do this.\n"};
}

/// "TASK:NUMBER", split at the last colon.
std::optional<std::pair<std::string, int>> SubTaskOf(const std::string& text) {
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos)
        return {};
    const std::optional<int> number = NumberOf(std::string_view(text).substr(colon + 1));
    return number ? std::optional(std::pair(text.substr(0, colon), *number)) : std::nullopt;
}

/// The virtual directory that a path leads into, with or without the separator before it.
std::string FirstFolder(const std::string& path) {
    const size_t begin = std::min(path.find_first_not_of("/\\"), path.size());
    return path.substr(begin, path.find_first_of("/\\", begin) - begin);
}

} // namespace

struct ServiceRequests::Parts {
    std::string path;  ///< decoded
    std::string query; ///< as it came
    std::string body;  ///< without its closing zero octet
};

Answer ServiceRequests::Handle(const ReceivedRequest& request) {
    const size_t mark = std::min(request.target.find('?'), request.target.size());
    Parts parts{PercentDecode(request.target.substr(0, mark)),
                request.target.substr(std::min(mark + 1, request.target.size())), request.body};
    if (!parts.body.empty() && parts.body.back() == '\0')
        parts.body.pop_back();
    if (StartsWith(parts.path, SettingsPath))
        return HandleSettings(request, parts);
    if (request.verb == "GET" && StartsWith(parts.path, SchedulePath))
        return HandleSchedule(parts);
    if (request.verb == "GET" && StartsWith(parts.path, ProfilePath))
        return HandleProfile(parts);
    if (request.verb == "GET" && StartsWith(parts.path, CardsPath))
        return HandleCards(parts);
    if (request.verb == "GET" && parts.path == WritersPath)
        return {200, WriterList(m_writers)};
    if (request.verb == "GET" && StartsWith(parts.path, CachePath))
        return HandleCache(parts);
    if (parts.path == ResourcesPath || StartsWith(parts.path, std::string(ResourcesPath) + '/'))
        return HandleResources(request.verb, parts);
    return NotFound;
}

Answer ServiceRequests::HandleSettings(const ReceivedRequest& request, const Parts& parts) {
    const std::string name = parts.path.substr(sizeof SettingsPath - 1);
    if (request.verb == "GET") {
        const auto value = m_settings.Get(name);
        return value ? Answer{200, *value} : NotFound; // the reader has a default of its own
    }
    const auto type = Parameter(parts.query, "ValueType");
    const auto value = Parameter(parts.query, "Value");
    if (request.verb != "PUT" || name.empty() || !value || (type != "1" && type != "2" && type != "4"))
        return BadRequest;
    m_settings.Set(name, *type, *value);
    return Done;
}

Answer ServiceRequests::HandleSchedule(const Parts& parts) {
    const std::string command = Lower(parts.path.substr(sizeof SchedulePath - 1));
    if (command == "restoreapp")
        return Restore(parts);
    if (command == "backupex" || command == "advbackup")
        return CreateBackup(command == "advbackup", parts.body);
    if (command == "changebackup")
        return ChangeBackup(parts.body);
    const std::string argument = PercentDecode(parts.query);
    bool done = false;
    if (command == "startnow")
        done = m_engine.Start(argument);
    else if (command == "pausetask")
        done = m_engine.Pause(argument);
    else if (command == "resumetask")
        done = m_engine.Resume(argument);
    else if (command == "deletetask")
        done = m_engine.Delete(argument);
    else if (command == "dropfoldersync")
        done = m_syncFolders.Sync(parts.body);
    else if (command == "getsynctask") {
        const auto task = m_syncFolders.TaskOf(parts.body);
        return task ? Answer{200, *task} : NotFound;
    } else if (const auto subTask = command == "delsub" ? SubTaskOf(argument) : std::nullopt)
        done = m_engine.DeleteSubTask(subTask->first, subTask->second);
    return done ? Done : NotFound;
}

Answer ServiceRequests::Restore(const Parts& parts) {
    auto task = m_snapshots.RestoreOf(parts.body, m_engine.Tasks(), m_engine.Now());
    if (!task)
        return Refused("A restore was refused: its record is none, or its snapshot is not there");
    return {200, m_engine.Add(std::move(*task))};
}

/// Answers with the new task's identifier, or says in the trace and in the answer why there is none.
Answer ServiceRequests::CreateBackup(bool ofApplications, const std::string& record) {
    try {
        NewBackup made = ofApplications ? ReadApplicationRecord(record, m_engine.Now())
                                        : ReadBackupRecord(record, m_engine.Now());
        if (!m_profile.Find(FirstFolder(made.target)))
            throw RecordError("its target \"" + made.target + "\" is in no mounted virtual directory");
        if (made.encrypted && m_settings.Get("EncFolderKey").value_or("").empty())
            throw RecordError("it is to be encrypted, and no key is stored");
        return {200, m_engine.Add(std::move(made.task))};
    } catch (const RecordError& error) {
        return Refused(std::string("A backup was refused: ") + error.what());
    }
}

Answer ServiceRequests::Refused(const std::string& why) {
    m_engine.Unwritten().audit.push_back({2, why + '.', m_engine.Now()});
    return {400, why + ".\n"};
}

/// Only while consoles may use forms of their own.
Answer ServiceRequests::ChangeBackup(const std::string& body) {
    const size_t tab = std::min(body.find('\t'), body.size());
    const auto found = m_engine.Tasks().find(body.substr(0, tab));
    if (m_settings.Get("ConsoleRecords") != "1" || found == m_engine.Tasks().end())
        return NotFound;
    try {
        m_engine.Put(
            ChangedBackup(found->second, body.substr(std::min(tab + 1, body.size())), m_engine.Now()),
            SubTaskFileOf::None);
        return Done;
    } catch (const RecordError& error) {
        return Refused(std::string("A change of a backup was refused: ") + error.what());
    }
}

Answer ServiceRequests::HandleCache(const Parts& parts) {
    const std::string command = Lower(parts.path.substr(sizeof CachePath - 1));
    if (command == "prefetchfolder")
        return OfFolder(parts);
    if (command == "droprevert")
        return m_syncFolders.Revert(parts.body) ? Done : NotFound;
    const auto versions = command == "getfilever" ? m_syncFolders.Versions(parts.body) : std::nullopt;
    return versions ? Answer{200, *versions} : NotFound;
}

Answer ServiceRequests::HandleProfile(const Parts& parts) {
    m_profile.Settle(m_engine.Now());
    const std::string method = Lower(Parameter(parts.query, "PMCMethod").value_or(""));
    if (method == "getvdirlist")
        return {200, m_profile.ListAnswer(), Xml};
    if (method == "getpopularstoragelist")
        return {200, ProviderList(), Xml};
    if (method == "addnewnode")
        return AddNode(parts);
    if (method == "removenode")
        return RemoveNode(parts);
    if (method == "consolepublish")
        return OfFolder(parts);
    if (method == "forcerelogin")
        return Outcome(m_profile.Relogin(Parameter(parts.query, "VDirName").value_or(""), m_engine.Now()));
    const VirtualDirectory* directory = method == "getvdirstatus" ? m_profile.Find(parts.body) : nullptr;
    return directory ? Answer{200, std::to_string(directory->status)} : NotFound;
}

/// What is asked of a virtual directory's folder, as in "/Name", and shows nowhere.
Answer ServiceRequests::OfFolder(const Parts& parts) const {
    return StartsWith(parts.body, "/") && m_profile.Find(parts.body.substr(1)) ? Done : NotFound;
}

Answer ServiceRequests::AddNode(const Parts& parts) {
    const int status = m_profile.AddNode(parts.body, m_engine.Now());
    if (status == Done.status)
        m_tree.Mount(m_profile.Directories().back().name);
    return Outcome(status);
}

Answer ServiceRequests::RemoveNode(const Parts& parts) {
    const auto name = Element(parts.body, "NodeIDFieldValue");
    const bool whole = StartsWith(parts.body, "<ZEPProfileReq>") && name &&
                       Element(parts.body, "NodeContainer") == "Resources/VDirs" &&
                       Element(parts.body, "NodeIDFieldName") == "Display.Name";
    if (!whole)
        return BadRequest;
    if (!m_profile.Remove(*name))
        return NotFound;
    m_tree.Dismount(*name);
    return Done;
}

Answer ServiceRequests::HandleCards(const Parts& parts) {
    const std::string method = Lower(Parameter(parts.query, "PMCMethod").value_or(""));
    if (method == "addnewcard")
        return Outcome(m_profile.AddCard(parts.body));
    const bool known = method == "getcard" && Parameter(parts.query, "CardNameOnly") == "Resources";
    const auto card =
        known ? m_profile.CardAnswer(Parameter(parts.query, "CardId").value_or("")) : std::nullopt;
    return card ? Answer{200, *card, Xml} : NotFound;
}

Answer ServiceRequests::HandleResources(const std::string& verb, const Parts& parts) {
    m_profile.Settle(m_engine.Now());
    const std::string path = parts.path.substr(sizeof ResourcesPath - 1);
    if (verb == "PROPFIND" && SameName(path, "/home/quota"))
        return Quota();
    const std::string name = path.substr(0, path.find('/', 1)).substr(path.empty() ? 0 : 1);
    const VirtualDirectory* directory = m_profile.Find(name);
    std::string destination = Parameter(parts.query, "Destination").value_or("");
    if (verb == "MOVE") {
        if (!StartsWith(destination, std::string(ResourcesPath) + '/'))
            return BadRequest;
        destination.erase(0, sizeof ResourcesPath - 1);
        if (directory && path.size() == name.size() + 1)
            return MoveDirectory(name, destination.substr(1));
    }
    if (directory && directory->status != 3)
        return NotLoggedIn;
    return m_tree.Handle(verb, path, destination);
}

Answer ServiceRequests::MoveDirectory(const std::string& name, const std::string& destination) {
    if (!DavTree::IsPlainName(destination) || !m_profile.Rename(name, destination))
        return {409, "There is such a virtual directory, or none can be named so.\n"};
    m_tree.Rename(name, destination);
    return Done;
}

Answer ServiceRequests::Quota() const {
    if (!m_profile.Find("Home"))
        return NotFound;
    return {207,
            "<?xml version=\"1.0\" encoding=\"utf-8\"?><D:multistatus xmlns:D=\"DAV:\"><D:response><D:href>"
            "/resources/home/quota</D:href><D:propstat><D:prop><D:quota-used-bytes>" +
                std::to_string(UsedByVersions + m_tree.Used("Home")) +
                "</D:quota-used-bytes><D:quota-allocated-bytes>" + std::to_string(Allocated) +
                "</D:quota-allocated-bytes></D:prop><D:status>HTTP/1.1 200 OK</D:status></D:propstat>"
                "</D:response></D:multistatus>",
            Xml};
}

} // namespace devservice
