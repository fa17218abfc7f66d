#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace platform {

/// Whether this system is of the kind that can start a program with raised rights.
bool MayElevate();

/// Starts the executable with raised rights, which the system asks the user for. The display and home of this
/// process are carried over, other variables are not. Blocks until the program runs (true), or the user or
/// the system has refused (false).
bool RelaunchElevated(const std::filesystem::path& executable, const std::vector<std::string>& arguments);

} // namespace platform
