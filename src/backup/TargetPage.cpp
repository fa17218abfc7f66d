#include "backup/TargetPage.h"

#include "clouddrive/FolderPicker.h"
#include "clouddrive/MountWizard.h"
#include "plan/DraftRefusal.h"
#include "service/RequestText.h"
#include "service/VirtualDirectories.h"
#include "wizard/BrenPropertySheet.h"

#include <QVBoxLayout>

namespace {

RemoteFolderRequest TargetRequest() {
    RemoteFolderRequest request;
    request.hiddenToo = true;
    return request;
}

} // namespace

CTargetPage::CTargetPage(const Console& console, std::shared_ptr<QString> target)
    : WizardPage(tr("Where to Backup"), tr("Choose a folder in a virtual directory that is mounted.")),
      m_console(console), m_target(std::move(target)),
      m_picker(new FolderPicker(console, TargetRequest(), OpenMountWizard, FolderPicker::Enter::Opens)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_picker);
    connect(m_picker, &FolderPicker::Changed, this, &WizardPage::Edited);
}

void CTargetPage::Fill() {
    m_picker->Start();
}

PageLine CTargetPage::Line() const {
    const QString target = m_picker->TypedPath();
    return target.isEmpty() ? PageLine{{}, tr("Nothing is chosen yet.")} : PageLine{tr("Chosen:"), target};
}

void CTargetPage::Leave() {
    const QString target = m_picker->TypedPath();
    for (const QString& refusal : {TargetRefusal(target), ListedPathRefusal(target)})
        if (!refusal.isEmpty())
            return Sheet().Stay({refusal, m_picker});
    Sheet().Check(
        Lane::Service, tr("Looking for \"%1\"...").arg(target),
        [service = m_console.service, target](const std::stop_token& stop) {
            return TargetFailure(service, target, stop);
        },
        [this, target](const Loaded<QString>& failure) {
            if (!failure || !failure->isEmpty())
                return Sheet().Stay({failure.value.value_or(failure.why)});
            *m_target = target;
            Sheet().Pass();
        });
}

QString TargetFailure(const ServiceClient& service, const QString& target, const std::stop_token& stop) {
    const QString failure = ListingFailure(RequestDavListing(service, target, stop));
    if (failure.isEmpty())
        return {};
    const QString directory = target.section(u'/', 0, 0, QString::SectionSkipEmpty);
    const auto mounted = service.GetVdirList(stop);
    if (mounted && !FindVDir(*mounted, directory))
        return CTargetPage::tr("The virtual directory \"%1\" is not mounted.").arg(directory);
    return CTargetPage::tr("\"%1\" cannot be backed up to. %2").arg(target, failure);
}
