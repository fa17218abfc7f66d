#pragma once

#include "list/ListTable.h"

struct TaskRow;

/// The service's trace of what it did for a task, newest first. That of a running task stands still until its
/// runs change or it is asked for again.
ListTable TraceTable(const TaskRow& task);
