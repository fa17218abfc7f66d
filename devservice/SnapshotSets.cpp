#include "devservice/SnapshotSets.h"

#include "devservice/WireText.h"
#include "platform/Folders.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace devservice {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr char InfoFile[] = "backupset.info";
constexpr const char* Policies[] = {"overwrite", "newer", "rename", "skip"};

struct MadeUpFile {
    const char* name;
    size_t octets;
};

constexpr MadeUpFile FolderFiles[] = {
    {"letters/bank.odt", 2411},  {"letters/To the council.odt", 1820},
    {"plans/kitchen.pdf", 5230}, {"notes.txt", 402},
    {"minutes.docx", 3307},      {"scans/2025/receipt-018.png", 4100},
};
constexpr MadeUpFile ApplicationFiles[] = {{"First store/store.dat", 6200}, {"Second store/store.dat", 5100}};

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(separator, begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

/// A list of the task's description: 0 are its sources, 1 its targets.
std::vector<std::string> ListOf(const Task& task, size_t number) {
    const std::vector<std::string> lists = Split(task.description, '\t');
    std::vector<std::string> lines =
        number < lists.size() ? Split(lists[number], '\n') : std::vector<std::string>();
    std::erase(lines, std::string());
    return lines;
}

bool IsApplication(const Task& task) {
    return SameName(task.type, "advbackup");
}

bool KeepsSnapshots(const Task& task) {
    return IsApplication(task) || SameName(task.type, "snapshotbackup");
}

std::string WithoutBraces(const std::string& id) {
    const size_t end = id.rfind('}');
    return StartsWith(id, "{") && end != std::string::npos ? id.substr(1, end - 1) : id;
}

std::string LastPart(const std::string& path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

/// What a source is called in a snapshot; one of the whole machine by its whole path.
std::string NameInSnapshot(const Task& task, const std::string& source) {
    return IsApplication(task) ? source : source == "@" ? "C/Users/mara" : LastPart(source);
}

/// The six numbers that a snapshot's name begins with; none for another folder.
std::optional<std::array<int, 6>> TimeOf(const std::string& name) {
    std::array<int, 6> time{};
    const char* at = name.data();
    const char* const end = at + name.size();
    for (size_t i = 0; i < time.size(); ++i) {
        if (i > 0 && (at == end || *at++ != '-'))
            return {};
        const auto [behind, error] = std::from_chars(at, end, time[i]);
        if (error != std::errc())
            return {};
        at = behind;
    }
    return time;
}

bool IsFull(const std::string& name) {
    return name.find('_') == std::string::npos;
}

/// The snapshots of a set, the oldest first.
std::vector<std::string> SnapshotsIn(const fs::path& set) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(set, error)) {
        const std::string name = platform::Utf8FromPath(entry.path().filename());
        if (entry.is_directory() && TimeOf(name))
            names.push_back(name);
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::pair(TimeOf(a), a) < std::pair(TimeOf(b), b);
    });
    return names;
}

std::string SlashedUtf8(const fs::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

std::map<std::string, fs::path> FilesIn(const fs::path& folder) {
    std::map<std::string, fs::path> files;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(folder, error))
        if (entry.is_regular_file(error))
            files[SlashedUtf8(entry.path().lexically_relative(folder))] = entry.path();
    return files;
}

/// All files as they were at a snapshot: those of the full one before it, and what came with each since.
std::map<std::string, fs::path> FilesAt(const fs::path& set, const std::string& snapshot) {
    std::map<std::string, fs::path> files;
    for (const std::string& name : SnapshotsIn(set)) {
        if (IsFull(name))
            files.clear();
        for (auto& [path, place] : FilesIn(set / platform::PathFromUtf8(name)))
            files[path] = place;
        if (name == snapshot)
            break;
    }
    return files;
}

bool Copy(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::create_directories(to.parent_path(), error);
    fs::remove(to, error); // one of the compilers' libraries copies over nothing
    fs::copy_file(from, to, error);
    if (error)
        return false;
    fs::last_write_time(to, fs::last_write_time(from, error), error);
    return !error;
}

