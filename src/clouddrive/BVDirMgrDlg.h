#pragma once

#include "service/VDirRecord.h"

#include <QDialog>

/// The virtual directory manager: what is known of one virtual directory's account.
class CBVDirMgrDlg : public QDialog {
    Q_OBJECT

public:
    explicit CBVDirMgrDlg(const VDirRecord& record, QWidget* parent = nullptr);
};
