#include "devservice/SyncFolders.h"

#include "devservice/WireText.h"
#include "platform/Folders.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace devservice {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr char TaskName[] = "Cloud Sync Folder Task For ";
constexpr auto Between = 90s;   ///< two changes of other computers
constexpr int MostAtOnce = 40;  ///< changes that are caught up with after a long time
constexpr size_t FullEvery = 4; ///< versions: the others are differences
constexpr unsigned DeleteEvery = 11;

const Computer Others[] = {{"STUDY-PC", "mara"}, {"LAPTOP-7", "jonas"}};

constexpr const char* Files[] = {"plan.odt",     "rota.xlsx",       "logo.svg",
                                 "minutes.docx", "photos/hall.jpg", "photos/garden.jpg"};

std::string StorePath(const std::string& folder) {
    std::string path = "/";
    path += VersionStore;
    path += '/';
    return path += folder;
}

/// Where the content of a file's versions is kept beside its list: hidden, as all that begins with a dot.
std::string ContentFolder(const std::string& stored) {
    const size_t slash = stored.rfind('/');
    return stored.substr(0, slash + 1) + '.' + stored.substr(slash + 1) + '/';
}

std::vector<std::string> Split(const std::string& text, char mark) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, mark);)
        parts.push_back(part);
    return parts;
}

std::string ContentBy(const Computer& computer, const std::string& file, SimTime time) {
    const std::string line =
        file + ", written by " + computer.user + " on " + computer.name + " at " + FormatTime(time) + '\n';
    std::string content;
    for (size_t lines = 20 + static_cast<size_t>(StampOf(time) % 300); lines > 0; --lines)
        content += line;
    return content;
}

/// Three files that no upload gets hold of.
void LetSomeFail(Task& task) {
    static constexpr const char* files[] = {"ledger 2023.qdb", "ledger 2024.qdb", "members.qdb"};
    for (const char* file : files) {
        SubTask failed = task.subTasks.empty() ? SubTask() : task.subTasks.back();
        ++failed.number;
        failed.type = "DPUT";
        failed.parameter1 = task.description.substr(0, task.description.find('\t')) + '\\' + file;
        failed.size = 830'912;
        failed.retries = 3;
        failed.state = SubTaskState::Failed;
        failed.note = "The file is used by another program";
        task.subTasks.push_back(failed);
    }
}

} // namespace

std::vector<SyncFolders::Record> SyncFolders::Records() const {
    std::vector<Record> records;
    for (const std::string& line : Split(m_settings.Get("DropFolders").value_or(""), '\n'))
        if (const size_t tab = line.find('\t'); tab != std::string::npos)
            records.push_back({line.substr(0, tab), line.substr(tab + 1)});
    return records;
}

std::optional<SyncFolders::Record> SyncFolders::Find(const std::string& name) const {
    for (const Record& record : Records())
        if (SameName(record.name, name))
            return record;
    return {};
}

const Task* SyncFolders::TaskNamed(const std::string& name) const {
    for (const auto& [id, task] : m_engine.Tasks())
        if (SameName(task.name, TaskName + name))
            return &task;
    return nullptr;
}

std::optional<std::string> SyncFolders::TaskOf(const std::string& name) {
    if (const Task* known = TaskNamed(name))
        return known->id;
    const auto record = Find(name);
    if (!record)
        return {};
    Task task;
    char id[64];
    std::snprintf(id, sizeof id, "{%08X-5B1E-4C7A-9D20-3F6A%08X}",
                  static_cast<unsigned>(std::hash<std::string>()(name)), m_engine.ChangeCount());
    task.id = id;
    task.name = TaskName + record->name;
    task.type = "Cloud Sync Folder Task";
    task.description = record->path + "\t/" + record->name;
    task.schedule = {ScheduleKind::Sync, ScheduleMode::Continuous, m_engine.Now()};
    task.created = m_engine.Now();
    task.nextRun = m_engine.Now() + 1min;
    m_engine.Put(task);
    return task.id;
}

bool SyncFolders::Sync(const std::string& name) {
    const auto task = TaskOf(name);
    return task && m_engine.Start(*task);
}

std::optional<std::string> SyncFolders::Text(const std::string& path) const {
    const Answer answer = m_tree.Handle("GET", path, {});
    return answer.status == 200 ? std::optional(answer.body) : std::nullopt;
}

std::optional<std::string> SyncFolders::Versions(const std::string& path) const {
    return StartsWith(path, StorePath({})) ? Text(path) : std::nullopt;
}

void SyncFolders::Change(const std::string& folder, const std::string& file, char operation,
                         const Computer& computer, const std::string& content, SimTime time) {
    // A version is known by its stamp alone, so no two have the same.
    if (m_lastChange)
        time = std::max(time, *m_lastChange + 1s);
    while (!m_lastChange && m_tree.Find(StorePath({}), std::to_string(StampOf(time))))
        time += 1s;
    m_lastChange = time;
    const std::string stored = StorePath(folder) + '/' + file;
    const std::string before = Text(stored).value_or("");
    const bool isDifference =
        operation == 'm' && !before.empty() &&
        static_cast<size_t>(std::count(before.begin(), before.end(), '\n')) % FullEvery != 0;
    const std::string stamp = std::to_string(StampOf(time));
    m_tree.Write(stored,
                 std::string(1, operation) + '\t' + stamp + '\t' +
                     (isDifference ? Split(before, '\t').at(1) : "0") + '\t' + computer.name + '\t' +
                     computer.user + '\n' + before,
                 time);
    m_tree.Write(ContentFolder(stored) + stamp, content, time);
    if (operation == 'd')
        m_tree.Handle("DELETE", '/' + folder + '/' + file, {});
    else
        m_tree.Write('/' + folder + '/' + file, content, time);
    WriteLocally(folder, file, operation, content);
    m_engine.Unwritten().history.push_back(
        {VersionUri(folder, file), operation, computer.user, computer.name, folder, time});
}

