#pragma once

#include "list/ListTable.h"

class QWidget;
struct Console;
struct TaskRow;

/// Which of a backup's files its last run left undone.
enum class UndoneFiles { Failed, NotDone };

/// The files with the reasons that the service noted. The folder of each can be opened.
ListTable UndoneFilesTable(const TaskRow& task, UndoneFiles which);

/// Shows the table in a window of its own over the one of `over`.
void OpenUndoneFiles(const Console& console, QWidget& over, const TaskRow& task, UndoneFiles which);
