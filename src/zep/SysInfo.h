#pragma once

#include <QString>

#include <filesystem>

/// Which of the two services this process speaks to. Set once at start-up, before any thread starts.
void ZEPSysInfoSetServerMode(bool server);
bool ZEPSysInfoIsServer();

enum class HomePath { Existing, Created };

/// The service's data folder of this name ("scheduler", "logging", ...), made when missing and wanted.
std::filesystem::path ZEPGetHomePath(const QString& name, HomePath mode = HomePath::Existing);
