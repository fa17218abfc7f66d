#pragma once

struct ListTable;
struct TaskRow;

/// How the runs of a task went.
ListTable HistoryTable(const TaskRow& task);
