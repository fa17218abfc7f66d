#include "devservice/LiveTraceWriter.h"

#include <QFile>
#include <QRandomGenerator>
#include <QtEndian>

#include <atomic>
#include <fstream>
#include <system_error>
#include <utility>

struct LiveTraceWriter::State {
    explicit State(std::filesystem::path path)
        : path(std::move(path)), instance(QRandomGenerator::system()->generate64()) {}

    bool Reserve(size_t count);
    std::atomic_ref<quint32> Word(size_t index) { return std::atomic_ref<quint32>(words[index]); }

    const std::filesystem::path path;
    const quint64 instance;
    QFile file;
    quint32* words = nullptr;
    std::uintmax_t size = 0; ///< of the mapped file, in octets
};

/// Maps the file with room for `count` words, making or growing it first where needed.
bool LiveTraceWriter::State::Reserve(size_t count) {
    constexpr std::uintmax_t page = 4096;
    const std::uintmax_t needed = (count * sizeof(quint32) + page - 1) / page * page;
    std::error_code error;
    if (words && size >= needed && std::filesystem::file_size(path, error) == size)
        return true;
    file.close(); // unmaps too
    words = nullptr;
    std::filesystem::create_directories(path.parent_path(), error);
    std::ofstream(path, std::ios::app).close();
    size = std::filesystem::file_size(path, error);
    if (!error && size < needed)
        std::filesystem::resize_file(path, size = needed, error);
    file.setFileName(path);
    if (error || !file.open(QIODevice::ReadWrite))
        return false;
    words = reinterpret_cast<quint32*>(file.map(0, qint64(size)));
    return words != nullptr;
}

LiveTraceWriter::LiveTraceWriter(std::filesystem::path file)
    : m_state(std::make_unique<State>(std::move(file))) {}

LiveTraceWriter::~LiveTraceWriter() {
    Publish({});
}

bool LiveTraceWriter::Publish(const LiveTraceSnapshot& snapshot) {
    using namespace LiveTrace;
    const std::vector<quint32> words = Encode(snapshot, m_state->instance);
    if (words.size() > MaxWords || !m_state->Reserve(words.size()))
        return false;
    // A sequence that is odd already is left from a writer that died at work.
    const quint32 odd = qFromLittleEndian(m_state->Word(SequenceWord).load()) | 1;
    m_state->Word(SequenceWord).store(qToLittleEndian(odd));
    for (size_t i = 0; i < words.size(); ++i) {
        if (i != SequenceWord)
            m_state->Word(i).store(qToLittleEndian(words[i]), std::memory_order_release);
    }
    m_state->Word(SequenceWord).store(qToLittleEndian(odd + 1));
    return true;
}
