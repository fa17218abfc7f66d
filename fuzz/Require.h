#pragma once

#include <cstdlib>

/// Ends the run as a finding when something that must hold for every input does not.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}
