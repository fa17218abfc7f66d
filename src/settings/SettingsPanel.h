#pragma once

#include "lanes/PageLoader.h"
#include "page/Console.h"
#include "page/TabPanel.h"
#include "zep/ProxyEnv.h"

#include <QPointer>

class CProxyPage;

/// The section of the service's settings.
class CSettingsPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CSettingsPanel(const Console& console, QWidget* parent = nullptr);

    /// Opens the proxy settings.
    void EditProxy();

private:
    void SaveProxy(const ProxyEnv& proxy);

    QPointer<CProxyPage> m_proxyPage;
};
