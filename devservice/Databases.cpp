#include "devservice/Databases.h"

#include "platform/Folders.h"

#include <algorithm>

namespace devservice {

namespace fs = std::filesystem;

namespace {

struct Place {
    Database database;
    const char* folder;
    const char* name;
    const char* tables;
};

constexpr Place Places[] = {
    {Database::Scheduler, "scheduler", "v10_schduler.db", // the spelling is the service's
     "CREATE TABLE IF NOT EXISTS Scheduler(TaskId TEXT PRIMARY KEY, Owner TEXT, TaskType TEXT, TaskName "
     "TEXT, "
     "Description TEXT, NextRun TEXT, Schedule BLOB, TaskState INTEGER, LastRun TEXT, StartTime INTEGER, "
     "RunCount INTEGER)"},
    {Database::ProcessLog, "scheduler", "ProcessLog.db",
     "CREATE TABLE IF NOT EXISTS TaskProcessLog(LogId INTEGER PRIMARY KEY, TaskId TEXT, StartTime TEXT, "
     "StopTime TEXT, "
     "StopReason TEXT, TotalSubTasks INTEGER, FailedSubTasks INTEGER, ProcessedSubTasks INTEGER);"
     "CREATE INDEX IF NOT EXISTS TaskProcessLogByTask ON TaskProcessLog(TaskId)"},
    {Database::History, "syncfolder", "v10_history.db",
     "CREATE TABLE IF NOT EXISTS History(Uri TEXT, Operation TEXT, Updater TEXT, Computer TEXT, VDir TEXT, "
     "Stamp INTEGER);"
     "CREATE INDEX IF NOT EXISTS HistoryByFolder ON History(VDir, Stamp)"},
    {Database::AuditTrace, "logging", "v10_audittrace.db",
     "CREATE TABLE IF NOT EXISTS AuditTrace(Level INTEGER, Trace TEXT, DT TEXT);"
     "CREATE INDEX IF NOT EXISTS AuditTraceByTime ON AuditTrace(DT)"},
    {Database::FileIndex, "common/Brenvia/JounralDB", "gcfile.db", // the spelling is the file monitor's
     "CREATE TABLE IF NOT EXISTS FileDB(FullPath TEXT PRIMARY KEY, Ext TEXT, Size INTEGER, Modified TEXT);"
     "CREATE INDEX IF NOT EXISTS FileDBByExt ON FileDB(Ext, FullPath)"},
};

constexpr char SubTaskTable[] = "CREATE TABLE IF NOT EXISTS SubTaskDBWorker(TaskId TEXT, SubTaskType TEXT, "
                                "Parameter1 TEXT, Parameter2 TEXT, "
                                "Note TEXT, Size INTEGER, Retries INTEGER, Reserved TEXT, TaskIndex INTEGER "
                                "PRIMARY KEY, TaskState INTEGER);"
                                "CREATE INDEX IF NOT EXISTS SubTasksByState ON SubTaskDBWorker(TaskState)";

void BindTime(Statement& statement, const std::optional<SimTime>& time) {
    if (time)
        statement.Bind(FormatTime(*time));
    else
        statement.BindNull();
}

void InsertSubTask(Statement& insert, const std::string& taskId, const SubTask& subTask) {
    insert.Bind(taskId)
        .Bind(subTask.type)
        .Bind(subTask.parameter1)
        .Bind(subTask.parameter2)
        .Bind(subTask.note);
    insert.Bind(subTask.size).Bind(subTask.retries).BindNull().Bind(subTask.number);
    insert.Bind(static_cast<int>(subTask.state)).Run();
}

void WriteSubTaskRows(Connection& connection, const std::string& taskId, const Task& task,
                      const SubTaskChanges& changes) {
    Statement insert(connection, "INSERT OR REPLACE INTO SubTaskDBWorker VALUES(?,?,?,?,?,?,?,?,?,?)");
    if (changes.all) {
        connection.Execute("DELETE FROM SubTaskDBWorker");
        for (const SubTask& subTask : task.subTasks)
            InsertSubTask(insert, taskId, subTask);
        return;
    }
    Statement remove(connection, "DELETE FROM SubTaskDBWorker WHERE TaskIndex=?");
    for (const int number : changes.numbers) {
        if (const SubTask* subTask = task.Find(number))
            InsertSubTask(insert, taskId, *subTask);
        else
            remove.Bind(number).Run();
    }
}

} // namespace

bool CanNameFile(const std::string& taskId) {
    return !taskId.empty() && taskId.find_first_of("/\\:") == std::string::npos && taskId.front() != '.';
}

Databases::Databases(fs::path home, JournalMode journal) : m_home(std::move(home)), m_journal(journal) {}

fs::path Databases::FileOf(Database database) const {
    const auto place = std::find_if(std::begin(Places), std::end(Places),
                                    [database](const Place& each) { return each.database == database; });
    return m_home / place->folder / place->name;
}

fs::path Databases::SubTaskFile(const std::string& taskId) const {
    return m_home / "scheduler" / platform::PathFromUtf8(taskId + ".db");
}

void Databases::Create() {
    for (const Place& place : Places) {
        fs::create_directories(m_home / place.folder);
        Open(FileOf(place.database)).Execute(place.tables);
    }
}

void Databases::Close() {
    m_connections.clear();
}

Connection& Databases::Open(const fs::path& file) {
    std::unique_ptr<Connection>& connection = m_connections[file];
    if (!connection) {
        auto opened = std::make_unique<Connection>(file);
        // A killed service loses nothing by this: only a crash of the machine could.
        opened->Execute("PRAGMA synchronous=OFF");
        opened->Execute(m_journal == JournalMode::Wal ? "PRAGMA journal_mode=WAL"
                                                      : "PRAGMA journal_mode=DELETE");
        connection = std::move(opened);
    }
    return *connection;
}

void Databases::Withhold(const fs::path& file) {
    m_connections.erase(file);
    m_withheld.insert(file);
}

void Databases::Release(const fs::path& file) {
    m_withheld.erase(file);
}

TaskMap Databases::Load() {
    TaskMap tasks;
    Statement rows(Open(FileOf(Database::Scheduler)), "SELECT * FROM Scheduler");
    while (rows.Step()) {
        Task task;
        task.id = rows.Text(0);
        task.owner = rows.Text(1);
        task.type = rows.Text(2);
        task.name = rows.Text(3);
        task.description = rows.Text(4);
        task.nextRun = ParseTime(rows.Text(5));
        task.schedule = Schedule::FromBlob(rows.Text(6)).value_or(Schedule());
        task.state = static_cast<TaskState>(rows.Integer(7));
        task.lastRun = ParseTime(rows.Text(8));
        task.created = SimTime(std::chrono::seconds(rows.Integer(9)));
        task.runCount = static_cast<int>(rows.Integer(10));
        LoadSubTasks(task);
        tasks.emplace(task.id, std::move(task));
    }
    return tasks;
}

void Databases::LoadSubTasks(Task& task) {
    const fs::path file = SubTaskFile(task.id);
    if (!CanNameFile(task.id) || !fs::exists(file))
        return;
    const Connection connection(file);
    Statement rows(connection, "SELECT * FROM SubTaskDBWorker ORDER BY TaskIndex");
    while (rows.Step()) {
        SubTask subTask;
        subTask.type = rows.Text(1);
        subTask.parameter1 = rows.Text(2);
        subTask.parameter2 = rows.Text(3);
        subTask.note = rows.Text(4);
        subTask.size = rows.Integer(5);
        subTask.retries = static_cast<int>(rows.Integer(6));
        subTask.number = static_cast<int>(rows.Integer(8));
        subTask.state = static_cast<SubTaskState>(rows.Integer(9));
        task.subTasks.push_back(std::move(subTask));
    }
}

void Databases::Write(const TaskMap& tasks, Changes& changes) {
    WriteSubTasks(tasks, changes); // before the tasks: who sees a new task finds its sub-tasks
    WriteTasks(tasks, changes);
    WriteLogs(changes);
}

template <typename WriteRows>
bool Databases::WriteTo(const fs::path& file, WriteRows writeRows) {
    if (m_withheld.count(file) != 0)
        return false;
    try {
        Connection& connection = Open(file);
        Transaction transaction(connection);
        writeRows(connection);
        transaction.Commit();
        return true;
    } catch (const SqliteError&) {
        return false; // a reader's lock, or a file damaged from outside: tried again with the next change
    }
}

void Databases::WriteTasks(const TaskMap& tasks, Changes& changes) {
    if (changes.tasks.empty())
        return;
    const bool written = WriteTo(FileOf(Database::Scheduler), [&](Connection& connection) {
        Statement insert(connection, "INSERT OR REPLACE INTO Scheduler VALUES(?,?,?,?,?,?,?,?,?,?,?)");
        Statement remove(connection, "DELETE FROM Scheduler WHERE TaskId=?");
        for (const std::string& id : changes.tasks) {
            const auto found = tasks.find(id);
            if (found == tasks.end()) {
                remove.Bind(id).Run();
                continue;
            }
            const Task& task = found->second;
            insert.Bind(id).Bind(task.owner).Bind(task.type).Bind(task.name).Bind(task.description);
            BindTime(insert, task.nextRun);
            insert.BindBlob(task.schedule.ToBlob()).Bind(static_cast<int>(task.state));
            BindTime(insert, task.lastRun);
            insert.Bind(task.created.time_since_epoch() / std::chrono::seconds(1)).Bind(task.runCount).Run();
        }
    });
    if (written)
        changes.tasks.clear();
}

void Databases::WriteSubTasks(const TaskMap& tasks, Changes& changes) {
    for (auto change = changes.subTasks.begin(); change != changes.subTasks.end();) {
        const fs::path file = SubTaskFile(change->first);
        const auto task = tasks.find(change->first);
        bool written = !CanNameFile(change->first);
        if (!written && task == tasks.end()) {
            std::error_code ignored;
            m_connections.erase(file);
            written = fs::remove(file, ignored) || !fs::exists(file);
        } else if (!written) {
            written = WriteTo(file, [&](Connection& connection) {
                connection.Execute(SubTaskTable);
                WriteSubTaskRows(connection, task->first, task->second, change->second);
            });
            m_connections.erase(file); // there may be thousands of them
        }
        change = written ? changes.subTasks.erase(change) : std::next(change);
    }
}

void Databases::WriteLogs(Changes& changes) {
    if (!changes.processLog.empty() && WriteTo(FileOf(Database::ProcessLog), [&](Connection& connection) {
            Statement insert(connection, "INSERT INTO TaskProcessLog VALUES(NULL,?,?,?,?,?,?,?)");
            for (const ProcessLogRow& row : changes.processLog) {
                insert.Bind(row.taskId)
                    .Bind(FormatTime(row.start))
                    .Bind(FormatTime(row.stop))
                    .Bind(row.reason);
                insert.Bind(row.total).Bind(row.failed).Bind(row.processed).Run();
            }
        }))
        changes.processLog.clear();
    if (!changes.history.empty() && WriteTo(FileOf(Database::History), [&](Connection& connection) {
            Statement insert(connection, "INSERT INTO History VALUES(?,?,?,?,?,?)");
            for (const HistoryRow& row : changes.history) {
                const std::string stamp = std::to_string(StampOf(row.time));
                insert.Bind(row.uri).Bind(std::string(1, row.operation) + '#' + stamp).Bind(row.updater);
                insert.Bind(row.computer).Bind(row.virtualDirectory).Bind(StampOf(row.time)).Run();
            }
        }))
        changes.history.clear();
    if (!changes.audit.empty() && WriteTo(FileOf(Database::AuditTrace), [&](Connection& connection) {
            Statement insert(connection, "INSERT INTO AuditTrace VALUES(?,?,?)");
            for (const AuditRow& row : changes.audit)
                insert.Bind(row.level).Bind(row.trace).Bind(FormatTime(row.time)).Run();
        }))
        changes.audit.clear();
}

} // namespace devservice
