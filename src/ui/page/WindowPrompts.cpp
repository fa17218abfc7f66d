#include "page/WindowPrompts.h"

#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>

namespace {

QWidget* WindowOf(QWidget* over) {
    return over ? over->window() : nullptr;
}

/// Opens the dialog, which deletes itself; `closed` is not called when `over` has died before.
void Open(QDialog* dialog, QWidget* over, std::function<void(int result)> closed) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::finished, over ? static_cast<QObject*>(over) : dialog,
                     std::move(closed));
    dialog->open();
}

QMessageBox* MakeBox(QWidget* over, const QString& icon, const QString& text, const QString& details,
                     QMessageBox::StandardButtons buttons) {
    QWidget* window = WindowOf(over);
    const QString title = window ? window->windowTitle() : QString();
    auto* box =
        new QMessageBox(QMessageBox::NoIcon, title.isEmpty() ? QApplication::applicationName() : title, text,
                        buttons, window);
    box->setIconPixmap(
        IconRegistry::Icon(icon, Look::Accent).pixmap(QSize(32, 32), box->devicePixelRatioF()));
    box->setTextFormat(Qt::PlainText);
    box->setDetailedText(details);
    return box;
}

} // namespace

void WindowPrompts::ShowMessage(QWidget* over, const QString& text, std::function<void()> done,
                                const QString& details) {
    Open(MakeBox(over, QStringLiteral("information"), text, details, QMessageBox::Ok), over,
         [done = std::move(done)](int) {
             if (done)
                 done();
         });
}

void WindowPrompts::AskYesNo(QWidget* over, const QString& question, std::function<void(bool)> answer,
                             const QString& details) {
    QMessageBox* box =
        MakeBox(over, QStringLiteral("question"), question, details, QMessageBox::Yes | QMessageBox::No);
    box->setDefaultButton(QMessageBox::No);
    box->setEscapeButton(QMessageBox::No);
    Open(box, over, [answer = std::move(answer)](int result) { answer(result == QMessageBox::Yes); });
}

void WindowPrompts::PickPath(QWidget* over, const PickRequest& request,
                             std::function<void(std::optional<QString>)> answer) {
    auto* dialog = new QFileDialog(WindowOf(over), request.caption, request.start, request.filter);
    if (request.kind == PickKind::Folder) {
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
    } else if (request.kind == PickKind::FileToSave) {
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setFileMode(QFileDialog::AnyFile);
    } else {
        dialog->setFileMode(QFileDialog::ExistingFile);
    }
    Open(dialog, over, [dialog, answer = std::move(answer)](int result) {
        const QStringList chosen = dialog->selectedFiles();
        answer(result == QDialog::Accepted && !chosen.isEmpty() ? std::optional(chosen.first())
                                                                : std::nullopt);
    });
}

void WindowPrompts::SetClipboardText(const QString& text) {
    QApplication::clipboard()->setText(text);
}
