#pragma once

#include "page/SettingsDialog.h"

/// Asks for the limits of upload and download, in KB/S; 0 is without limit.
class CSetBandWidthLimitDlg : public SettingsDialog {
    Q_OBJECT

public:
    /// Stands above the mouse.
    CSetBandWidthLimitDlg(const ServiceClient& service, Reader& reader, QWidget* parent = nullptr);
};
