#pragma once

#include <QString>

#include <array>
#include <optional>

/// The speeds of the status bar, from byte counts sampled about once a second.
class SpeedMeter {
public:
    struct Texts {
        QString upload;
        QString download;
    };

    /// Whether a sample is due at this tick (milliseconds, may wrap): not at the first, nor twice at one.
    bool Due(quint32 tick);

    /// Takes the bytes that were sent and received since the last sample. Nothing before the fourth.
    std::optional<Texts> Add(quint32 tick, quint64 sent, quint64 received);

private:
    struct Rates {
        quint64 upload = 0;
        quint64 download = 0;
    };

    std::optional<quint32> m_previousTick;
    quint32 m_samples = 0;
    std::array<Rates, 5> m_ring;
};
