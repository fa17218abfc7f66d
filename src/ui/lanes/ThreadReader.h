#pragma once

#include "lanes/Reader.h"

#include <QObject>

#include <memory>
#include <vector>

/// The program's Reader: a thread for each lane, and for each job that is apart from the others.
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
    LaneThread& AddThread();
    LaneThread& ThreadFor(Lane lane);

    /// One for each lane in its order, then those that jobs apart have needed beyond the first.
    std::vector<std::unique_ptr<LaneThread>> m_lanes;
};
