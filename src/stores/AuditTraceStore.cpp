#include "stores/AuditTraceStore.h"

#include "zep/SysInfo.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Columns = 3;

std::filesystem::path AuditTraceFile() {
    return ZEPGetHomePath(u"logging"_s, HomePath::Created) / "v10_audittrace.db";
}

QString ContainsText(const QString& text) {
    return u" WHERE Trace LIKE '%%"_s + text + u"%%'"_s;
}

/// As the column DT writes it; compared as text.
QString Midnight(const QDate& day) {
    return QString::asprintf("%d-%02d-%02d %02d:%02d:%02d", day.year(), day.month(), day.day(), 0, 0, 0);
}

QString IsBetween(const std::pair<QDate, QDate>& days) {
    const auto [from, to] = std::minmax({Midnight(days.first), Midnight(days.second)});
    const QString since = u" DT >= '"_s + from;
    return from == to ? since + u"'"_s : since + u"' AND DT <='"_s + to + u"'"_s;
}

QString QueryText(const AuditFilter& filter) {
    QString sql = u"SELECT * FROM AuditTrace "_s;
    if (filter.containing)
        sql += ContainsText(*filter.containing) + u" "_s;
    if (filter.between)
        sql += (filter.containing ? u" AND "_s : u" WHERE "_s) + IsBetween(*filter.between);
    sql += u" ORDER BY  DT DESC "_s;
    if (!filter.maximum.isEmpty() && filter.maximum != "0"_L1)
        sql += u"LIMIT "_s + filter.maximum;
    return sql;
}

bool IsAsciiLetterOrDigit(QChar c) {
    return c < QChar(0x80) && c.isLetterOrNumber();
}

/// Letters, digits and hyphens in braces: no wildcard, and not hyphens alone.
bool NamesOneTask(const QString& key) {
    if (!key.startsWith(u'{') || !key.endsWith(u'}'))
        return false;
    const QStringView inner = QStringView(key).mid(1, key.size() - 2);
    return std::all_of(inner.begin(), inner.end(),
                       [](QChar c) { return c == u'-' || IsAsciiLetterOrDigit(c); }) &&
           std::any_of(inner.begin(), inner.end(), IsAsciiLetterOrDigit);
}

} // namespace

AuditTraceStore::AuditTraceStore(std::stop_token stop, const OpenRule& rule)
    : m_database(AuditTraceFile(), rule, std::move(stop)) {}

ReadResult AuditTraceStore::EnumTraces(const AuditFilter& filter, const AuditCallback& callback) {
    return Walk(QueryText(filter), callback);
}

ReadResult AuditTraceStore::EnumTaskTraces(const QString& taskKey, const AuditCallback& callback) {
    return Walk(u"SELECT * FROM AuditTrace "_s + ContainsText(taskKey) + u" ORDER By DT DESC"_s, callback);
}

ReadResult AuditTraceStore::Walk(const QString& sql, const AuditCallback& callback) {
    Statement rows = m_database.Prepare(sql, Columns);
    AuditRecord record;
    return rows.Walk([&] {
        record = {rows.Integer(0), rows.Text(1), rows.Text(2)};
        return callback(record);
    });
}

ReadResult DeleteTaskTraces(const QString& taskKey, std::stop_token stop, const OpenRule& rule) {
    if (!NamesOneTask(taskKey))
        return {ReadOutcome::Failed, u"\"%1\" is no identifier of a task"_s.arg(taskKey)};
    Database database(AuditTraceFile(), rule, std::move(stop), OpenMode::ReadWrite);
    return database.Prepare(u"DELETE FROM AuditTrace "_s + ContainsText(taskKey), 0).Walk([] {
        return true;
    });
}

QString AuditMessage(const QString& trace) {
    constexpr qsizetype KeyAt = 2;
    if (!trace.startsWith("$$"_L1))
        return trace;
    const qsizetype end = trace.indexOf(u'$', KeyAt);
    return end < 0 ? QString() : trace.mid(end + 2); // a blank stands behind the sign
}
