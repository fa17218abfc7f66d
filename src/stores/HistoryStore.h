#pragma once

#include "stores/Database.h"
#include "stores/Statement.h"

#include <vector>

/// One change in a sync folder. A null column is a null string.
struct HistoryRecord {
    QString uri;
    QString operation; ///< as "m#13340000000": what was done, and when
    QString updater;
    QString computer;
};

enum class HistoryView {
    ChangeList, ///< the newest 200
    Summary     ///< the newest 50; those of one moment by name
};

/// The changes in sync folders, newest first. One object a read, one thread at a time.
class HistoryStore {
public:
    explicit HistoryStore(HistoryView view, std::stop_token stop = {}, const OpenRule& rule = OpenOnce);

    /// Appends the changes in the virtual directory's folder to `list`; those read before a failure too.
    ReadResult FillHistory(const QString& virtualDirectory, std::vector<HistoryRecord>& list);

private:
    Database m_database;
    Statement m_rows;
};

/// Opens a store for one call.
ReadResult FillHistory(HistoryView view, const QString& virtualDirectory, std::vector<HistoryRecord>& list,
                       std::stop_token stop = {}, const OpenRule& rule = OpenOnce);
