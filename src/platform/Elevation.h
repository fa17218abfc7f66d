#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace platform {

/// Whether this system is of the kind that can start a program with raised rights.
bool MayElevate();

/// Starts the executable with raised rights, which the system asks the user for. Where the system leaves it
/// to us, the display, home and data folder of this process are carried over; Windows gives the program an
/// environment of its own. Blocks until the program runs (true), or the user or
/// the system has refused (false).
bool RelaunchElevated(const std::filesystem::path& executable, const std::vector<std::string>& arguments);

} // namespace platform
