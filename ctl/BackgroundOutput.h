#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QTemporaryFile>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Writes to a device by a thread of its own. Whoever walks a database holds a lock that the service waits
/// for, so a reader of ours that takes its time must not hold up the walk: what it has not taken yet waits
/// in memory, and beyond MostInMemory octets in a temporary file.
class BackgroundOutput {
public:
    static constexpr qsizetype MostInMemory = 1 << 20;
    static constexpr std::chrono::milliseconds Patience{50}; ///< with a device that is about to take more

    /// The device is the thread's until Finish.
    explicit BackgroundOutput(QIODevice& out);
    ~BackgroundOutput(); ///< as Finish

    /// False once the device has failed.
    bool Write(QByteArrayView octets);
    /// Waits until all is written; false when it could not be.
    bool Finish();

private:
    void Run();
    bool Fetch(std::unique_lock<std::mutex>& lock, QByteArray& octets);
    bool Spool(QByteArrayView octets);

    QIODevice& m_out;
    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_changed;
    QByteArray m_waiting;  ///< comes before what is in the file
    QTemporaryFile m_file; ///< opened when it is first needed
    qint64 m_spooled = 0;  ///< octets written to it
    qint64 m_fetched = 0;  ///< octets read from it again
    bool m_ended = false;
    bool m_failed = false;
    std::thread m_thread; ///< last: uses what stands above
};
