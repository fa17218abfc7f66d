#include "devservice/Scenarios.h"

#include "devservice/FileMonitor.h"
#include "devservice/WorkPlan.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace devservice {

using namespace std::chrono_literals;

namespace {

constexpr int HugeTasks = 10'000;
constexpr int HugeSubTasks = 100'000;
constexpr int HugeAuditRows = 1'000'000;
constexpr int TasksWithWork = 100; ///< of the huge scenario: a file each, as many as a page shows cards

/// A task of a scenario, how far it has come and when it ran.
struct Story {
    const char* name;
    const char* type;
    ScheduleKind kind;
    ScheduleMode mode;
    TaskState state;
    int doneOfTen;                     ///< of its sub-tasks
    std::chrono::minutes sinceLastRun; ///< 0: never ran
    const char* description;
    const char* lockedFile = nullptr; ///< one that fails in every run
    int failedRuns = 0;               ///< the last runs that went wrong, one after the other
    std::chrono::minutes late = 0min; ///< the last run began that much after its time
};

constexpr Story DesktopStories[] = {
    {"Documents to Home", "backup", ScheduleKind::Backup, ScheduleMode::Continuous, TaskState::Running, 3,
     4min, "C:\\Users\\mara\\Documents\nC:\\Users\\mara\\Desktop\t/Home/Documents\t*.tmp\n~$*"},
    {"Photo library", "backup", ScheduleKind::Backup, ScheduleMode::Daily, TaskState::Running, 6, 9min,
     "D:\\Photos\t/Archive/Photos\t*"},
    {"Weekly work snapshot", "snapshotbackup", ScheduleKind::Backup, ScheduleMode::Weekdays,
     TaskState::Pending, 10, 2880min, "D:\\Work\t/Archive/Snapshots/Letters\t*.obj\n*.iso"},
    {"All office files", "snapshotbackup", ScheduleKind::Backup, ScheduleMode::Daily, TaskState::Pending, 10,
     1200min, "@\t/Archive/Snapshots/Office\t*"},
    {"Home to Archive", "ccbackup", ScheduleKind::Backup, ScheduleMode::Daily, TaskState::Paused, 4, 320min,
     "/Home/Projects\t/Archive/Projects\t*"},
    {"Mail database", "advbackup", ScheduleKind::Backup, ScheduleMode::Daily, TaskState::Pending, 10, 700min,
     "Mail Store Writer({5B1A6C02-7E44-4D0B-9A61-2F8C35D0B7E9})\t/Archive/Applications/Mail\t*", nullptr, 0,
     432min},
    {"Household ledger", "backup", ScheduleKind::Backup, ScheduleMode::Daily, TaskState::Failed, 8, 190min,
     "D:\\Ledger\t/Home/Ledger\t*", "D:\\Ledger\\household.qdb", 9},
    {"Restore of Garden plans", "RestoreApp", ScheduleKind::Once, ScheduleMode::Continuous,
     TaskState::Running, 2, 1min, "D:\\Restored\\Garden plans\t/Archive/Snapshots/Garden plans\t*"},
    {"Restore of Letters", "RestoreApp", ScheduleKind::Once, ScheduleMode::Continuous, TaskState::Completed,
     10, 4300min, "D:\\Restored\\Letters\t/Home/Documents/Letters\t*"},
    {"Old notebook, one last time", "backup", ScheduleKind::Once, ScheduleMode::Continuous,
     TaskState::Completed, 10, 20160min, "E:\\Notebook\t/Archive/Notebook\t*"},
    {"Default Task For Home", "vdirdefault", ScheduleKind::Service, ScheduleMode::Continuous,
     TaskState::Pending, 10, 25min, "/Home"},
    {"Default Task For Archive", "vdirdefault", ScheduleKind::Service, ScheduleMode::Continuous,
     TaskState::Running, 5, 1min, "/Archive"},
    {"Cloud Sync Folder Task For Team", "Cloud Sync Folder Task", ScheduleKind::Sync,
     ScheduleMode::Continuous, TaskState::Running, 4, 2min, "C:\\Users\\mara\\Team\t/Team"},
    {"Drop Folder Sync - Team", "DropFolderSync", ScheduleKind::Sync, ScheduleMode::Continuous,
     TaskState::Pending, 10, 12min, "C:\\Users\\mara\\Team\t/Team"},
    {"Prefetch Task /Home/Slides", "prefetch", ScheduleKind::Service, ScheduleMode::Continuous,
     TaskState::Pending, 0, 0min, "/Home/Slides"},
    {"Share index", "index#MESFTASK", ScheduleKind::Service, ScheduleMode::Daily, TaskState::Pending, 10,
     610min, "/Home/Shares"},
    {"Nightly cleaning", "maintenance", ScheduleKind::Service, ScheduleMode::Daily, TaskState::Held, 10,
     500min, ""},
};

constexpr Story ServerStories[] = {
    {"Shares of the office", "backup", ScheduleKind::Backup, ScheduleMode::Continuous, TaskState::Running, 5,
     6min, "E:\\Shares\\Office\nE:\\Shares\\Workshop\t/Vault/Shares\t*.tmp"},
    {"Daily databases", "advbackup", ScheduleKind::Backup, ScheduleMode::Daily, TaskState::Pending, 10,
     480min, "Database Writer({A2D94F60-13C8-4B7E-8F25-6C0E91B4D375})\t/Vault/Applications/Databases\t*",
     nullptr, 0, 95min},
    {"Weekly shares snapshot", "snapshotbackup", ScheduleKind::Backup, ScheduleMode::Weekdays,
     TaskState::Running, 7, 31min, "E:\\Shares\t/Vault/Snapshots/Shares\t*.iso"},
    {"Vault to Second Site", "ccbackup", ScheduleKind::Backup, ScheduleMode::Daily, TaskState::Failed, 8,
     260min, "/Vault/Shares\t/Second Site/Shares\t*", "/Vault/Shares/stock.qdb", 4},
    {"Accounting", "backup", ScheduleKind::Backup, ScheduleMode::Daily, TaskState::Paused, 3, 400min,
     "E:\\Accounting\t/Vault/Accounting\t*"},
    {"Restore of Workshop", "RestoreApp", ScheduleKind::Once, ScheduleMode::Continuous, TaskState::Completed,
     10, 9000min, "E:\\Restored\\Workshop\t/Vault/Shares/Workshop\t*"},
    {"Default Task For Vault", "vdirdefault", ScheduleKind::Service, ScheduleMode::Continuous,
     TaskState::Running, 5, 1min, "/Vault"},
    {"Share service", "shares#MESFTASK", ScheduleKind::Service, ScheduleMode::Continuous, TaskState::Pending,
     10, 17min, "/Vault/Shares"},
};

std::string Guid(unsigned group, unsigned number) {
    char text[64];
    std::snprintf(text, sizeof text, "{%08X-5B1E-4C7A-9D20-3F6A%08X}", 0x6E2D0000U + group, number);
    return text;
}

void SetProgress(Task& task, int doneOfTen) {
    const size_t done = task.subTasks.size() * static_cast<size_t>(doneOfTen) / 10;
    for (size_t i = 0; i < done; ++i)
        task.subTasks[i].state = SubTaskState::Done;
}

unsigned DayOfWeek(SimTime time) {
    return std::chrono::weekday(std::chrono::floor<std::chrono::days>(time)).c_encoding();
}

/// A schedule by which the last run was to begin when the story says, set up `before` that.
Schedule ScheduleOf(const Story& story, SimTime now, std::chrono::hours before) {
    const SimTime lastRun = now - story.sinceLastRun - story.late;
    Schedule schedule{story.kind, story.mode, lastRun - before};
    const unsigned day = DayOfWeek(lastRun);
    for (unsigned i = 0; story.mode == ScheduleMode::Weekdays && i < schedule.weekdays.size(); ++i)
        schedule.weekdays[(day + i) % schedule.weekdays.size()] = i == 0 || i == 2 || i == 4;
    return schedule;
}

Task Tell(const Story& story, unsigned number, SimTime now, std::mt19937_64& random) {
    Task task;
    task.id = Guid(1, number);
    task.name = story.name;
    task.type = story.type;
    task.description = story.description;
    task.state = story.state;
    task.schedule = ScheduleOf(story, now, 24h * (number * 7 % 90 + 20));
    task.created = task.schedule.start - 47min;
    if (story.sinceLastRun > 0min)
        task.lastRun = now - story.sinceLastRun;
    const bool once = story.kind == ScheduleKind::Once;
    task.nextRun = story.mode == ScheduleMode::Continuous && !once ? now + 12s * number // not all at once
                                                                   : task.schedule.NextRun(now);
    if (task.lastRun)
        task.runCount = once ? 1 : 1 + static_cast<int>(number) * 3;
    task.subTasks = PlanWork(task, random);
    SetProgress(task, story.doneOfTen);
    if (story.lockedFile) {
        SubTask locked = task.subTasks.back();
        ++locked.number;
        locked.type = "PUT";
        locked.parameter1 = story.lockedFile;
        locked.size = 1'830'912;
        locked.retries = 3;
        locked.note = LastingTrouble(locked);
        locked.state = SubTaskState::Failed;
        task.subTasks.push_back(locked);
    }
    return task;
}

bool RunsOnDayOf(const Schedule& schedule, SimTime time) {
    return schedule.weekdays[DayOfWeek(time)];
}

/// When the task's last runs that have ended began, as its schedule has it; the latest first.
std::vector<SimTime> EndedRuns(const Task& task, const Story& story) {
    constexpr std::chrono::minutes BetweenScansThatFind = 40min;
    std::vector<SimTime> starts;
    const int ended = task.runCount - (task.state == TaskState::Running ? 1 : 0);
    SimTime start = task.lastRun.value_or(SimTime());
    const auto goBack = [&] {
        do
            start -= task.schedule.mode == ScheduleMode::Continuous ? BetweenScansThatFind : 24h;
        while (task.schedule.mode == ScheduleMode::Weekdays && !RunsOnDayOf(task.schedule, start));
    };
    if (task.state == TaskState::Running && ended > 0)
        goBack();
    for (const int most = std::min(ended, story.failedRuns + 6); static_cast<int>(starts.size()) < most;
         goBack()) {
        starts.push_back(start);
        if (starts.size() == 1)
            start -= story.late;
    }
    return starts;
}

/// What a task's runs have left in the logs. Now and then one went wrong; the latest went as the state says.
void TellPast(const Task& task, const Story& story, TaskEngine& engine) {
    const std::vector<SimTime> starts = EndedRuns(task, story);
    const int total = static_cast<int>(task.subTasks.size());
    Changes& changes = engine.Unwritten();
    for (size_t back = starts.size(); back-- > 0;) {
        const SimTime start = starts[back];
        const bool latest = back == 0 && task.state != TaskState::Running;
        const bool halted = latest && task.state == TaskState::Paused;
        const bool failed = latest ? task.state == TaskState::Failed
                                   : back % 4 == 3 || static_cast<int>(back) < story.failedRuns;
        const int processed =
            halted ? static_cast<int>(
                         std::count_if(task.subTasks.begin(), task.subTasks.end(),
                                       [](const SubTask& each) { return each.state == SubTaskState::Done; }))
                   : total;
        const SimTime stop = start + 2min + 13s * processed;
        const char* outcome = halted   ? "Paused by the user"
                              : failed ? "1 sub-task failed"
                                       : "Completed successfully";
        changes.processLog.push_back({task.id, start, stop, outcome, total, failed ? 1 : 0, processed});
        changes.audit.push_back({0, TaskTrace(task.id, "Task \"" + task.name + "\" has started"), start});
        if (failed)
            changes.audit.push_back(
                {2, TaskTrace(task.id, "Upload failed: The file is used by another program"), start + 2min});
        changes.audit.push_back(
            {failed ? 2 : 0, TaskTrace(task.id, "Task \"" + task.name + "\" has ended: " + outcome), stop});
    }
}

/// A user's files, and their index.
void MakeFiles(const std::filesystem::path& folder, Connection& index) {
    static constexpr const char* folders[] = {"Documents", "Photos", "Work"};
    static constexpr const char* extensions[] = {"docx", "xlsx", "pdf", "jpg", "odt"};
    for (const char* name : folders)
        std::filesystem::create_directories(folder / name);
    for (int i = 0; i < 150; ++i)
        std::ofstream(folder / folders[i % 3] / ("file " + std::to_string(i) + '.' + extensions[i % 5]))
            << std::string(static_cast<size_t>(100 + i * 7919 % 3000), 'x');
    IndexFiles(index, folder);
}

template <size_t N>
void TellAll(const Story (&stories)[N], TaskEngine& engine) {
    std::mt19937_64 random(7);
    unsigned number = 0;
    for (const Story& story : stories) {
        Task task = Tell(story, ++number, engine.Now(), random);
        TellPast(task, story, engine);
        engine.Put(std::move(task));
    }
}

std::vector<SubTask> ManySubTasks(int count) {
    std::vector<SubTask> subTasks(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        SubTask& subTask = subTasks[static_cast<size_t>(i)];
        subTask.number = i + 1;
        subTask.type = i % 3 == 0 ? "BPUT" : "PUT";
        subTask.parameter1 =
            "E:\\Archive\\box " + std::to_string(i / 500) + "\\scan " + std::to_string(i) + ".tif";
        subTask.parameter2 = "/Vault/Archive/box " + std::to_string(i / 500);
        subTask.size = 40'000 + i * 7919 % 5'000'000;
    }
    return subTasks;
}

void FillHugeAudit(Connection& connection, const std::string& taskId, SimTime now) {
    Transaction transaction(connection);
    Statement insert(connection, "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                                     std::to_string(HugeAuditRows) +
                                     ") INSERT INTO AuditTrace SELECT (i % 50 = 0) + (i % 400 = 0), ? || "
                                     "'Upload of \"E:\\Archive\\scan ' "
                                     "|| i || '.tif\" has ended', datetime(?, '-' || (" +
                                     std::to_string(HugeAuditRows) + " - i) || ' seconds') FROM n");
    insert.Bind(TaskTrace(taskId, "")).Bind(FormatTime(now)).Run();
    transaction.Commit();
}

void TellHuge(TaskEngine& engine, Databases& databases) {
    constexpr TaskState states[] = {TaskState::Pending, TaskState::Paused, TaskState::Failed,
                                    TaskState::Completed};
    const SimTime now = engine.Now();
    for (int i = 0; i < HugeTasks; ++i) {
        Task task;
        task.id = Guid(2, static_cast<unsigned>(i));
        task.name = i == 0 ? "The whole archive" : "Archive box " + std::to_string(i);
        task.type = i % 4 == 1 ? "snapshotbackup" : "backup";
        task.description = "E:\\Archive\\box " + std::to_string(i) + "\t/Vault/Archive\t*";
        task.state = states[i % 4];
        task.created = now - 1min * i;
        const bool once = task.state == TaskState::Completed;
        task.schedule = {once ? ScheduleKind::Once : ScheduleKind::Backup, ScheduleMode::Daily, task.created};
        task.lastRun = now - 1h - 1min * i;
        if (!once)
            task.nextRun = now + 24h + 1s * i;
        task.runCount = once ? 1 : 1 + i % 30;
        if (i < TasksWithWork)
            task.subTasks = ManySubTasks(i == 0 ? HugeSubTasks : 200);
        engine.Put(std::move(task), i < TasksWithWork ? SubTaskFileOf::Every : SubTaskFileOf::None);
    }
    FillHugeAudit(databases.Open(databases.FileOf(Database::AuditTrace)), Guid(2, 0), now);
}

} // namespace

bool IsScenario(const std::string& name) {
    return name == "empty" || name == "desktop" || name == "server" || name == "huge";
}

void Populate(const std::string& scenario, TaskEngine& engine, Databases& databases, Settings& settings,
              const std::filesystem::path& files) {
    if (scenario == "desktop")
        TellAll(DesktopStories, engine);
    else if (scenario == "server")
        TellAll(ServerStories, engine);
    else if (scenario == "huge")
        TellHuge(engine, databases);
    if (scenario == "desktop" || scenario == "server")
        MakeFiles(files, databases.Open(databases.FileOf(Database::FileIndex)));
    if (scenario != "empty")
        settings.Set("BSInitConfig", "4", "True");
}

} // namespace devservice
