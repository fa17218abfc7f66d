#include "app/BackupSvrConfigWizard.h"

#include "service/KnownSettings.h"
#include "zep/Mui.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

/// A page that only tells something.
class WordsPage : public WizardPage {
public:
    WordsPage(const QString& title, const QString& text) : WizardPage(title, {}) {
        auto* label = new QLabel(text);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(label);
        column->addStretch();
    }
};

class ReadyPage : public WordsPage {
public:
    explicit ReadyPage(const ServiceClient& service)
        : WordsPage(CBackupSvrConfigWizard::tr("Ready"),
                    CBackupSvrConfigWizard::tr(
                        "Choose Finish to mark this server as set up and to open its console. Cancel leaves "
                        "it as it is; this wizard then comes again at the next start.")),
          m_service(service) {}

    void Leave() override {
        const auto send = [service = m_service](std::stop_token stop) {
            return WriteSetting(service, Settings::BSInitConfig, true, std::move(stop))
                       ? QString()
                       : CBackupSvrConfigWizard::tr("The service did not take the configuration. Check that "
                                                    "it is running, then choose Finish again.");
        };
        Sheet().SendAll(Lane::Service, {{CBackupSvrConfigWizard::tr("Marking this server as set up..."),
                                         Settings::BSInitConfig.name, send, true}});
    }

private:
    const ServiceClient& m_service;
};

} // namespace

CBackupSvrConfigWizard::CBackupSvrConfigWizard(const ServiceClient& service, Reader& reader,
                                               UserPrompts& prompts, QWidget* parent)
    : CBrenPropertySheet(reader, prompts, tr("Backup Server Configuration"), parent) {
    AddPage(new WordsPage(
        tr("Welcome to %1").arg(ZEPMuiGetBrandingStringW(Branding::BackupServerConsole)),
        tr("This computer will store backups. Before its console opens for the first time, the background "
           "service has to know that the server is set up.\n\nBackup targets, schedules and bandwidth "
           "limits can be set in the console afterwards, and changed at any time.")));
    AddPage(new ReadyPage(service));
}
