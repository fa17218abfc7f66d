#include "app/BackupSvrConfigWizard.h"

#include "look/Look.h"

#include "page/UserPrompts.h"
#include "service/KnownSettings.h"
#include "zep/Mui.h"

#include <QAbstractButton>
#include <QLabel>
#include <QVBoxLayout>

namespace {

QWizardPage* MakePage(const QString& title, const QString& text) {
    auto* page = new QWizardPage;
    // The wizard's own title would scale a font by its points, and ours has pixels only.
    auto* head = new QLabel(title);
    head->setTextFormat(Qt::PlainText);
    head->setFont(Look::Font(Look::Title, QFont::Bold));
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(head);
    layout->addSpacing(Look::TextInset);
    layout->addWidget(label);
    layout->addStretch();
    return page;
}

} // namespace

CBackupSvrConfigWizard::CBackupSvrConfigWizard(const ServiceClient& service, Reader& reader,
                                               UserPrompts& prompts, QWidget* parent)
    : QWizard(parent), m_service(service), m_prompts(prompts), m_loader(reader, *this) {
    setWindowTitle(tr("Backup Server Configuration"));
    setWizardStyle(QWizard::ModernStyle);
    setOption(QWizard::NoBackButtonOnStartPage);
    resize(560, 400);
    addPage(MakePage(
        tr("Welcome to %1").arg(ZEPMuiGetBrandingStringW(Branding::BackupServerConsole)),
        tr("This computer will store backups. Before its console opens for the first time, the background "
           "service has to know that the server is set up.\n\nBackup targets, schedules and bandwidth "
           "limits can be set in the console afterwards, and changed at any time.")));
    addPage(MakePage(tr("Ready"),
                     tr("Choose Finish to mark this server as set up and to open its console. Cancel "
                        "leaves it as it is; this wizard then comes again at the next start.")));
}

void CBackupSvrConfigWizard::accept() {
    // The keyboard rests with the wizard itself: a second press of Finish must not become one of Cancel.
    setFocus();
    button(FinishButton)->setEnabled(false);
    m_loader.Command(
        Lane::Service,
        [service = m_service](std::stop_token stop) {
            return WriteSetting(service, Settings::BSInitConfig, true, stop);
        },
        [this](const Loaded<ServiceAnswer>& loaded) {
            if (loaded && *loaded) {
                QWizard::accept();
                return;
            }
            button(FinishButton)->setEnabled(true);
            button(FinishButton)->setFocus();
            m_prompts.ShowMessage(
                this, tr("The service did not take the configuration. Check that it is running, then "
                         "choose Finish again."));
        });
}
