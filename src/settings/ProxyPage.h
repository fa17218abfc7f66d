#pragma once

#include "page/SettingsDialog.h"
#include "zep/ProxyEnv.h"

class QComboBox;
class QLabel;

/// Asks for the proxy that the service uses.
class CProxyPage : public SettingsDialog {
    Q_OBJECT

public:
    CProxyPage(const ServiceClient& service, Reader& reader, QWidget* parent = nullptr);

protected:
    QString Refusal() const override;
    /// In the order that the service needs: the type first, address and credentials only of a custom proxy,
    /// last the type by which the service knows that all is there.
    Write Changes() const override;

private:
    void OnChoice(int index);
    ProxyEnv Wanted() const;

    QComboBox* m_choice;
    QLabel* m_explanation;
    std::vector<QLineEdit*> m_fields;
    int m_type = ProxyEnv::Disabled;
};
