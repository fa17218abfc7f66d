#include "ctl/BackgroundOutput.h"

#include <algorithm>

namespace {
constexpr qint64 FetchSize = 64 << 10;
}

BackgroundOutput::BackgroundOutput(QIODevice& out) : m_out(out), m_thread([this] { Run(); }) {}

BackgroundOutput::~BackgroundOutput() {
    Finish();
}

bool BackgroundOutput::Write(QByteArray octets) {
    const std::lock_guard lock(m_mutex);
    // What is spooled comes before what is new.
    if (m_spooled > m_fetched || m_inMemory + octets.size() > MostInMemory) {
        m_failed |= !Spool(octets);
    } else {
        m_inMemory += octets.size();
        m_waiting.push_back(std::move(octets));
    }
    m_changed.notify_one();
    return !m_failed;
}

bool BackgroundOutput::Spool(const QByteArray& octets) {
    if (!m_file.isOpen() && !m_file.open())
        return false;
    const bool written = m_file.seek(m_spooled) && m_file.write(octets) == octets.size();
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

/// The octets that are to be written next; empty when no more come.
QByteArray BackgroundOutput::Next(std::unique_lock<std::mutex>& lock) {
    m_changed.wait(lock,
                   [this] { return !m_waiting.empty() || m_spooled > m_fetched || m_ended || m_failed; });
    if (m_failed)
        return {};
    if (!m_waiting.empty()) {
        QByteArray octets = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_inMemory -= octets.size();
        return octets;
    }
    const qint64 size = std::min(FetchSize, m_spooled - m_fetched);
    QByteArray octets;
    if (size > 0 && m_file.seek(m_fetched))
        octets = m_file.read(size);
    m_failed = octets.size() != size;
    m_fetched += size;
    return octets;
}

void BackgroundOutput::Run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        const QByteArray octets = Next(lock);
        if (octets.isEmpty())
            return;
        lock.unlock();
        const bool written = m_out.write(octets) == octets.size();
        lock.lock();
        m_failed |= !written;
    }
}
