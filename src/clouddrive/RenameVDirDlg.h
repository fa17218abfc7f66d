#pragma once

#include "page/BrenDialog.h"

class QLabel;
class QLineEdit;

/// Gives a virtual directory another name. Closes when the service has done so.
class CRenameVDirDlg : public CBrenDialog {
    Q_OBJECT

public:
    CRenameVDirDlg(const ServiceClient& service, Reader& reader, QString name, QWidget* parent);

    QString Name() const;

protected:
    QString Refusal() const override;
    Write Changes() const override;

private:
    QString m_old;
    QLineEdit* m_name;
    QLabel* m_uses;
};
