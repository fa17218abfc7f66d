#pragma once

#include "devservice/Task.h"

#include <random>
#include <vector>

namespace devservice {

enum class Direction { None, Upload, Download };

Direction DirectionOf(const SubTask& subTask);

/// Whether the sub-task checks or commits what all others have done.
bool ClosesRun(const SubTask& subTask);

/// What a running sub-task is called: "Upload", "Download" or its operation's name.
std::string OperationName(const SubTask& subTask);

/// The sub-tasks of a task's next run, as they fit its kind, sources and targets.
std::vector<SubTask> PlanWork(const Task& task, std::mt19937_64& random);

/// Why this file can never be read or written while it is in use; empty for all others.
std::string LastingTrouble(const SubTask& subTask);

/// A reason that goes away by itself.
std::string PassingTrouble(std::mt19937_64& random);

} // namespace devservice
