#include "settings/ProxyPage.h"

#include "service/KnownSettings.h"
#include "zep/Mui.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace {

enum Choice { NothingChosen = -1, DisableProxy, CustomProxy };

} // namespace

CProxyPage::CProxyPage(const ServiceClient& service, Reader& reader, QWidget* parent)
    : SettingsDialog(service, reader, tr("Proxy Settings"), parent), m_choice(new QComboBox) {
    setMinimumWidth(480);
    m_choice->addItems({tr("Disable Proxy"), tr("Custom Proxy Settings")});
    m_choice->setAccessibleName(tr("Proxy"));
    AddRow(m_choice);
    m_explanation = AddNote({});
    // The type that was saved last, behind all else, says what is in force.
    AddField({Settings::ProxyTypeChanged.AsText(), m_choice->accessibleName(), Secrecy::Plain,
              [this] { return QString::number(m_type); },
              [this](const QString& type) {
                  m_choice->setCurrentIndex(type == u'0' ? DisableProxy : CustomProxy);
              }});
    m_fields = {AddText(Settings::ProxyAddr, tr("Proxy Address:")),
                AddText(Settings::ProxyPort, tr("Proxy Port:")),
                AddText(Settings::ProxyUser, tr("User Name:")),
                AddText(Settings::ProxyPwd, tr("Password:"), Secrecy::Secret),
                AddText(Settings::ProxyBypass, tr("Bypass List (Separated By ;):"))};
    connect(m_choice, &QComboBox::currentIndexChanged, this, &CProxyPage::OnChoice);
    OnChoice(m_choice->currentIndex());
}

void CProxyPage::OnChoice(int index) {
    for (QLineEdit* field : m_fields)
        field->setEnabled(index == CustomProxy);
    if (index == DisableProxy) {
        m_type = ProxyEnv::Disabled;
        m_explanation->setText(
            tr("Proxy support is disabled. ") + ZEPMuiGetBrandingStringW(Branding::ProductLine) +
            tr(" will connect to Cloud Storage directly. This is a common case for home users."));
    } else if (index == CustomProxy) {
        m_type = ProxyEnv::Custom;
        m_explanation->setText(
            tr("Proxy support is enabled. Please configure the proxy settings below. Leave the "
               "field blank if not applicable. "));
    } else {
        m_explanation->setText(tr("Warning: No Proxy Type Is Selected!"));
    }
}

ProxyEnv CProxyPage::Wanted() const {
    return {m_type,
            m_fields[0]->text(),
            m_fields[1]->text(),
            m_fields[2]->text(),
            m_fields[3]->text(),
            m_fields[4]->text()};
}

QString CProxyPage::Refusal() const {
    return m_type == ProxyEnv::Custom ? SettingsDialog::Refusal() : QString();
}

CBrenDialog::Write CProxyPage::Changes() const {
    std::vector<SettingWrite> writes = ChangedFields();
    const auto isType = [](const SettingWrite& write) {
        return write.setting.type == ServiceClient::ValueType::Integer;
    };
    const bool otherType = std::any_of(writes.begin(), writes.end(), isType);
    std::erase_if(writes,
                  [&](const SettingWrite& write) { return isType(write) || m_type != ProxyEnv::Custom; });
    if (writes.empty() && !otherType)
        return {};
    const QString type = QString::number(m_type);
    writes.insert(writes.begin(), {Settings::ProxyType.AsText(), type, tr("Proxy")});
    writes.push_back({Settings::ProxyTypeChanged.AsText(), type, tr("Proxy")});
    Write write = InOrder(writes);
    write.run = [run = write.run, proxy = Wanted()](const ServiceClient& service,
                                                    const std::stop_token& stop) {
        QString failure = run(service, stop);
        if (failure.isEmpty())
            ZEPSetProxyEnv(proxy);
        return failure;
    };
    return write;
}
