#pragma once

#include "stores/Database.h"
#include "stores/Statement.h"

#include <functional>
#include <optional>

/// Called with each full path, on the reading thread; false ends the walk.
using FilePathCallback = std::function<bool(const QString&)>;

/// The file monitor keeps its index busy for longer than the service its databases.
inline constexpr OpenRule FileIndexOpenRule{100, std::chrono::milliseconds(100)};

/// The file monitor's index of the machine's files. One object a read, one thread at a time.
class FileIndexStore {
public:
    explicit FileIndexStore(std::stop_token stop = {}, const OpenRule& rule = FileIndexOpenRule);

    /// Walks the files of an extension, as the file monitor writes it, in the order of their paths.
    ReadResult EnumFilesByExt(const QString& extension, const FilePathCallback& callback);

private:
    Database m_database;
    Statement m_rows;
};

/// How many files have been written into the index so far: its highest row, which is there at once where
/// counting would read it all. None while the index cannot be read.
std::optional<qint64> ReadHighestFileRow(const std::stop_token& stop);

/// Where the file monitor keeps its index. The folder is made when missing; empty when the system names none.
std::filesystem::path FileIndexFolder();
