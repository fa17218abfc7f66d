#include "window/SpeedMeter.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString SpeedText(double kilobytesPerSecond) {
    return QString::asprintf("%5.3f KB/S", kilobytesPerSecond);
}

} // namespace

bool SpeedMeter::Due(quint32 tick) {
    if (!m_previousTick)
        m_previousTick = tick;
    return *m_previousTick != tick;
}

std::optional<SpeedMeter::Texts> SpeedMeter::Add(quint32 tick, quint64 sent, quint64 received) {
    const quint32 elapsed = tick - m_previousTick.value_or(tick);
    if (elapsed == 0)
        return {};
    const Rates current{sent * 1000 / elapsed, received * 1000 / elapsed};
    m_ring[m_samples % m_ring.size()] = current;
    ++m_samples;
    m_previousTick = tick;

    // The newest sample counts twice, on purpose: the latest second weighs more.
    Rates sum = current;
    const auto filled = std::min<size_t>(m_samples, m_ring.size());
    for (size_t slot = 0; slot < filled; ++slot) {
        sum.upload += m_ring[slot].upload;
        sum.download += m_ring[slot].download;
    }
    if (m_samples < 4)
        return {};
    const double divisor = m_samples == 4 ? 4.0 * 1024 : 5120.0;
    return Texts{u"Upload: "_s + SpeedText(static_cast<double>(sum.upload) / divisor),
                 u"Download: "_s + SpeedText(static_cast<double>(sum.download) / divisor) +
                     u" (Click to set bandwidth limit)"_s};
}
