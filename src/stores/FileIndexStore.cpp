#include "stores/FileIndexStore.h"

#include "platform/Folders.h"
#include "platform/Registry.h"

namespace {

constexpr int Columns = 1;
constexpr size_t LongestLocation = 260;

// People search the log for this line: its odd words stay.
const QString PrepareFailed = QStringLiteral("[FileDB]Create FileDB Index2:");

std::filesystem::path BaseFolder() {
    const platform::RegistryKey key{platform::RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia\\FileMonSvc"};
    std::string location = platform::ReadRegistryText(key, "DBLocation", LongestLocation).value_or("");
    if (location.empty()) {
        const auto common = platform::SpecialFolderPath(platform::SpecialFolder::ProgramFilesCommon);
        return common.empty() ? common : common / "Brenvia";
    }
    if (location.back() == '\\')
        location.pop_back();
    return platform::PathFromUtf8(location);
}

std::filesystem::path FileIndexFile() {
    const std::filesystem::path folder = FileIndexFolder();
    return folder.empty() ? folder : folder / "gcfile.db";
}

} // namespace

std::filesystem::path FileIndexFolder() {
    const std::filesystem::path base = BaseFolder();
    if (base.empty())
        return {};
    std::filesystem::path folder = base / "JounralDB"; // the spelling is the file monitor's
    std::error_code ignored;                           // opening the file tells what is wrong with the folder
    std::filesystem::create_directories(folder, ignored);
    return folder;
}

FileIndexStore::FileIndexStore(std::stop_token stop, const OpenRule& rule)
    : m_database(FileIndexFile(), rule, std::move(stop)),
      m_rows(m_database.Prepare(QStringLiteral("SELECT * FROM FileDB WHERE Ext=? ORDER BY FullPath ASC"),
                                Columns, PrepareFailed)) {}

ReadResult FileIndexStore::EnumFilesByExt(const QString& extension, const FilePathCallback& callback) {
    if (!m_rows || !m_rows.Reset() || !m_rows.Bind(1, extension))
        return m_rows.Result();
    return m_rows.Walk([&] {
        const QString path = m_rows.Text(0);
        return path.isNull() || callback(path);
    });
}
