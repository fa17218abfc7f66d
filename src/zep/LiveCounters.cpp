#include "zep/LiveCounters.h"

#include "platform/MappedFile.h"
#include "zep/LiveTraceLayout.h"
#include "zep/SysInfo.h"

#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <span>
#include <thread>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The file's words, which the service may be writing.
class SharedWords {
public:
    explicit SharedWords(const platform::MappedFile& file) : m_file(file) {}

    std::optional<quint32> Sequence() const {
        const auto word = Read(LiveTrace::SequenceWord, 1);
        return word.empty() ? std::nullopt : std::optional(word.front());
    }

    /// All the words that the header speaks of; none where the file does not hold them.
    std::vector<quint32> Copy() const {
        const auto used = Read(LiveTrace::UsedWords, 1);
        return used.empty() ? used : Read(0, std::min(used.front(), LiveTrace::MaxWords));
    }

private:
    std::vector<quint32> Read(size_t begin, size_t count) const {
        if ((begin + count) * sizeof(quint32) > m_file.Bytes().size())
            return {};
        std::vector<quint32> words(count);
        // Not through the mapping: a file that was cut short must not end the console.
        if (!m_file.Read(begin * sizeof(quint32), std::as_writable_bytes(std::span(words))))
            return {};
        for (quint32& word : words)
            word = qFromLittleEndian(word);
        return words;
    }

    const platform::MappedFile& m_file;
};

/// The totals that were reported last, and of which run of the service.
struct IoReport {
    quint64 instance = 0;
    NetIoSize total;
};

} // namespace

struct LiveCounters::State {
    /// What is known now; nothing when that is nothing. Valid while the mutex is held.
    const LiveTrace::Decoded* Read();

    std::filesystem::path file;
    std::mutex mutex;
    std::optional<IoReport> lastIo;

private:
    void Map();
    void DecodeConsistent(const SharedWords& words);

    std::optional<platform::MappedFile> m_mapped;
    std::optional<LiveTrace::Decoded> m_decoded;
    std::optional<quint32> m_sequence; ///< that m_decoded belongs to; an odd one was given up on
};

const LiveTrace::Decoded* LiveCounters::State::Read() {
    Map();
    if (!m_mapped)
        return nullptr;
    DecodeConsistent(SharedWords(*m_mapped));
    return m_decoded ? &*m_decoded : nullptr;
}

/// Follows the file where it has been made, replaced or resized.
void LiveCounters::State::Map() {
    if (m_mapped && !m_mapped->IsReplaced())
        return;
    m_sequence.reset();
    m_decoded.reset();
    m_mapped.reset();
    m_mapped = platform::MappedFile::Open(file);
}

/// Decodes the words when they have changed. A service that died while it wrote leaves an odd sequence
/// behind: that is waited for only once.
void LiveCounters::State::DecodeConsistent(const SharedWords& words) {
    constexpr int leastAttempts = 3;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(5);
    std::optional<quint32> before;
    for (int attempt = 0; attempt < leastAttempts || std::chrono::steady_clock::now() < deadline; ++attempt) {
        before = words.Sequence();
        if (!before)
            break;
        if (before == m_sequence)
            return;
        if (*before % 2 == 0) {
            const std::vector<quint32> copy = words.Copy();
            if (words.Sequence() == before) {
                m_decoded = LiveTrace::Decode(copy);
                m_sequence = before;
                return;
            }
        }
        std::this_thread::yield();
    }
    m_decoded.reset();
    m_sequence = before && *before % 2 == 1 ? before : std::nullopt;
}

LiveCounters::LiveCounters() : LiveCounters(ZEPGetHomePath(u"trace"_s) / "livetrace.map") {}

LiveCounters::LiveCounters(std::filesystem::path file) : m_state(std::make_unique<State>()) {
    m_state->file = std::move(file);
}

LiveCounters::~LiveCounters() = default;

std::optional<quint32> LiveCounters::ZEPTraceCounterGet(TraceCounter counter) const {
    const std::scoped_lock lock(m_state->mutex);
    const LiveTrace::Decoded* now = m_state->Read();
    if (!now)
        return std::nullopt;
    const auto value = now->snapshot.counters.find(counter);
    return value == now->snapshot.counters.end() ? std::nullopt : std::optional(value->second);
}

SubTaskCounts LiveCounters::ZEPTraceGetSTaskInfo(const QString& taskId) const {
    const std::scoped_lock lock(m_state->mutex);
    const LiveTrace::Decoded* now = m_state->Read();
    if (!now)
        return {};
    const auto counts = now->snapshot.tasks.find(taskId);
    return counts == now->snapshot.tasks.end() ? SubTaskCounts() : counts->second;
}

bool LiveCounters::ZEPEnumTasksWithCallBackEx(
    const QString& taskId, const std::function<bool(const RunningSubTask&)>& callback) const {
    std::vector<RunningSubTask> running;
    {
        const std::scoped_lock lock(m_state->mutex);
        const LiveTrace::Decoded* now = m_state->Read();
        if (!now)
            return false;
        running = now->snapshot.running;
    }
    for (const RunningSubTask& task : running) {
        const bool wanted = taskId.isEmpty() || task.taskId.compare(taskId, Qt::CaseInsensitive) == 0;
        if (wanted && !callback(task))
            break;
    }
    return true;
}

NetIoSize LiveCounters::ZEPHttpGetLastNetIOSize() {
    const std::scoped_lock lock(m_state->mutex);
    const std::optional<IoReport> last = std::exchange(m_state->lastIo, std::nullopt);
    const LiveTrace::Decoded* now = m_state->Read();
    if (!now)
        return {};
    const NetIoSize total = now->snapshot.netIoTotal;
    m_state->lastIo = IoReport{now->instance, total};
    const bool goesOn = last && last->instance == now->instance && last->total.sent <= total.sent &&
                        last->total.received <= total.received;
    return goesOn ? NetIoSize{total.sent - last->total.sent, total.received - last->total.received}
                  : NetIoSize();
}
