#include "stores/FileIndexStore.h"

#include "platform/Folders.h"
#include "platform/Registry.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Columns = 1;
constexpr size_t LongestLocation = 260;
constexpr const char* IndexName = "JounralDB"; // the spelling is the file monitor's

// People search the log for this line: its odd words stay.
const QString PrepareFailed = u"[FileDB]Create FileDB Index2:"_s;

/// Relative folders would be another one for each program that asks; an empty one is no place.
std::filesystem::path IndexFolder() {
    const platform::RegistryKey key{platform::RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia\\FileMonSvc"};
    std::string location = platform::ReadRegistryText(key, "DBLocation", LongestLocation).value_or("");
    if (location.empty()) {
        const auto common = platform::SpecialFolderPath(platform::SpecialFolder::ProgramFilesCommon);
        return common.empty() ? common : common / "Brenvia" / IndexName;
    }
    if (location.back() == '\\')
        location.pop_back();
    // Joined as text: behind "D:" a path's own joining would put no separator.
    constexpr char Separator = static_cast<char>(std::filesystem::path::preferred_separator);
    const std::filesystem::path folder = platform::PathFromUtf8(location + Separator + IndexName);
    return folder.is_absolute() ? folder : std::filesystem::path();
}

std::filesystem::path FileIndexFile() {
    const std::filesystem::path folder = FileIndexFolder();
    return folder.empty() ? folder : folder / "gcfile.db";
}

} // namespace

std::filesystem::path FileIndexFolder() {
    std::filesystem::path folder = IndexFolder();
    if (!folder.empty())
        platform::MakeFolders(folder); // opening the file tells what is wrong with the folder
    return folder;
}

FileIndexStore::FileIndexStore(std::stop_token stop, const OpenRule& rule)
    : m_database(FileIndexFile(), rule, std::move(stop)),
      m_rows(m_database.Prepare(u"SELECT * FROM FileDB WHERE Ext=? ORDER BY FullPath ASC"_s, Columns,
                                PrepareFailed)) {}

ReadResult FileIndexStore::EnumFilesByExt(const QString& extension, const FilePathCallback& callback) {
    if (!m_rows || !m_rows.Reset() || !m_rows.Bind(1, extension))
        return m_rows.Result();
    return m_rows.Walk([&] {
        const QString path = m_rows.Text(0);
        return path.isNull() || callback(path);
    });
}

std::optional<qint64> ReadHighestFileRow(const std::stop_token& stop) {
    Database database(FileIndexFile(), OpenOnce, stop);
    Statement highest = database.Prepare(u"SELECT max(rowid) FROM FileDB"_s, Columns);
    return highest.Step() ? std::optional(highest.Integer64(0)) : std::nullopt;
}
