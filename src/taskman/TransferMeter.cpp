#include "taskman/TransferMeter.h"

#include "look/Formatters.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

quint32 SecondsFor(quint64 octets, double speed) {
    const double seconds = static_cast<double>(octets) / speed;
    return static_cast<quint32>(std::min<double>(seconds, std::numeric_limits<quint32>::max()));
}

} // namespace

TransferProgress TransferMeter::Sample(const std::vector<RunningSubTask>& running, Clock::time_point now) {
    TransferProgress progress;
    QHash<QString, quint64> done;
    quint64 moved = 0;
    for (const RunningSubTask& transfer : running) {
        if (transfer.bytesTotal == 0)
            continue;
        const quint64 octets = std::min(transfer.bytesDone, transfer.bytesTotal);
        const QString name = transfer.fileName + u'\n' + transfer.target;
        // One that the last sample has not seen has come to what it is since then.
        moved += octets - std::min(m_done.value(name), octets);
        done.insert(name, octets);
        progress.done += octets;
        progress.left += transfer.bytesTotal - octets;
    }
    const std::chrono::duration<double> elapsed = now - m_at;
    const bool compares = !m_done.isEmpty() && elapsed.count() > 0;
    if (compares && moved > 0)
        m_speed = static_cast<double>(moved) / elapsed.count();
    m_done = std::move(done);
    m_at = now;
    if (m_speed)
        progress.secondsLeft = SecondsFor(progress.left, *m_speed);
    return progress;
}

QString TransferText(const TransferProgress& progress) {
    const QString done = FormatSize(progress.done).trimmed();
    if (!progress.secondsLeft)
        return QCoreApplication::translate("TransferText", "%1 transferred").arg(done);
    return u"%1, %2"_s.arg(
        done, FormatRemaining(FormatSize(progress.left).trimmed(), FormatDuration(*progress.secondsLeft)));
}
