#include "stores/AuditTraceStore.h"

#include "zep/SysInfo.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Columns = 3;
const QString AllTraces = u"SELECT * FROM AuditTrace "_s;

std::filesystem::path AuditTraceFile() {
    return ZEPGetHomePath(u"logging"_s, HomePath::Created) / "v10_audittrace.db";
}

QString ContainsText(const QString& text) {
    return u" WHERE Trace LIKE '%%"_s + text + u"%%'"_s;
}

QString IsBetween(const std::pair<QString, QString>& times) {
    const auto [from, to] = std::minmax(times.first, times.second);
    const QString since = u" DT >= '"_s + from;
    return from == to ? since + u"'"_s : since + u"' AND DT <='"_s + to + u"'"_s;
}

QString Conditions(const AuditFilter& filter) {
    QString sql;
    if (filter.containing)
        sql += ContainsText(*filter.containing) + u" "_s;
    if (filter.between)
        sql += (filter.containing ? u" AND "_s : u" WHERE "_s) + IsBetween(*filter.between);
    return sql;
}

QString QueryText(const AuditFilter& filter) {
    QString sql = AllTraces + Conditions(filter) + u" ORDER BY  DT DESC "_s;
    if (!filter.maximum.isEmpty() && filter.maximum != "0"_L1)
        sql += u"LIMIT "_s + filter.maximum;
    return sql;
}

ReadResult WalkRows(Statement& rows, const AuditCallback& callback) {
    AuditRecord record;
    return rows.Walk([&] {
        record = {rows.Integer(0), rows.Text(1), rows.Text(2)};
        return callback(record);
    });
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
    return WalkFiltered(QueryText(filter), callback);
}

ReadResult AuditTraceStore::EnumTraces(const AuditFilter& filter, qint64& end,
                                       const AuditCallback& callback) {
    const ReadResult read = ReadEnd(end);
    return read ? EnumTraces(filter, callback) : read;
}

ReadResult AuditTraceStore::EnumNewTraces(const AuditFilter& filter, qint64& end,
                                          const AuditCallback& callback) {
    qint64 newEnd = 0;
    ReadResult read = ReadEnd(newEnd);
    // Behind deleted rows the numbers go back.
    if (read && newEnd > end) {
        const QString conditions = Conditions(filter);
        read = WalkFiltered(AllTraces + conditions + (conditions.isEmpty() ? u" WHERE "_s : u" AND "_s) +
                                u"rowid>%1 ORDER BY rowid"_s.arg(end),
                            callback);
    }
    if (read)
        end = newEnd;
    return read;
}

/// In one transaction with what this connection reads next.
ReadResult AuditTraceStore::ReadEnd(qint64& end) {
    const auto once = [] { return false; };
    if (ReadResult begun = m_database.Prepare(u"BEGIN"_s, 0).Walk(once); !begun)
        return begun;
    Statement last = m_database.Prepare(u"SELECT max(rowid) FROM AuditTrace"_s, 1);
    return last.Walk([&] {
        end = last.Integer64(0);
        return false;
    });
}

ReadResult AuditTraceStore::EnumTaskTraces(const QString& taskKey, const AuditCallback& callback) {
    Statement rows = m_database.Prepare(AllTraces + ContainsText(taskKey) + u" ORDER By DT DESC"_s, Columns);
    return WalkRows(rows, callback);
}

/// What is no statement is the filter's fault where the bare one is.
ReadResult AuditTraceStore::WalkFiltered(const QString& sql, const AuditCallback& callback) {
    Statement rows = m_database.Prepare(sql, Columns);
    if (rows)
        return WalkRows(rows, callback);
    ReadResult read = rows.Result();
    if (m_database.Prepare(AllTraces, Columns))
        read.outcome = ReadOutcome::BadStatement;
    return read;
}

QString AuditTime(const QDateTime& time) {
    const QDate day = time.date();
    const QTime of = time.time();
    return QString::asprintf("%d-%02d-%02d %02d:%02d:%02d", day.year(), day.month(), day.day(), of.hour(),
                             of.minute(), of.second());
}

QString AuditTime(const QDate& day) {
    return AuditTime(QDateTime(day, QTime(0, 0), Qt::UTC)); // there every day has a midnight
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
