#include "stores/SubTaskStore.h"

#include "zep/SysInfo.h"
#include "zep/Text.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Columns = 9;

// People search the log for these lines: their odd words stay.
const QString PrepareFailed = u"[SubTaskDBWorker]Create delete statement failed:"_s;
const QString BindFailed = u"[SubTaskDBWorker]Bind text statement failed:"_s;
const QString ResetFailed = u"[Scheduler]Reset statement failed:"_s;

/// All of them are prepared at once, in this order: a database that lacks them is traced once for each.
enum StatementIndex : size_t { CountA, CountB, All, ByStateInOrder, ByState, ByTwoStates };
const std::array<QString, 6> Texts{
    u"SELECT COUNT(*) FROM SubTaskDBWorker WHERE TaskState=? "_s,
    u"SELECT COUNT(*) FROM SubTaskDBWorker WHERE TaskState=? "_s,
    u"SELECT * FROM SubTaskDBWorker ORDER BY  TaskIndex ASC"_s,
    u"SELECT * FROM SubTaskDBWorker WHERE TaskState=?  ORDER BY  TaskIndex ASC"_s,
    u"SELECT * FROM SubTaskDBWorker WHERE TaskState=? "_s,
    u"SELECT * FROM SubTaskDBWorker WHERE (TaskState=? OR TaskState=?) ORDER BY TaskIndex ASC"_s,
};

/// An identifier comes from a database and becomes a file name: it must stay in its folder.
bool IsPlainName(const QString& taskId) {
    const auto isForbidden = [](QChar c) {
        return c == QLatin1Char('/') || c == QLatin1Char('\\') || c == QLatin1Char(':') || c.isNull();
    };
    return !taskId.isEmpty() && std::none_of(taskId.begin(), taskId.end(), isForbidden) && taskId != "."_L1 &&
           taskId != ".."_L1;
}

std::filesystem::path SubTaskFile(const QString& taskId) {
    if (!IsPlainName(taskId))
        return {};
    const QString name = taskId + ".db"_L1;
    return ZEPGetHomePath(u"scheduler"_s, HomePath::Created) / ToPath(name);
}

SubTaskRecord RecordOf(const Statement& row) {
    SubTaskRecord record;
    record.text1 = row.Text(1);
    record.text2 = row.Text(2);
    record.text3 = row.Text(3);
    record.text4 = row.Text(4);
    record.number5 = row.Integer64(5);
    record.number6 = row.Integer64(6);
    record.subTaskNumber = row.Integer(8);
    return record;
}

ReadResult WalkRecords(Statement& rows, const SubTaskCallback& callback) {
    return rows.Walk([&] { return callback(RecordOf(rows)); });
}

} // namespace

SubTaskStore::SubTaskStore(const QString& taskId, std::stop_token stop, const OpenRule& rule)
    : m_database(SubTaskFile(taskId), rule, std::move(stop)) {
    for (size_t i = 0; i < Texts.size(); ++i)
        m_statements[i] = m_database.Prepare(Texts[i], i <= CountB ? 1 : Columns, PrepareFailed);
}

ReadResult SubTaskStore::EnumSubTasksByState(int stateA, int stateB, const SubTaskCallback& callback) {
    Statement& rows = m_statements[ByTwoStates];
    if (!rows)
        return rows.Result();
    rows.Reset(ResetFailed);
    rows.Bind(1, stateA, BindFailed);
    rows.Bind(2, stateB, BindFailed);
    return WalkRecords(rows, callback);
}

ReadResult SubTaskStore::EnumAll(const SubTaskCallback& callback) {
    Statement& rows = m_statements[All];
    if (!rows)
        return rows.Result();
    rows.Reset(ResetFailed);
    return WalkRecords(rows, callback);
}

ReadResult EnumSubTasks(const QString& taskId, int stateA, int stateB, const SubTaskCallback& callback,
                        std::stop_token stop, const OpenRule& rule) {
    return SubTaskStore(taskId, std::move(stop), rule).EnumSubTasksByState(stateA, stateB, callback);
}

ReadResult EnumSubTasks(const QString& taskId, const SubTaskCallback& callback, std::stop_token stop,
                        const OpenRule& rule) {
    return SubTaskStore(taskId, std::move(stop), rule).EnumAll(callback);
}
