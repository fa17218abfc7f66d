#include "devservice/FileMonitor.h"

#include "devservice/WireText.h"
#include "platform/Folders.h"
#include "platform/NamedObjects.h"
#include "platform/ServiceControl.h"
#include "platform/Sleep.h"

#include <algorithm>
#include <cctype>
#include <thread>
#include <vector>

namespace devservice {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds Look = 20ms;
constexpr size_t Batch = 100; ///< files of a transaction
constexpr int BusyTime = 5000;

/// What stands behind the last dot of the name, in small letters.
std::string ExtensionOf(const fs::path& file) {
    std::string extension = platform::Utf8FromPath(file.extension());
    extension.erase(0, 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return extension;
}

std::vector<fs::path> FilesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::recursive_directory_iterator at(folder, fs::directory_options::skip_permission_denied, error),
         end;
         !error && at != end; at.increment(error))
        if (at->is_regular_file(error))
            files.push_back(at->path());
    std::sort(files.begin(), files.end());
    return files;
}

void WriteBatch(Connection& index, const std::vector<fs::path>& files, size_t first) {
    Transaction transaction(index);
    Statement insert(index, "INSERT OR REPLACE INTO FileDB VALUES(?,?,?,?)");
    for (size_t at = first; at < std::min(first + Batch, files.size()); ++at) {
        std::error_code error;
        const auto size = fs::file_size(files[at], error);
        insert.Bind(platform::Utf8FromPath(files[at])).Bind(ExtensionOf(files[at]));
        insert.Bind(error ? int64_t{0} : static_cast<int64_t>(size)).BindNull().Run();
    }
    transaction.Commit();
}

} // namespace

bool IndexFiles(Connection& index, const fs::path& folder, milliseconds time, const std::stop_token& stop) {
    const std::vector<fs::path> files = FilesIn(folder);
    const auto pause = time / static_cast<int64_t>(files.size() / Batch + 1);
    index.Execute("DELETE FROM FileDB");
    for (size_t first = 0; first < files.size(); first += Batch) {
        WriteBatch(index, files, first);
        if (!platform::SleepUnlessStopped(stop, pause))
            return false;
    }
    return true;
}

std::optional<FileMonitorSwitch> ParseFileMonitor(const std::string& text) {
    using Kind = FileMonitorSwitch::Kind;
    constexpr std::pair<std::string_view, Kind> Words[] = {
        {"running", Kind::Running}, {"absent", Kind::Absent}, {"failing", Kind::Failing}};
    for (const auto& [word, kind] : Words)
        if (text == word)
            return FileMonitorSwitch{kind};
    constexpr std::string_view Slow = "slow:";
    const auto time =
        StartsWith(text, Slow) ? NumberOf(std::string_view(text).substr(Slow.size())) : std::nullopt;
    return time ? std::optional(FileMonitorSwitch{Kind::Slow, milliseconds(*time)}) : std::nullopt;
}

/// The monitor from its start to its end.
class FileMonitor::Run {
public:
    Run(const FileMonitor& monitor, const FileMonitorSwitch& how)
        : m_how(how), m_folder(monitor.m_folder), m_index(monitor.m_index),
          m_lock(platform::ServiceLock::Take(monitor.m_home, "BrenFileMonSvc")),
          m_force(platform::NamedEvent::Make("Global\\BrenviaFileForceIndex")),
          m_indexed(platform::NamedEvent::Make("Global\\BrenviaFileIndexed")) {
        if (HighestRow() == 0)
            m_begin = platform::NamedEvent::Make("Global\\BrenviaFileMon");
        else if (m_indexed)
            m_indexed->Set();
        m_thread = std::jthread([this](const std::stop_token& stop) { Watch(stop); });
    }

private:
    int64_t HighestRow() const {
        Connection connection(m_index, BusyTime);
        Statement statement(connection, "SELECT coalesce(max(rowid), 0) FROM FileDB");
        return statement.Step() ? statement.Integer(0) : 0;
    }

    /// The word to begin stands only until the index has been built; after that whoever takes back that there
    /// is an index wants a new one.
    void Watch(const std::stop_token& stop) {
        while (platform::SleepUnlessStopped(stop, Look)) {
            const bool told = m_begin ? m_begin->IsSet() : m_indexed && !m_indexed->IsSet();
            if ((told || (m_force && m_force->IsSet())) && m_how.kind != FileMonitorSwitch::Kind::Failing)
                TryToIndex(stop);
        }
    }

    void TryToIndex(const std::stop_token& stop) {
        try {
            Connection connection(m_index, BusyTime);
            if (!IndexFiles(connection, m_folder, m_how.time, stop))
                return;
        } catch (const SqliteError&) {
            return; // the file is locked or gone: the next look tries again
        }
        if (m_force)
            m_force->Reset();
        m_begin.reset();
        if (m_indexed)
            m_indexed->Set();
    }

    const FileMonitorSwitch m_how;
    const fs::path m_folder;
    const fs::path m_index;
    std::optional<platform::ServiceLock> m_lock;
    std::optional<platform::NamedEvent> m_begin; ///< stands until an index has been built
    std::optional<platform::NamedEvent> m_force;
    std::optional<platform::NamedEvent> m_indexed;
    std::jthread m_thread; ///< the last, so that it ends first
};

FileMonitor::FileMonitor(fs::path home, fs::path folder, fs::path index)
    : m_home(std::move(home)), m_folder(std::move(folder)), m_index(std::move(index)) {}

FileMonitor::~FileMonitor() = default;

void FileMonitor::Set(const FileMonitorSwitch& how) {
    const std::scoped_lock lock(m_mutex);
    m_run.reset(); // its events and its lock go before others are made
    if (how.kind != FileMonitorSwitch::Kind::Absent)
        m_run = std::make_unique<Run>(*this, how);
}

} // namespace devservice
