#pragma once

#include "lanes/Reader.h"

#include <QObject>

#include <array>
#include <memory>

/// The program's Reader: a thread for each lane.
class ThreadReader : public QObject, public Reader {
    Q_OBJECT

public:
    ThreadReader();
    /// Stops the reads. Commands that were given are still carried out, for a few seconds at most.
    ~ThreadReader() override;

    void Submit(Job job) override;

private:
    class LaneThread;

    Q_INVOKABLE void Pump();

    std::array<std::unique_ptr<LaneThread>, LaneCount> m_lanes;
};