bool AreEqual(const fs::path& one, const fs::path& other) {
    std::error_code error;
    return fs::file_size(one, error) == fs::file_size(other, error) &&
           fs::last_write_time(one, error) == fs::last_write_time(other, error);
}

fs::path FreeName(const fs::path& file) {
    for (int number = 1;; ++number) {
        fs::path other = file;
        other.replace_filename(file.stem().native() + fs::path(" (" + std::to_string(number) + ")").native() +
                               file.extension().native());
        if (!fs::exists(other))
            return other;
    }
}

/// Writes one file of a restore as its policy has it. Returns what went wrong.
std::string RestoreFile(const fs::path& from, fs::path to, const std::string& policy) {
    std::error_code error;
    if (!fs::is_regular_file(from, error))
        return "There is no such file in the snapshot";
    if (fs::exists(to, error)) {
        const bool newer = fs::last_write_time(to, error) >= fs::last_write_time(from, error);
        if (policy == "skip" || (policy == "newer" && newer))
            return {};
        if (policy == "rename")
            to = FreeName(to);
    }
    return Copy(from, to) ? std::string() : "The file cannot be written there";
}

/// How a restore's task was told to do it; empty for one that a record did not make.
std::string PolicyOf(const Task& task) {
    const bool restores = task.type == "RestoreApp" && !task.subTasks.empty();
    const std::string word = restores ? task.subTasks.back().parameter2 : std::string();
    const bool known = std::find(std::begin(Policies), std::end(Policies), word) != std::end(Policies);
    return known ? word : std::string();
}

bool IsAtOrBelow(const std::string& path, const std::string& component) {
    return path == component || StartsWith(path, component + '/');
}

bool IsInAny(const std::string& path, const std::vector<std::string>& components) {
    return std::any_of(components.begin(), components.end(),
                       [&](const std::string& component) { return IsAtOrBelow(path, component); });
}

/// The record's seven fields, each with its tab; none when it is not written so.
struct RestoreRecord {
    std::string name;
    std::string snapshot;
    std::vector<std::string> components;
    std::vector<std::string> excluded;
    int policy = 0;
    std::string location; ///< empty: the backup's own folders
};

std::optional<RestoreRecord> ParseRestore(const std::string& record) {
    const std::vector<std::string> fields = Split(record, '\t');
    if (fields.size() != 8 || !fields[7].empty())
        return {};
    const auto isOneOf = [](const std::string& text, std::string_view digits) {
        return text.size() == 1 && digits.find(text[0]) != std::string_view::npos;
    };
    const bool elsewhere = fields[5] == "1";
    const auto hasGap = [](const std::vector<std::string>& lines) {
        return std::find(lines.begin(), lines.end(), std::string()) != lines.end();
    };
    RestoreRecord parsed{fields[0], fields[1], Split(fields[2], '\n'), Split(fields[3], '\n'), 0, {}};
    if (parsed.name.empty() || !StartsWith(parsed.snapshot, "/") || hasGap(parsed.components) ||
        hasGap(parsed.excluded) || !isOneOf(fields[4], "0123") || !isOneOf(fields[5], "01") ||
        fields[6].empty() || (elsewhere && fields[6] == "*"))
        return {};
    if (fields[3] == "*")
        parsed.excluded.clear();
    parsed.policy = fields[4][0] - '0';
    parsed.location = elsewhere ? fields[6] : std::string();
    return parsed;
}

const Task* FindBySet(const TaskMap& tasks, const std::string& set) {
    const auto found = std::find_if(tasks.begin(), tasks.end(),
                                    [&](const auto& entry) { return WithoutBraces(entry.first) == set; });
    return found == tasks.end() ? nullptr : &found->second;
}

/// The folder that holds a file's source, with the separator at its end; empty when no source is known.
std::string ParentOfSource(const Task* task, const std::string& path) {
    for (const std::string& source : task ? ListOf(*task, 0) : std::vector<std::string>())
        if (!IsApplication(*task) && source != "@" && IsAtOrBelow(path, LastPart(source)))
            return source.substr(0, source.size() - LastPart(source).size());
    return {};
}

} // namespace

