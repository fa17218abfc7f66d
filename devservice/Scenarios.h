#pragma once

#include "devservice/Databases.h"
#include "devservice/Settings.h"
#include "devservice/TaskEngine.h"

namespace devservice {

/// Whether there is a scenario of this name: empty, desktop, server or huge.
bool IsScenario(const std::string& name);

/// Fills an empty home: tasks into the engine, logs and settings into their files. The files' tables stand.
void Populate(const std::string& scenario, TaskEngine& engine, Databases& databases, Settings& settings,
              const std::filesystem::path& files);

} // namespace devservice
