#include "page/WindowPrompts.h"

#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/OperationDialog.h"
#include "page/TextDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

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

/// Without a title of its own a box has that of the window that asks.
QString TitleOf(const QString& title, const QWidget* window) {
    const QString own = title.isEmpty() && window ? window->windowTitle() : title;
    return own.isEmpty() ? QApplication::applicationName() : own;
}

QMessageBox* MakeBox(QWidget* over, const QString& icon, const QString& text, const QString& details,
                     const QString& title) {
    QWidget* window = WindowOf(over);
    auto* box =
        new QMessageBox(QMessageBox::NoIcon, TitleOf(title, window), text, QMessageBox::NoButton, window);
    box->setIconPixmap(
        IconRegistry::Icon(icon, Look::Accent).pixmap(QSize(32, 32), box->devicePixelRatioF()));
    box->setTextFormat(Qt::PlainText);
    box->setDetailedText(details);
    return box;
}

QPushButton* AddButton(QMessageBox& box, QMessageBox::StandardButton button, const QString& words) {
    QPushButton* added = box.addButton(button);
    if (!words.isEmpty())
        added->setText(words);
    return added;
}

} // namespace

void WindowPrompts::Tell(QWidget* over, const MessageText& message, std::function<void()> done) {
    QMessageBox* box = MakeBox(over, u"information"_s, message.text, message.details, message.title);
    AddButton(*box, QMessageBox::Ok, {});
    Open(box, over, [done = std::move(done)](int) {
        if (done)
            done();
    });
}

void WindowPrompts::Ask(QWidget* over, const Question& question, std::function<void(bool)> answer) {
    QMessageBox* box = MakeBox(over, u"question"_s, question.text, question.details, question.title);
    QPushButton* yes = AddButton(*box, QMessageBox::Yes, question.yes);
    QPushButton* no = AddButton(*box, QMessageBox::No, question.no);
    box->setDefaultButton(question.destroys ? no : yes);
    box->setEscapeButton(no);
    if (!question.beside.isEmpty()) {
        QPushButton* beside = box->addButton(question.beside, QMessageBox::ActionRole);
        beside->disconnect(); // from the box, which would close
        QObject::connect(beside, &QPushButton::clicked, box, question.besideRun);
    }
    Open(box, over, [answer = std::move(answer)](int result) { answer(result == QMessageBox::Yes); });
}

void WindowPrompts::AskText(QWidget* over, const TextRequest& request,
                            std::function<void(std::optional<QString>)> answer) {
    auto* dialog = new TextDialog(request, WindowOf(over));
    dialog->setWindowTitle(TitleOf(request.title, WindowOf(over)));
    Open(dialog, over, [dialog, answer = std::move(answer)](int result) {
        answer(result == QDialog::Accepted ? std::optional(dialog->Text()) : std::nullopt);
    });
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
        dialog->setDefaultSuffix(request.suffix); // before it asks about a file that is there
    } else {
        dialog->setFileMode(QFileDialog::ExistingFile);
    }
    Open(dialog, over, [dialog, answer = std::move(answer)](int result) {
        const QStringList chosen = dialog->selectedFiles();
        answer(result == QDialog::Accepted && !chosen.isEmpty() ? std::optional(chosen.first())
                                                                : std::nullopt);
    });
}

void WindowPrompts::PickRemoteFolder(QWidget* over, const RemoteFolderRequest& request,
                                     std::function<void(std::optional<QString>)> answer) {
    if (m_remoteFolders)
        m_remoteFolders(over, request, std::move(answer));
    else
        answer(std::nullopt);
}

std::shared_ptr<void> WindowPrompts::ShowOperation(QWidget* over, const OperationRequest& request) {
    auto* dialog = new OperationDialog(request, WindowOf(over));
    dialog->setWindowTitle(TitleOf(request.title, WindowOf(over)));
    if (over)
        QObject::connect(over, &QObject::destroyed, dialog, &OperationDialog::End);
    Open(dialog, over, [](int) {});
    return {dialog, [box = QPointer<OperationDialog>(dialog)](void*) {
                if (box)
                    box->End();
            }};
}

void WindowPrompts::SetClipboardText(const QString& text) {
    QApplication::clipboard()->setText(text);
}