std::optional<fs::path> SnapshotSets::SetOf(const Task& task) const {
    const std::vector<std::string> targets = ListOf(task, 1);
    if (!KeepsSnapshots(task) || targets.empty() || !StartsWith(targets[0], "/"))
        return {};
    const auto storage = m_tree.Place(targets[0].substr(0, targets[0].find('/', 1)));
    if (!storage || !fs::is_directory(*storage))
        return {};
    return m_tree.Place(targets[0] + '/' + BackupSets + '/' + WithoutBraces(task.id));
}

/// The files of the machine that a backup is of. Those that are made up stand in a folder beside the tree;
/// each changes now and then.
SnapshotSets::Files SnapshotSets::Source(const Task& task, const Files& before, size_t number,
                                         SimTime now) const {
    Files files;
    const fs::path made = m_home / "made up" / WithoutBraces(task.id);
    for (const std::string& source : ListOf(task, 0)) {
        const std::string name = NameInSnapshot(task, source);
        const fs::path folder = platform::PathFromUtf8(source);
        if (!IsApplication(task) && OwnPlace(source) == folder && fs::exists(folder)) {
            if (fs::is_regular_file(folder))
                files[name] = folder;
            for (const auto& [path, place] : FilesIn(folder))
                files[std::string(name).append("/").append(path)] = place;
            continue;
        }
        const auto add = [&](const MadeUpFile& file, size_t at) {
            const std::string path = std::string(name).append("/").append(file.name);
            const auto old = before.find(path);
            if (old != before.end() && (at + number) % 3 != 0) {
                files[path] = old->second;
                return;
            }
            const fs::path place = made / platform::PathFromUtf8(path);
            std::error_code error;
            fs::create_directories(place.parent_path(), error);
            std::ofstream(place, std::ios::binary) << std::string(file.octets + number * 7, 'x');
            fs::last_write_time(place, fs::file_time_type::clock::from_sys(now - 1h), error);
            files[path] = place;
        };
        size_t at = 0;
        if (IsApplication(task))
            for (const MadeUpFile& file : ApplicationFiles)
                add(file, at++);
        else
            for (const MadeUpFile& file : FolderFiles)
                add(file, at++);
    }
    return files;
}

void SnapshotSets::Write(const Task& task, SimTime now) {
    const auto set = SetOf(task);
    if (!set)
        return;
    const std::vector<std::string> names = SnapshotsIn(*set);
    const auto last = std::find_if(names.rbegin(), names.rend(), IsFull);
    const auto since = static_cast<int>(last - names.rbegin()); // incremental ones
    const bool full = last == names.rend() || since + 1 >= FullEvery;
    const Files before = names.empty() ? Files() : FilesAt(*set, names.back());
    const auto day = std::chrono::floor<std::chrono::days>(now);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(now - day));
    char name[96];
    std::snprintf(name, sizeof name, "%d-%u-%u-%d-%d-%d", int(date.year()), unsigned(date.month()),
                  unsigned(date.day()), int(clock.hours().count()), int(clock.minutes().count()),
                  int(clock.seconds().count()));
    const fs::path snapshot = *set / (name + (full ? std::string() : '_' + std::to_string(since + 1)));
    std::error_code error;
    fs::create_directories(snapshot, error);
    for (const auto& [path, place] : Source(task, before, names.size(), now)) {
        const auto old = before.find(path);
        if (full || old == before.end() || !AreEqual(old->second, place))
            Copy(place, snapshot / platform::PathFromUtf8(path));
    }
    fs::remove_all(m_home / "made up", error);
    std::ofstream(*set / InfoFile, std::ios::binary)
        << "<BackupSet><BackupType>" << (IsApplication(task) ? "Application" : "Folder")
        << "</BackupType></BackupSet>";
}

fs::path SnapshotSets::OwnPlace(const std::string& folder) const {
    fs::path place = platform::PathFromUtf8(folder);
    const fs::path relative = place.lexically_relative(m_home);
    if (place.is_absolute() && !relative.empty() && *relative.begin() != "..")
        return place;
    std::string below = folder;
    std::replace(below.begin(), below.end(), '\\', '/');
    below.erase(std::remove(below.begin(), below.end(), ':'), below.end());
    below.erase(0, below.find_first_not_of('/'));
    return m_home / "machine" / platform::PathFromUtf8(below);
}

