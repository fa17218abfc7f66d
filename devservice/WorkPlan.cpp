#include "devservice/WorkPlan.h"

#include "devservice/WireText.h"

#include <algorithm>
#include <iterator>

namespace devservice {

namespace {

struct Operation {
    const char* type;
    Direction direction;
    const char* name;
};

constexpr Operation Operations[] = {
    {"PUT", Direction::Upload, "Upload"},
    {"DPUT", Direction::Upload, "Upload"},
    {"BPUT", Direction::Upload, "Upload"},
    {"DROPUPLOAD", Direction::Upload, "Upload"},
    {"GET", Direction::Download, "Download"},
    {"MKCOL", Direction::None, "Create Directory"},
    {"DMKCOL", Direction::None, "Create Directory"},
    {"DIR", Direction::None, "List Directory"},
    {"DELETEFOLDER", Direction::None, "Delete Directory"},
    {"CreateDelete", Direction::None, "Enumerate Files to Delete"},
    {"CheckPoint", Direction::None, "Verify All Previous Subtasks"},
    {"RestoreCommit", Direction::None, "Commit Restore"},
    {"DROPSYNC", Direction::None, "Apply File Change"},
    {"DROPCHANGES", Direction::None, "Process Local File Changes"},
    {"ProcessChangeLogs", Direction::None, "Process Change Logs"},
};

constexpr const char* FileNames[] = {
    "budget.xlsx",          "minutes.docx",          "garden/rose.jpg",   "garden/pond.jpg",
    "letters/bank.odt",     "plans/kitchen.pdf",     "plans/roof.pdf",    "music/morning.flac",
    "video/harbour.mp4",    "scans/receipt-018.png", "notes.txt",         "invoices/2025-02.pdf",
    "invoices/2025-03.pdf", "archive/mail.mbox",     "drawings/gear.svg", "thesis/chapter-4.tex",
    "maps/coast.gpx",       "recipes/bread.md",      "backup.tar.zst",    "slides/spring.pptx",
};

const Operation* OperationOf(const SubTask& subTask) {
    const auto found = std::find_if(std::begin(Operations), std::end(Operations),
                                    [&](const Operation& each) { return subTask.type == each.type; });
    return found == std::end(Operations) ? nullptr : found;
}

/// The kinds of work that the tasks of a type are made of, in turn.
struct Pattern {
    const char* type; ///< the beginning of the task's type or name
    std::vector<const char*> first;
    std::vector<const char*> each;
    std::vector<const char*> last;
};

const Pattern& PatternOf(const Task& task) {
    static const Pattern patterns[] = {
        {"backup", {"MKCOL"}, {"PUT"}, {"CreateDelete", "CheckPoint"}},
        {"ccbackup", {"DIR", "MKCOL"}, {"GET", "PUT"}, {"CheckPoint"}},
        {"snapshotbackup", {"MKCOL"}, {"BPUT"}, {"CheckPoint"}},
        {"advbackup", {"MKCOL"}, {"BPUT"}, {"CheckPoint"}},
        {"RestoreApp", {"DIR"}, {"GET"}, {"RestoreCommit"}},
        {"Cloud Sync Folder Task", {"ProcessChangeLogs"}, {"GET", "DPUT", "DROPSYNC"}, {}},
        {"Drop Folder Sync", {"DROPCHANGES"}, {"DROPUPLOAD", "DROPSYNC"}, {}},
        {"", {"DIR"}, {"PUT", "GET"}, {}},
    };
    for (const Pattern& pattern : patterns) {
        const std::string beginning = pattern.type;
        if (SameName(task.type, beginning) || (!beginning.empty() && task.name.rfind(beginning, 0) == 0))
            return pattern;
    }
    return *std::rbegin(patterns);
}

/// The first entry of the description's list at `index`; `fallback` when it has none.
std::string FirstOf(const Task& task, int index, const std::string& fallback) {
    size_t begin = 0;
    for (; index > 0 && begin != std::string::npos; --index)
        begin = task.description.find('\t', begin) == std::string::npos
                    ? std::string::npos
                    : task.description.find('\t', begin) + 1;
    if (begin == std::string::npos)
        return fallback;
    const std::string entry =
        task.description.substr(begin, task.description.find_first_of("\t\n", begin) - begin);
    return entry.empty() || entry == "@" ? fallback : entry;
}

char SeparatorOf(const std::string& folder) {
    return folder.find('\\') == std::string::npos ? '/' : '\\';
}

std::string Join(const std::string& folder, std::string name) {
    const char separator = SeparatorOf(folder);
    std::replace(name.begin(), name.end(), '/', separator);
    return folder + (folder.empty() || folder.back() == separator ? "" : std::string(1, separator)) + name;
}

} // namespace

Direction DirectionOf(const SubTask& subTask) {
    const Operation* operation = OperationOf(subTask);
    return operation ? operation->direction : Direction::None;
}

bool ClosesRun(const SubTask& subTask) {
    return subTask.type == "CheckPoint" || subTask.type == "RestoreCommit";
}

std::string OperationName(const SubTask& subTask) {
    const Operation* operation = OperationOf(subTask);
    return operation ? operation->name : subTask.type;
}

std::vector<SubTask> PlanWork(const Task& task, std::mt19937_64& random) {
    const Pattern& pattern = PatternOf(task);
    const std::string source = FirstOf(task, 0, "/Home/Documents");
    const std::string target = FirstOf(task, 1, "/Home/Backup");
    std::vector<SubTask> plan;
    const auto add = [&](const char* type, const std::string& name) {
        SubTask subTask;
        subTask.number = static_cast<int>(plan.size()) + 1;
        subTask.type = type;
        const bool fromStorage = subTask.type == "GET";
        subTask.parameter1 = name.empty() ? source : Join(fromStorage ? target : source, name);
        subTask.parameter2 = name.empty() ? target : Join(fromStorage ? source : target, name);
        if (DirectionOf(subTask) != Direction::None)
            subTask.size =
                static_cast<int64_t>(20'000 + random() % (random() % 4 == 0 ? 48'000'000 : 3'000'000));
        plan.push_back(std::move(subTask));
    };
    for (const char* type : pattern.first)
        add(type, {});
    const size_t files = 6 + random() % 10;
    const size_t begin = random() % std::size(FileNames);
    for (size_t i = 0; i < files; ++i)
        add(pattern.each[i % pattern.each.size()], FileNames[(begin + i) % std::size(FileNames)]);
    for (const char* type : pattern.last)
        add(type, {});
    return plan;
}

std::string LastingTrouble(const SubTask& subTask) {
    const std::string& name = subTask.parameter1;
    const std::string ending = ".qdb"; // a ledger that its program never closes
    const bool open =
        name.size() >= ending.size() && name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
    return open ? "The file is used by another program" : std::string();
}

std::string PassingTrouble(std::mt19937_64& random) {
    static constexpr const char* reasons[] = {
        "The connection was closed by the storage service",
        "The storage service is busy, try again later (503)",
        "The file changed while it was read",
        "The name of the storage service could not be resolved",
    };
    return reasons[random() % std::size(reasons)];
}

} // namespace devservice
