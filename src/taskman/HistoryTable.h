#pragma once

#include "list/ListTable.h"

struct TaskRow;

/// How the runs of a task went.
ListTable HistoryTable(const TaskRow& task);
