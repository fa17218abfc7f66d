#pragma once

#include "list/ListTable.h"

/// The tasks that have run for the last time. Each can be deleted.
ListTable CompletedTable();
