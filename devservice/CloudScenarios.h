#pragma once

#include "devservice/DavTree.h"
#include "devservice/Profile.h"

namespace devservice {

/// Fills a home without virtual directories: directories, their cards and what they hold. `entries` folders
/// more stand in one folder "Many" of the first directory.
void PopulateCloud(const std::string& scenario, int entries, Profile& profile, DavTree& tree,
                   Settings& settings);

} // namespace devservice
