#pragma once

#include "development/CheckRun.h"

#include <memory>

class ServiceClient;

/// How `./run --check` sweeps.
struct CheckRequest {
    QString rules; ///< "everything" or "layout"
    QString size;  ///< of the window, as in "800x600"; empty: as it is
    QString fault; ///< of the development service; empty: none
};

/// Sweeps all views of the window, prints a line for each place that no silence covers and a last one that
/// counts them; then ends the program.
std::unique_ptr<CheckRun> StartCheck(CBTaskMMCDlg& window, WatchedReader& reader,
                                     const ServiceClient& service, std::vector<DialogEntry> dialogs,
                                     const CheckRequest& request);
