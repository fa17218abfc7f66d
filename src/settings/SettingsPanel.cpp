#include "settings/SettingsPanel.h"

#include "look/IconRegistry.h"
#include "service/ServiceClient.h"
#include "settings/ProxyPage.h"
#include "settings/SettingsMgr.h"
#include "settings/TaskItemSettings.h"

CSettingsPanel::CSettingsPanel(const Console& console, QWidget* parent) : CTabPanel(console, parent) {
    SetSideActions({{tr("Proxy Setup"), ProxyIcon, [this] { EditProxy(); }}, RefreshAction()});
    AddTab(tr("Task Settings"), new CTaskItemSettings(console), TaskSettingsIcon);
    AddTab(tr("All Settings"), new CSettingsMgr(console), SettingsIcon);
}

void CSettingsPanel::EditProxy() {
    if (m_proxyPage)
        return;
    m_proxyPage = new CProxyPage(TheConsole().service, TheConsole().reader, this);
    m_proxyPage->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_proxyPage, &QDialog::accepted, this, [this] { SaveProxy(m_proxyPage->Wanted()); });
    m_proxyPage->open();
}

void CSettingsPanel::SaveProxy(const ProxyEnv& proxy) {
    Loader().Command(
        Lane::Service,
        [service = TheConsole().service, proxy](std::stop_token stop) {
            WriteProxy(service, proxy, stop);
            ZEPSetProxyEnv(proxy);
            return true;
        },
        [](const Loaded<bool>&) {});
}
