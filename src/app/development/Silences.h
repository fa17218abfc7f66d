#pragma once

#include "development/CheckRun.h"

#include <QStringList>

/// A place that the sweep reports and that stays as it is. All of them stand in Silences.cpp.
struct Silence {
    SweepRule rule;
    const char* view;   ///< wildcards, as "task-manager*"
    const char* path;   ///< wildcards
    const char* reason; ///< why it stays
};

/// Leaves out what is silenced, and notes which silences were of use.
class SilenceBook {
public:
    SilenceBook();
    explicit SilenceBook(std::vector<Silence> silences);

    std::vector<ViewFind> Loud(const std::vector<ViewFind>& finds);
    /// A sentence for each silence that has matched nothing so far.
    QStringList Unused() const;

private:
    bool IsSilenced(const ViewFind& found);

    std::vector<Silence> m_silences;
    std::vector<bool> m_used;
};
