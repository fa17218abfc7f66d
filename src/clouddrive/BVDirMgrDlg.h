#pragma once

#include "page/SettingsDialog.h"
#include "service/VDirRecord.h"

/// The virtual directory manager: what is known of one virtual directory's account, and in how large pieces
/// its files are sent.
class CBVDirMgrDlg : public SettingsDialog {
    Q_OBJECT

public:
    /// `providerName` is what people call the provider; its identifier stands there without one.
    CBVDirMgrDlg(const ServiceClient& service, Reader& reader, const VDirRecord& record,
                 const QString& providerName = {}, QWidget* parent = nullptr);

protected:
    QString Refusal() const override;
    Write Changes() const override;

private:
    void AddFact(const QString& label, const QString& text, const QString& toolTip = {});

    QString m_name;
};
