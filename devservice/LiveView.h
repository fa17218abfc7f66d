#pragma once

#include "devservice/TaskEngine.h"
#include "zep/LiveTraceLayout.h"

namespace devservice {

/// What the live counters say of the tasks at this moment; `driveLetter` is that of the cloud drive.
LiveTraceSnapshot LiveView(const TaskEngine& engine, char16_t driveLetter);

} // namespace devservice
