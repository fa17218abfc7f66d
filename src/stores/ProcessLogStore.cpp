#include "stores/ProcessLogStore.h"

#include "zep/SysInfo.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Columns = 8;

// People search the log for these lines: their odd words stay.
const QString PrepareFailed = u"[TaskProcessLog]Create enum statement failed:"_s;
const QString ResetFailed = u"[SubTaskDBWorker]Reste statement failed:"_s;
const QString BindFailed = u"[SubTaskDBWorker]Bind text statement failed:"_s;

std::filesystem::path ProcessLogFile() {
    return ZEPGetHomePath(u"scheduler"_s) / "ProcessLog.db";
}

} // namespace

ProcessLogStore::ProcessLogStore(std::stop_token stop, const OpenRule& rule)
    : m_database(ProcessLogFile(), rule, std::move(stop)),
      m_rows(m_database.Prepare(u"SELECT * FROM TaskProcessLog WHERE TaskId=?"_s, Columns, PrepareFailed)) {}

ReadResult ProcessLogStore::FillProcessLog(const QString& taskId, std::vector<ProcessLogRecord>& list) {
    if (!m_rows || !m_rows.Reset(ResetFailed) || !m_rows.Bind(1, taskId, BindFailed))
        return m_rows.Result();
    return m_rows.Walk([&] {
        list.push_back({m_rows.Text(2), m_rows.Text(3), m_rows.Text(4), m_rows.Integer(5), m_rows.Integer(6),
                        m_rows.Integer(7)});
        return true;
    });
}

ReadResult FillProcessLog(const QString& taskId, std::vector<ProcessLogRecord>& list, std::stop_token stop,
                          const OpenRule& rule) {
    return ProcessLogStore(std::move(stop), rule).FillProcessLog(taskId, list);
}
