#pragma once

#include <QString>

#include <functional>

/// What sections open of each other without knowing each other. Filled in app/; nothing is opened by a
/// function that is not there.
struct SectionLinks {
    /// Shows what the service traced between two times, both as in "2025-03-04 09:05:00".
    std::function<void(const QString& from, const QString& to)> showTraces = {};
};
