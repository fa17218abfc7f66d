#pragma once

#include "lanes/Reader.h"

#include <memory>
#include <vector>

/// A Reader that knows whether any work is under way, and can hold back what it is given.
class WatchedReader : public Reader {
public:
    explicit WatchedReader(Reader& reader) : m_reader(reader), m_pending(std::make_shared<int>(0)) {}

    void Submit(Job job) override;
    bool IsIdle() const { return *m_pending == 0; }

    /// To be asked at even steps. A page may read again what its first read told it of, so it counts as
    /// filled only after some steps without work; true begins the count anew.
    bool IsQuiet();

    /// From now on jobs wait here, until they are let go.
    void Hold() { m_held = true; }
    void LetGo();

private:
    Reader& m_reader;
    std::shared_ptr<int> m_pending;
    bool m_held = false;
    int m_quietSteps = 0;
    std::vector<Job> m_waiting;
};
