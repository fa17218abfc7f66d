#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// One line of the table: what we take, what the plainest way to do the same takes, and what we promise.
struct BenchFigure {
    std::string name;
    std::string unit;
    double ours = 0;
    std::optional<double> reference = {};
    std::optional<double> maxRatio = {}; ///< of ours to the reference
    std::optional<double> maxOurs = {};

    std::optional<double> Ratio() const;
    bool Holds() const;
};

/// The figures measured so far.
class BenchTable {
public:
    void Add(BenchFigure figure); ///< prints its line at once

    bool WriteJson(const std::string& file) const;
    bool AllHold() const;

private:
    std::vector<BenchFigure> m_figures;
};

/// A benchmark in namespace scope registers itself under a name that `--only` chooses.
struct BenchRegistration {
    enum Turn { Any, First };
    BenchRegistration(const char* name, std::function<void(BenchTable&)> run, Turn turn = Any);
};

/// Times in milliseconds, one a round.
class Samples {
public:
    void Add(double milliseconds) { m_times.push_back(milliseconds); }
    double Median() const { return Percentile(50); }
    double Percentile(double percent) const;

private:
    std::vector<double> m_times;
};

struct PairSamples {
    Samples ours;
    Samples reference;
};

double MillisecondsOf(const std::function<void()>& work);

/// Runs both by turns, each first in every other round, so that what disturbs the machine disturbs both.
PairSamples MeasurePair(int rounds, const std::function<void()>& ours,
                        const std::function<void()>& reference);

/// The most memory in MiB that the work, run in a child process, needs beyond what there was before.
double PeakMemoryOf(const std::function<void()>& work);