/// Only in a folder that is there.
void SyncFolders::WriteLocally(const std::string& folder, const std::string& file, char operation,
                               const std::string& content) const {
    const auto record = Find(folder);
    const fs::path local = record ? platform::PathFromUtf8(record->path) : fs::path();
    std::error_code error;
    if (!local.is_absolute() || !fs::is_directory(local, error))
        return;
    const fs::path place = local / platform::PathFromUtf8(file);
    if (operation == 'd') {
        fs::remove(place, error);
        return;
    }
    fs::create_directories(place.parent_path(), error);
    std::ofstream(place, std::ios::binary) << content;
}

bool SyncFolders::Revert(const std::string& key) {
    const std::string stamp = key.substr(0, key.find('#'));
    const auto content = stamp.empty() ? std::nullopt : m_tree.Find(StorePath({}), stamp);
    if (!content)
        return false;
    // "/STORE/Team/photos/.hall.jpg/13385552400" is a version of "/STORE/Team/photos/hall.jpg".
    const std::string inside = content->substr(StorePath({}).size());
    const size_t hidden = inside.rfind("/.");
    const size_t folderEnd = inside.find('/');
    const std::string folder = inside.substr(0, folderEnd);
    std::string file = inside.substr(folderEnd + 1, inside.rfind('/') - folderEnd - 1);
    file.erase(hidden - folderEnd, 1);
    const std::vector<std::string> lines = Split(Text(StorePath(folder) + '/' + file).value_or(""), '\n');
    for (size_t line = 1; line < lines.size(); ++line) {
        const std::vector<std::string> fields = Split(lines[line], '\t');
        const std::string known = fields.at(2) == "0" ? fields[1] : fields[1] + '#' + fields[2];
        if (known != key || fields[0] == "d")
            continue;
        const Computer here{m_settings.Get("ComputerName").value_or("STUDY-PC"),
                            m_settings.Get("WriterName").value_or("Local User")};
        Change(folder, file, lines[0][0] == 'd' ? 'a' : 'm', here, Text(*content).value_or(""),
               m_engine.Now());
        return true;
    }
    return false;
}

void SyncFolders::Advance(SimTime since) {
    const SimTime now = m_engine.Now();
    if (!m_nextChange)
        m_nextChange = since + Between;
    for (int caughtUp = 0; *m_nextChange <= now && caughtUp < MostAtOnce; ++caughtUp) {
        for (const Record& record : Records())
            ChangeSomething(record);
        *m_nextChange += Between;
    }
    if (*m_nextChange <= now)
        m_nextChange = now + Between;
}

void SyncFolders::ChangeSomething(const Record& record) {
    const Task* task = TaskNamed(record.name);
    const bool mounted = m_tree.Handle("PROPFIND", '/' + record.name, {}).status == 207;
    if (!task || task->state == TaskState::Paused || !mounted)
        return;
    const Computer& computer = Others[m_changes % std::size(Others)];
    const std::string file = Files[m_changes * 5 % std::size(Files)];
    const bool isThere = Text('/' + record.name + '/' + file).has_value();
    const char operation = !isThere ? 'a' : m_changes % DeleteEvery == DeleteEvery - 1 ? 'd' : 'm';
    ++m_changes;
    Change(record.name, file, operation, computer,
           operation == 'd' ? std::string() : ContentBy(computer, file, m_engine.Now()), *m_nextChange);
}

void SyncFolders::Populate(const fs::path& local) {
    static constexpr const char* folders[] = {"Team", "Archive", "Home"};
    static constexpr TaskState states[] = {TaskState::Running, TaskState::Paused, TaskState::Failed};
    std::string value;
    for (const char* folder : folders) {
        const fs::path place = local / (std::string("Cloud Sync Folder - ") + folder);
        fs::create_directories(place);
        value += (value.empty() ? "" : "\n") + std::string(folder) + '\t' + platform::Utf8FromPath(place);
        for (const char* suffix : {"", "_"})
            m_settings.Set(std::string("LTN_") + folder + suffix, *suffix ? "2" : "1",
                           *suffix ? "{delgroup}" : "0");
    }
    m_settings.Set("DropFolders", "2", value);
    for (size_t i = 0; i < std::size(folders); ++i) {
        Task task = m_engine.Tasks().at(TaskOf(folders[i]).value());
        // The same in each home, so that the same seed gives the same traces.
        task.description =
            std::string("C:\\Users\\mara\\Cloud Sync Folder - ") + folders[i] + "\t/" + folders[i];
        task.state = states[i];
        if (task.state == TaskState::Failed)
            LetSomeFail(task);
        m_engine.Put(std::move(task));
    }
    constexpr int changes = 60;
    const SimTime now = m_engine.Now();
    for (int i = changes; i > 0; --i) {
        const std::string folder = i % 5 ? "Team" : folders[i / 5 % std::size(folders)];
        const std::string file = Files[static_cast<size_t>(i) * 7 % std::size(Files)];
        const Computer& computer = Others[static_cast<size_t>(i) % std::size(Others)];
        const SimTime time = now - 11h * i + 17min * (i % 4);
        std::string path = "/";
        path.append(folder).append("/").append(file);
        const bool isThere = Text(path).has_value();
        Change(folder, file,
               !isThere     ? 'a'
               : i % 9 == 0 ? 'd'
                            : 'm',
               computer, i % 9 == 0 && isThere ? std::string() : ContentBy(computer, file, time), time);
    }
}

} // namespace devservice
