#include "stores/HistoryStore.h"

#include "zep/SysInfo.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Columns = 4;

// People search the log for this line: its odd words stay.
const QString PrepareFailed = u"[History]Create Insert statement failed:"_s;

std::filesystem::path HistoryFile() {
    return ZEPGetHomePath(u"syncfolder"_s) / "v10_history.db";
}

QString StatementText(HistoryView view) {
    return view == HistoryView::ChangeList
               ? u"SELECT * FROM History WHERE VDir=? ORDER BY Stamp DESC LIMIT  200;"_s
               : u"SELECT * FROM History WHERE VDir=? ORDER BY Stamp DESC, Uri ASC LIMIT  50;"_s;
}

} // namespace

HistoryStore::HistoryStore(HistoryView view, std::stop_token stop, const OpenRule& rule)
    : m_database(HistoryFile(), rule, std::move(stop)),
      m_rows(m_database.Prepare(StatementText(view), Columns, PrepareFailed)) {}

ReadResult HistoryStore::FillHistory(const QString& virtualDirectory, std::vector<HistoryRecord>& list) {
    if (!m_rows || !m_rows.Reset() || !m_rows.Bind(1, virtualDirectory))
        return m_rows.Result();
    return m_rows.Walk([&] {
        list.push_back({m_rows.Text(0), m_rows.Text(1), m_rows.Text(2), m_rows.Text(3)});
        return true;
    });
}

ReadResult FillHistory(HistoryView view, const QString& virtualDirectory, std::vector<HistoryRecord>& list,
                       std::stop_token stop, const OpenRule& rule) {
    return HistoryStore(view, std::move(stop), rule).FillHistory(virtualDirectory, list);
}
