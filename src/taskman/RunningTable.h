#pragma once

#include "list/ListTable.h"

class LiveCounters;
struct TaskRow;

/// The sub-tasks of a task that are being processed right now. The counters outlive the table.
ListTable RunningTable(const LiveCounters& counters, const TaskRow& task);

/// What the whole service is doing right now.
ListTable SystemActivityTable(const LiveCounters& counters);
