#pragma once

#include "page/TabPanel.h"

/// The section of backups: what they are, those of both flavours. A backup server shows the mirrored ones
/// alone.
class CBackupPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CBackupPanel(const Console& console);
};
