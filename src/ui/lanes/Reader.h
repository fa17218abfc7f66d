#pragma once

#include <cstddef>
#include <functional>
#include <stop_token>

/// `Network` is for what waits for other machines, for minutes where they are slow. `Apart` is for what may
/// wait for minutes, as for a drive that is gone: its jobs hold up nothing, not even each other.
enum class Lane { Service, Databases, Computing, Network, Apart };
inline constexpr std::size_t LaneCount = 5;

enum class ReadPriority { Command, Front, Hidden };

/// Runs work off the UI thread, one at a time a lane but for `Apart`. In a lane commands overtake reads, and
/// the page in front overtakes hidden ones; equals keep their order. Lives on the UI thread, and longer than
/// the pages.
class Reader {
public:
    struct Job {
        Lane lane = Lane::Service;
        std::function<ReadPriority()> priority;    ///< UI thread, asked whenever the lane picks its next job
        std::stop_source stop;                     ///< of a read also stopped when the reader dies
        std::function<void(std::stop_token)> work; ///< the lane; left out when stopped before its turn
        std::function<void()> done;                ///< UI thread, never inside Submit
    };

    virtual ~Reader() = default;

    /// Each job ends in exactly one `done`, also when it was stopped before or while it ran; a job that is
    /// stopped while it waits ends at once, not in its turn. Jobs left when the reader dies end in none;
    /// commands among them are still carried out.
    virtual void Submit(Job job) = 0;
};
