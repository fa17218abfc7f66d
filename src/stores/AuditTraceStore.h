#pragma once

#include "stores/Database.h"
#include "stores/Statement.h"

#include <QDateTime>

#include <functional>
#include <optional>

/// A row of the service's audit trace. A null column is a null string.
struct AuditRecord {
    int level = 0; ///< 0 information, 1 warning, 2 error
    QString trace; ///< with the key of its task before it: AuditMessage cuts that off
    QString time;  ///< "2025-03-04 09:05:00"
};

/// Called for each row, newest first, on the reading thread; false ends the walk. It copies what it needs and
/// returns at once: a walk holds a lock that the service waits for.
using AuditCallback = std::function<bool(const AuditRecord&)>;

/// Which rows a user asked for. Texts go into the statement as they stand: one with a quote in it makes a
/// statement that is none, and the read ends as BadStatement.
struct AuditFilter {
    std::optional<QString> containing;
    /// Times as in the rows, both included, in either order; equal ones: from then on.
    std::optional<std::pair<QString, QString>> between;
    QString maximum; ///< rows; all when empty or "0"
};

/// A time as the rows have it: "2025-03-04 09:05:00".
QString AuditTime(const QDateTime& time);
/// The midnight that the day begins with.
QString AuditTime(const QDate& day);

/// The service's audit trace. One object a read, one thread at a time.
class AuditTraceStore {
public:
    explicit AuditTraceStore(std::stop_token stop = {}, const OpenRule& rule = OpenOnce);

    ReadResult EnumTraces(const AuditFilter& filter, const AuditCallback& callback);

    /// The same; `end` takes where the trace ended then, for EnumNewTraces.
    ReadResult EnumTraces(const AuditFilter& filter, qint64& end, const AuditCallback& callback);

    /// Walks what was added behind `end`, oldest first and without the filter's maximum, and moves `end` on.
    ReadResult EnumNewTraces(const AuditFilter& filter, qint64& end, const AuditCallback& callback);

    /// Walks the rows that hold the task's key.
    ReadResult EnumTaskTraces(const QString& taskKey, const AuditCallback& callback);

private:
    ReadResult ReadEnd(qint64& end);
    ReadResult WalkFiltered(const QString& sql, const AuditCallback& callback);

    Database m_database;
};

/// Deletes the rows that hold the task's key, by a writing connection of its own. Takes an identifier in
/// braces only, of letters, digits and hyphens: any other text could match the rows of other tasks, and is
/// refused as Failed.
ReadResult DeleteTaskTraces(const QString& taskKey, std::stop_token stop = {},
                            const OpenRule& rule = OpenOnce);

/// The message of a trace without the key before it; empty when a key begins and does not end.
QString AuditMessage(const QString& trace);
