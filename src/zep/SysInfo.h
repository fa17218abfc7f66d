#pragma once

#include <QString>

#include <filesystem>

/// Which of the two services this process speaks to. Set once at start-up, before any thread starts.
void ZEPSysInfoSetServerMode(bool server);
bool ZEPSysInfoIsServer();

/// Whether the machine's registry turns the console's backup pages to those of a backup server: only when the
/// value "BrQBSMode" is there and 0. Asked each time it is needed.
bool IsBrQBSMode();

enum class HomePath { Existing, Created };

/// The service's data folder of this name ("scheduler", "logging", ...), made when missing and wanted.
std::filesystem::path ZEPGetHomePath(const QString& name, HomePath mode = HomePath::Existing);
