#include "ctl/BackgroundOutput.h"

#include <algorithm>
#include <utility>

namespace {
constexpr qint64 FetchSize = 64 << 10;
}

BackgroundOutput::BackgroundOutput(QIODevice& out) : m_out(out), m_thread([this] { Run(); }) {}

BackgroundOutput::~BackgroundOutput() {
    Finish();
}

bool BackgroundOutput::Write(QByteArrayView octets) {
    std::unique_lock lock(m_mutex);
    const auto fits = [&] { return m_waiting.size() + octets.size() <= MostInMemory || m_failed; };
    const bool inFile = m_spooled > m_fetched; // then what is new comes behind that
    if (!inFile && m_changed.wait_for(lock, Patience, fits))
        m_waiting.append(octets.data(), octets.size());
    else
        m_failed |= !Spool(octets);
    const bool failed = m_failed;
    lock.unlock();
    m_changed.notify_one();
    return !failed;
}

bool BackgroundOutput::Spool(QByteArrayView octets) {
    if (!m_file.isOpen() && !m_file.open())
        return false;
    const bool written =
        m_file.seek(m_spooled) && m_file.write(octets.data(), octets.size()) == octets.size();
    m_spooled += octets.size();
    return written;
}

bool BackgroundOutput::Finish() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_one();
    if (m_thread.joinable())
        m_thread.join();
    return !m_failed;
}

/// Puts what is to be written next in place of what was; false when no more comes.
bool BackgroundOutput::Fetch(std::unique_lock<std::mutex>& lock, QByteArray& octets) {
    m_changed.wait(lock,
                   [this] { return !m_waiting.isEmpty() || m_spooled > m_fetched || m_ended || m_failed; });
    octets.resize(0); // keeps its memory
    if (!m_waiting.isEmpty()) {
        std::swap(octets, m_waiting);
    } else if (m_spooled > m_fetched) {
        const qint64 size = std::min(FetchSize, m_spooled - m_fetched);
        octets = m_file.seek(m_fetched) ? m_file.read(size) : QByteArray();
        m_failed |= octets.size() != size;
        m_fetched += size;
    }
    return !m_failed && !octets.isEmpty();
}

void BackgroundOutput::Run() {
    QByteArray octets;
    std::unique_lock lock(m_mutex);
    while (Fetch(lock, octets)) {
        lock.unlock();
        m_changed.notify_one();
        const bool written = m_out.write(octets) == octets.size();
        lock.lock();
        m_failed |= !written;
    }
    lock.unlock();
    m_changed.notify_one();
}
