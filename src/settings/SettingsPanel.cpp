#include "settings/SettingsPanel.h"

#include "service/ServiceClient.h"
#include "settings/ProxyPage.h"
#include "settings/SettingsMgr.h"
#include "settings/TaskItemSettings.h"
#include "ui/IconRegistry.h"
#include "ui/MainFrame.h"

CSettingsPanel::CSettingsPanel(const Console& console, QWidget* parent)
    : CTabPanel(console.frame, parent), m_console(console), m_loader(console.reader, *this) {
    AddTab(tr("Task Settings"), new CTaskItemSettings(console), TaskSettingsIcon);
    AddTab(tr("All Settings"), new CSettingsMgr(console), SettingsIcon);
}

void CSettingsPanel::Activate() {
    CTabPanel::Activate();
    Frame().SetSideActions(*this, {{tr("Proxy Setup"), ProxySetup, ProxyIcon},
                                   {tr("Refresh..."), Command::Refresh, RefreshIcon}});
}

void CSettingsPanel::OnCommand(int command) {
    if (command == ProxySetup)
        EditProxy();
    else
        CTabPanel::OnCommand(command);
}

void CSettingsPanel::EditProxy() {
    if (m_proxyPage)
        return;
    m_proxyPage = new CProxyPage(m_console.service, m_console.reader, this);
    m_proxyPage->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_proxyPage, &QDialog::accepted, this,
            [this] { SaveProxy(m_proxyPage->Wanted(), m_proxyPage->Unknown()); });
    m_proxyPage->open();
}

void CSettingsPanel::SaveProxy(const ProxyEnv& proxy, const QStringList& left) {
    m_loader.Command(
        Lane::Service,
        [service = m_console.service, proxy, left](std::stop_token stop) {
            WriteProxy(service, proxy, left, stop);
            ZEPSetProxyEnv(proxy);
            return true;
        },
        [](const Loaded<bool>&) {});
}
