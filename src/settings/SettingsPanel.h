#pragma once

#include "page/Console.h"
#include "page/TabPanel.h"

#include <QPointer>

class CAuditTracePanel;
class CEmailDlg;
class CProxyPage;

/// The section of the service's settings.
class CSettingsPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CSettingsPanel(const Console& console, QWidget* parent = nullptr);

    /// Opens the proxy settings.
    void EditProxy();
    /// Opens the settings of mail about backup tasks.
    void EditNotification();

    /// Turns to the audit trace between two times.
    void ShowTraces(const QString& from, const QString& to);

private:
    CAuditTracePanel* m_audit;
    QPointer<CProxyPage> m_proxyPage;
    QPointer<CEmailDlg> m_emailDlg;
};
