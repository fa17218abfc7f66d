#pragma once

#include "list/RecordTable.h"

#include <QStringList>

#include <atomic>

/// A file that the index holds; its path lives in the rows it came from.
struct IndexedFile {
    QStringView path;

    QString NameCell() const;
    QString FolderCell() const;

    friend bool operator==(const IndexedFile&, const IndexedFile&) = default;
};

/// Files in one piece of memory for all their paths, since there may be a million of them.
class IndexedFileBlock {
public:
    void push_back(const IndexedFile& file);
    IndexedFile operator[](std::size_t row) const;
    std::size_t size() const { return m_ends.size(); }
    bool empty() const { return m_ends.empty(); }
    void shrink_to_fit();

private:
    QString m_paths;
    std::vector<qsizetype> m_ends;
};

template <>
struct RecordsOf<IndexedFile> {
    using Type = IndexedFileBlock;
};

/// How far a read of the index has come. Any thread.
struct IndexedFileCount {
    std::atomic<int> files = 0;
    std::atomic<bool> ended = false; ///< not because it was given up
};

/// Which files of the index a table shows.
struct IndexedFileQuery {
    QStringList types;
    QStringList exclusions = {};
    std::shared_ptr<IndexedFileCount> count = std::make_shared<IndexedFileCount>();
};

/// The files of each type in the order of their paths, one type after the other. What an exclusion covers is
/// left out.
RecordTable<IndexedFile> IndexedFileTable(RecordPage page, const IndexedFileQuery& query);
