#include "page/BrenDialog.h"

#include "page/NoticeLine.h"
#include "page/SettingNews.h"
#include "service/ServiceClient.h"

#include <QAbstractSpinBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr auto WordAfter = 300ms;

} // namespace

CBrenDialog::CBrenDialog(const ServiceClient& service, Reader& reader, const QString& title, QWidget* parent)
    : QDialog(parent), m_service(service), m_fields(new QWidget), m_grid(new QGridLayout(m_fields)),
      m_notice(new NoticeLine), m_loader(reader, *this) {
    setWindowTitle(title);
    setMinimumWidth(420);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(12);
    m_grid->setColumnStretch(1, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(12);
    layout->addWidget(m_fields);
    layout->addStretch();
    layout->addWidget(m_notice);
    layout->addWidget(buttons);
}

void CBrenDialog::AddRow(const QString& label, QWidget* field) {
    auto* caption = new QLabel(label);
    caption->setBuddy(field);
    const int row = m_grid->rowCount();
    m_grid->addWidget(caption, row, 0);
    m_grid->addWidget(field, row, 1);
}

void CBrenDialog::AddRow(QWidget* field) {
    m_grid->addWidget(field, m_grid->rowCount(), 0, 1, 2);
}

QLabel* CBrenDialog::AddNote(const QString& text) {
    auto* note = new QLabel(text);
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    AddRow(note);
    return note;
}

void CBrenDialog::Open(SettingNews& news) {
    setAttribute(Qt::WA_DeleteOnClose);
    connect(this, &CBrenDialog::Written, &news,
            [this, &news](const QString& setting) { emit news.Written(setting, this); });
    open();
}

void CBrenDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    SetReady(!m_read);
    if (!m_read)
        return;
    m_read();
    // A line that comes and goes within a moment would only be a flicker.
    QTimer::singleShot(WordAfter, this, [this] {
        if (m_loader.IsReading() && m_notice->Text().isEmpty())
            m_notice->SetText(tr("Reading..."));
    });
}

void CBrenDialog::EndRead(bool answered) {
    if (answered) {
        m_loader.StopTimer();
        m_notice->SetText({});
        SetReady(true);
        return;
    }
    m_notice->SetText(tr("The service does not answer, so what it keeps is not known. It is asked again by "
                         "itself until it does."));
    m_loader.StartTimer(RetryPeriod, m_read);
}

void CBrenDialog::accept() {
    if (!m_ok->isEnabled())
        return;
    const QString refusal = Refusal();
    m_notice->SetText(refusal);
    if (!refusal.isEmpty())
        return;
    const Write write = Changes();
    if (!write.run)
        return QDialog::accept();
    SetReady(false);
    m_isWriting = true;
    m_mayLeave = false;
    m_writing = write.settings;
    m_loader.Command(
        WriteLane(),
        [service = m_service, run = write.run](std::stop_token stop) { return run(service, stop); },
        [this](const Loaded<QString>& failure) {
            EndWrite(failure ? *failure : tr("Nothing is known of how it went."));
        });
}

/// What is being written may yet fail, and then it is typed here and nowhere else; so the first wish to leave
/// waits. Who wishes again may go: what was sent is carried out, and who reads the settings does so behind
/// it.
void CBrenDialog::reject() {
    if (m_isWriting && !std::exchange(m_mayLeave, true)) {
        m_notice->SetText(tr("Still saving. Cancel once more closes without waiting for the service."));
        return;
    }
    TellWritten();
    QDialog::reject();
}

void CBrenDialog::TellWritten() {
    for (const QString& setting : std::exchange(m_writing, {}))
        emit Written(setting);
}

void CBrenDialog::EndWrite(const QString& failure) {
    m_isWriting = false;
    TellWritten();
    if (failure.isEmpty())
        return QDialog::accept();
    SetReady(true);
    m_notice->SetText(failure);
}

void CBrenDialog::ShowRemark(const QString& text) {
    if (m_ok->isEnabled())
        m_notice->SetText(text);
}

void CBrenDialog::SetReady(bool ready) {
    if (!ready) {
        // The keyboard rests with the dialog itself, so that no key meant for OK is taken by Cancel.
        m_focusBefore = focusWidget();
        setFocus();
    }
    m_fields->setEnabled(ready);
    m_ok->setEnabled(ready);
    if (!ready || (focusWidget() && focusWidget() != this))
        return;
    if (m_focusBefore && m_focusBefore != this)
        m_focusBefore->setFocus();
    else
        FocusFirstField();
}

void CBrenDialog::FocusFirstField() {
    QWidget* field = FirstField();
    if (!field)
        return;
    field->setFocus();
    if (auto* number = qobject_cast<QAbstractSpinBox*>(field))
        number->selectAll();
    else if (auto* edit = qobject_cast<QLineEdit*>(field))
        edit->selectAll();
}

QWidget* CBrenDialog::FirstField() const {
    QWidget* field = m_fields->nextInFocusChain();
    while (field != m_fields && !(m_fields->isAncestorOf(field) && field->focusPolicy() & Qt::TabFocus &&
                                  field->isEnabled() && field->isVisibleTo(this)))
        field = field->nextInFocusChain();
    return field == m_fields ? nullptr : field;
}

bool CBrenDialog::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize)
        Grow();
    return handled;
}

void CBrenDialog::Grow() {
    const int needed = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width())
                                                     : layout()->totalMinimumSize().height();
    setMinimumHeight(needed);
    const QRect room = screen()->availableGeometry();
    if (isWindow() && isVisible() && !room.contains(frameGeometry()))
        move(std::max(room.left(), std::min(x(), room.right() - frameGeometry().width())),
             std::max(room.top(), std::min(y(), room.bottom() - frameGeometry().height())));
}
