#include "clouddrive/MountWizard.h"

#include "clouddrive/MountPage.h"
#include "clouddrive/NamePage.h"
#include "clouddrive/SafePage.h"
#include "page/Console.h"

#include <QTimer>

namespace {

void AfterTime(QObject& context, std::chrono::milliseconds time, std::function<void()> then) {
    QTimer::singleShot(time, &context, std::move(then));
}

} // namespace

CMountWizard::CMountWizard(const Console& console, QWidget* parent, const MountPace& pace)
    : CBrenPropertySheet(console.reader, console.prompts, tr("Mount Virtual Directory"), parent) {
    const auto draft = std::make_shared<MountDraft>();
    AddPage(new NamePage(console, draft));
    AddPage(new CSafePage(console, draft));
    AddPage(new MountPage(console, draft, pace ? pace : AfterTime));
}

void OpenMountWizard(const Console& console, QWidget* over, std::function<void(bool mounted)> done) {
    auto* wizard = new CMountWizard(console, over->window());
    QObject::connect(wizard, &QDialog::finished, over, [done = std::move(done)](int result) {
        if (done)
            done(result == QDialog::Accepted);
    });
    wizard->open();
}
