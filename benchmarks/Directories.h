#pragma once

#include "devservice/DevService.h"

#include <string>
#include <vector>

/// So many virtual directories, all of them logged in.
inline std::vector<devservice::VirtualDirectory> MakeDirectories(int count) {
    std::vector<devservice::VirtualDirectory> directories;
    for (int i = 0; i < count; ++i)
        directories.push_back({"Storage " + std::to_string(i), "{" + std::to_string(i) + "}", 3, "{P}"});
    return directories;
}
