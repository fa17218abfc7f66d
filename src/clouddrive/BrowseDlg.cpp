#include "clouddrive/BrowseDlg.h"

#include "page/StateFile.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize UsualSize(560, 520);
const QString SizeKey = u"WindowSizes/FolderPicker"_s;

} // namespace

CBrowseDlg::CBrowseDlg(const Console& console, RemoteFolderRequest request, FolderPicker::MountWizard mount,
                       QWidget* parent)
    : QDialog(parent) {
    const QString usual = request.hiddenToo ? tr("Backup Target") : tr("Select folder");
    setWindowTitle(request.caption.isEmpty() ? usual : request.caption);
    m_picker = new FolderPicker(console, std::move(request), std::move(mount), FolderPicker::Enter::Takes);
    auto* answers = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = answers->button(QDialogButtonBox::Ok);
    m_ok->setEnabled(false);
    m_picker->AddButtons(answers);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->addWidget(m_picker);
    const QSettings state(StateFile(), QSettings::IniFormat);
    const QSize remembered = state.value(SizeKey, UsualSize).toSize();
    resize(remembered.boundedTo(screen()->availableSize()).expandedTo(minimumSizeHint()));

    connect(answers, &QDialogButtonBox::accepted, this, &CBrowseDlg::accept);
    connect(answers, &QDialogButtonBox::rejected, this, &CBrowseDlg::reject);
    connect(m_picker, &FolderPicker::Changed, this, [this] { m_ok->setEnabled(!Path().isEmpty()); });
    connect(m_picker, &FolderPicker::Taken, this, [this] { QDialog::accept(); });
    m_picker->setFocus();
    m_picker->Start();
}

void CBrowseDlg::accept() {
    m_picker->Take();
}

void CBrowseDlg::done(int result) {
    QSettings(StateFile(), QSettings::IniFormat).setValue(SizeKey, size());
    QDialog::done(result);
}

void CBrowseDlg::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F5)
        m_picker->Refresh();
    else
        QDialog::keyPressEvent(event);
}

void PickRemoteFolder(const Console& console, const FolderPicker::MountWizard& mount, QWidget* over,
                      const RemoteFolderRequest& request,
                      std::function<void(std::optional<QString>)> answer) {
    auto* dialog = new CBrowseDlg(console, request, mount, over ? over->window() : nullptr);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::finished, over ? static_cast<QObject*>(over) : dialog,
                     [dialog, answer = std::move(answer)](int result) {
                         answer(result == QDialog::Accepted ? std::optional(dialog->Path()) : std::nullopt);
                     });
    dialog->open();
}
