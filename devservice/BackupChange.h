#pragma once

#include "devservice/Task.h"

namespace devservice {

/// The backup as a record of changes makes it: the record of its kind, in which an empty field, or an empty
/// line of the filter, leaves what there is. Takes it strictly apart and throws RecordError.
Task ChangedBackup(const Task& before, const std::string& record, SimTime now);

} // namespace devservice
