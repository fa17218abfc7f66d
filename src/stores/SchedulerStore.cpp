#include "stores/SchedulerStore.h"

#include "zep/SysInfo.h"
#include "zep/TracePrintf.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Columns = 11;

// People search the log for these lines: their odd words stay.
const QString PrepareFailed = u"[Scheduler]Create delete statement failed:"_s;
const QString ResetFailed = u"[Scheduler]Reset statement failed:"_s;
const QString BindFailed = u"[Scheduler]Bind text statement failed:"_s;
const QString ExecuteFailed = u"[Scheduler]execute statement failed:"_s;

std::filesystem::path SchedulerFile() {
    return ZEPGetHomePath(u"scheduler"_s, HomePath::Created) / "v10_schduler.db";
}

void FillTexts(TaskRecord& task, const Statement& row) {
    task.taskId = row.Text(0);
    task.kind = row.Text(2);
    task.name = row.Text(3);
    task.description = row.Text(4);
    task.nextRun = row.Text(5);
    task.state = TaskState(row.Integer(7));
    task.lastRun = row.Text(8);
}

TaskInfo InfoOf(const Statement& row) {
    TaskInfo info;
    info.nextRun = row.Text(5);
    if (const auto schedule = ScheduleBlob::Parse(row.Blob(6)))
        info.weekdays = WeekdaySummary::Of(*schedule);
    info.state = TaskState(row.Integer(7));
    info.lastRun = row.Text(8);
    if (info.lastRun.isNull())
        info.lastRun = u"N/A"_s;
    info.number = row.Integer(10);
    return info;
}

} // namespace

SchedulerStore::SchedulerStore(std::stop_token stop, const OpenRule& rule)
    : m_database(SchedulerFile(), rule, std::move(stop)),
      m_list(
          m_database.Prepare(u"SELECT * FROM Scheduler ORDER BY  StartTime DESC"_s, Columns, PrepareFailed)),
      m_lookup(m_database.Prepare(u"SELECT * FROM Scheduler WHERE TaskId=?"_s, Columns, PrepareFailed)) {}

ReadResult SchedulerStore::EnumTasks(const TaskCallback& callback) {
    if (!m_list)
        return m_list.Result();
    m_list.Reset(ResetFailed);
    TaskRecord task;
    return m_list.Walk([&] {
        const auto schedule = ScheduleBlob::Parse(m_list.Blob(6));
        if (!schedule)
            return true;
        task.schedule = *schedule;
        FillTexts(task, m_list);
        return callback(task);
    });
}

TaskLookup SchedulerStore::LookupTask(const QString& taskId) {
    TaskLookup lookup;
    if (m_lookup && m_lookup.Reset(ResetFailed) && m_lookup.Bind(1, taskId, BindFailed)) {
        lookup.found = m_lookup.Step();
        if (lookup.found)
            lookup.task = InfoOf(m_lookup);
        else if (m_lookup.Result())
            TracePrintf(TraceLevel::Info, ExecuteFailed + m_lookup.ErrorText() + QLatin1Char('\n'));
    }
    lookup.read = m_lookup.Result();
    m_lookup.Finish(ExecuteFailed);
    return lookup;
}

ReadResult EnumAllTasks(const TaskCallback& callback, std::stop_token stop, const OpenRule& rule) {
    return SchedulerStore(std::move(stop), rule).EnumTasks(callback);
}

TaskLookup GetTaskInfo(const QString& taskId, std::stop_token stop, const OpenRule& rule) {
    return SchedulerStore(std::move(stop), rule).LookupTask(taskId);
}

ReadResult ProbeSchedulerDatabase(std::stop_token stop, const OpenRule& rule) {
    return Database(SchedulerFile(), rule, std::move(stop)).OpenResult();
}
