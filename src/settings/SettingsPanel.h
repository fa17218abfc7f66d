#pragma once

#include "ui/Console.h"
#include "ui/PageLoader.h"
#include "ui/TabPanel.h"
#include "zep/ProxyEnv.h"

#include <QPointer>

class CProxyPage;

/// The section of the service's settings.
class CSettingsPanel : public CTabPanel {
    Q_OBJECT

public:
    static constexpr int ProxySetup = 1147; ///< the command that opens the proxy settings

    explicit CSettingsPanel(const Console& console, QWidget* parent = nullptr);

    void Activate() override;
    void OnCommand(int command) override;

private:
    void EditProxy();
    void SaveProxy(const ProxyEnv& proxy, const QStringList& left);

    Console m_console;
    QPointer<CProxyPage> m_proxyPage;
    PageLoader m_loader;
};
