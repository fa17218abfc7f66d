#include "settings/SettingsPanel.h"

#include "look/IconRegistry.h"
#include "mail/EmailDlg.h"
#include "service/ServiceClient.h"
#include "settings/AuditTracePanel.h"
#include "settings/ProxyPage.h"
#include "settings/SettingsMgr.h"
#include "settings/TaskItemSettings.h"

CSettingsPanel::CSettingsPanel(const Console& console, QWidget* parent)
    : CTabPanel(console, parent), m_audit(new CAuditTracePanel(console)) {
    SetSideActions({{tr("Proxy Setup"), ProxyIcon, [this] { EditProxy(); }},
                    {tr("Email Notification"), EmailIcon, [this] { EditNotification(); }},
                    RefreshAction()});
    AddTab(tr("Task Settings"), new CTaskItemSettings(console), TaskSettingsIcon);
    AddTab(tr("All Settings"), new CSettingsMgr(console), SettingsIcon);
    AddTab(tr("Audit Trace"), m_audit, TraceIcon);
}

void CSettingsPanel::ShowTraces(const QString& from, const QString& to) {
    SelectPage(PageCount() - 1);
    m_audit->ShowTraces(from, to);
}

void CSettingsPanel::EditProxy() {
    if (m_proxyPage)
        return;
    const Console& console = TheConsole();
    m_proxyPage = new CProxyPage(console.service, console.reader, this);
    m_proxyPage->Open(console.settingNews);
}

void CSettingsPanel::EditNotification() {
    if (m_emailDlg)
        return;
    const Console& console = TheConsole();
    m_emailDlg = new CEmailDlg(console.service, console.reader, console.prompts, this);
    m_emailDlg->Open(console.settingNews);
}