std::optional<Task> SnapshotSets::RestoreOf(const std::string& record, const TaskMap& tasks,
                                            SimTime now) const {
    const auto parsed = ParseRestore(record);
    const std::vector<std::string> names = parsed ? Split(parsed->snapshot, '/') : std::vector<std::string>();
    if (names.size() < 5 || names[names.size() - 3] != BackupSets || !TimeOf(names.back()))
        return {};
    const auto snapshot = m_tree.Place(parsed->snapshot);
    if (!snapshot || !fs::is_directory(*snapshot))
        return {};
    const Task* backup = FindBySet(tasks, names[names.size() - 2]);
    Task task;
    task.name = parsed->name;
    task.type = "RestoreApp";
    task.description = (parsed->location.empty() ? "" : parsed->location) + '\t' + parsed->snapshot + '\t' +
                       Split(record, '\t')[3];
    task.created = now;
    task.schedule = {ScheduleKind::Once, ScheduleMode::Continuous, now};
    task.nextRun = now;
    const auto add = [&task](const char* type, const std::string& from, const std::string& to, int64_t size) {
        SubTask subTask;
        subTask.number = static_cast<int>(task.subTasks.size()) + 1;
        subTask.type = type;
        subTask.parameter1 = from;
        subTask.parameter2 = to;
        subTask.size = size;
        task.subTasks.push_back(std::move(subTask));
    };
    std::map<std::string, bool> found;
    for (const auto& [path, place] : FilesAt(snapshot->parent_path(), names.back())) {
        if (!IsInAny(path, parsed->components) || IsInAny(path, parsed->excluded))
            continue;
        for (const std::string& component : parsed->components)
            found[component] |= IsAtOrBelow(path, component);
        const std::string parent = ParentOfSource(backup, path);
        const fs::path to =
            (parsed->location.empty() ? OwnPlace(parent) : platform::PathFromUtf8(parsed->location)) /
            platform::PathFromUtf8(path);
        std::error_code error;
        add("GET", platform::Utf8FromPath(place), platform::Utf8FromPath(to),
            static_cast<int64_t>(fs::file_size(place, error)));
    }
    for (const std::string& component : parsed->components)
        if (!found[component] && !fs::exists(*snapshot / platform::PathFromUtf8(component)))
            add("GET", parsed->snapshot + '/' + component, parsed->location, 0);
    add("RestoreCommit", parsed->snapshot, Policies[parsed->policy], 0);
    return task;
}

std::string SnapshotSets::CarryOut(const Task& task, const SubTask& subTask, SimTime now) {
    if (subTask.type == "CheckPoint")
        Write(task, now);
    const std::string policy = subTask.type == "GET" ? PolicyOf(task) : std::string();
    if (policy.empty())
        return {};
    const fs::path to = platform::PathFromUtf8(subTask.parameter2);
    return RestoreFile(platform::PathFromUtf8(subTask.parameter1), to, policy);
}

void PopulateSnapshots(const TaskMap& tasks, SnapshotSets& sets, DavTree& tree, SimTime now) {
    constexpr int Days = 7;
    std::string container;
    for (const auto& [id, task] : tasks) {
        const std::vector<std::string> targets = ListOf(task, 1);
        if (!KeepsSnapshots(task) || !task.lastRun || targets.empty())
            continue;
        for (int day = Days; day-- > 0;)
            sets.Write(task, *task.lastRun - 24h * day + 4min);
        container = targets[0] + '/' + BackupSets + '/';
        tree.Put(container + WithoutBraces(id) + "/interrupted-2025-3/letters/bank.odt", 2411, now - 90min);
    }
    if (container.empty())
        return;
    tree.Put(container + "5D0E7C11-0C3D-4F0B-9C9B-0A6D6A2F1B01/", 0, now - 400h); // was never backed up to
    const std::string lost = container + "8A41F7B2-61D7-4B57-8C3E-7C2B1D0E9F02/2024-12-31-23-5-9";
    tree.Put(lost + "/Old desk/inventory.ods", 3100,
             now - 1600h); // of a task that has gone, without its info
    tree.Put(lost + "_1/Old desk/notes.txt", 310, now - 1500h);
}

} // namespace devservice
