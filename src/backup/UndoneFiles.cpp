#include "backup/UndoneFiles.h"

#include "list/BrenListCtrl.h"
#include "list/RecordTable.h"
#include "list/RecordView.h"
#include "look/Formatters.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/NoticeLine.h"
#include "page/UserPrompts.h"
#include "platform/Folders.h"
#include "platform/Shell.h"
#include "stores/SubTaskStore.h"
#include "taskman/SubTaskText.h"
#include "taskman/TaskList.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

using File = SubTaskRecord;

constexpr QSize WindowSize(620, 420);

QString Text(const char* words) {
    return QCoreApplication::translate("UndoneFiles", words);
}

QString FolderOf(const QString& path) {
    const qsizetype at = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    return path.left(at + 1);
}

/// The folder may stand on another machine, so it is looked at on the lane that waits for those.
void OpenFolder(RecordView& view, const std::vector<TakenRow>& rows) {
    const QString folder = FolderOf(RecordOf<File>(rows.front()).text2);
    view.Loader().Command(
        Lane::Network,
        [path = folder.toStdString()](const std::stop_token&) {
            std::error_code ignored;
            return !path.empty() && std::filesystem::is_directory(platform::PathFromUtf8(path), ignored) &&
                   platform::OpenInShell(path);
        },
        [&view, folder](const Loaded<bool>& opened) {
            if (!opened || !*opened)
                view.TheConsole().prompts.ShowMessage(
                    &view, Text(QT_TRANSLATE_NOOP("UndoneFiles", "\"%1\" cannot be opened as a folder."))
                               .arg(Isolated(folder)));
        });
}

class UndoneFilesDialog : public QDialog {
public:
    UndoneFilesDialog(const Console& console, const TaskRow& task, UndoneFiles which, QWidget* parent)
        : QDialog(parent), m_view(new RecordView(console, UndoneFilesTable(task, which))),
          m_failure(new NoticeLine) {
        setAttribute(Qt::WA_DeleteOnClose);
        setWindowTitle((which == UndoneFiles::Failed
                            ? Text(QT_TRANSLATE_NOOP("UndoneFiles", "Failed Files: %1"))
                            : Text(QT_TRANSLATE_NOOP("UndoneFiles", "Files Not Done: %1")))
                           .arg(task.title));
        auto* help = new QLabel(m_view->Help());
        help->setTextFormat(Qt::PlainText);
        help->setWordWrap(true);
        help->setFont(Look::Font(Look::Small));
        Look::SetInk(*help, Look::Muted);
        auto* buttons = new QDialogButtonBox;
        QPushButton* copy =
            buttons->addButton(Text(QT_TRANSLATE_NOOP("UndoneFiles", "Co&py")), QDialogButtonBox::ActionRole);
        copy->setAutoDefault(false);
        QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
        connect(copy, &QPushButton::clicked, this, [this] {
            if (m_view->List().SelectedRows().empty())
                m_view->List().selectAll();
            m_view->List().CopySelected();
        });
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(m_view, &RecordView::Changed, this, [this, copy] {
            m_failure->SetText(m_view->Failure());
            copy->setEnabled(m_view->List().Rows().TotalRows() > 0);
        });
        copy->setEnabled(false);
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(16, 16, 16, 16);
        column->setSpacing(Look::TextInset);
        for (QWidget* part : std::initializer_list<QWidget*>{help, m_failure, m_view, buttons})
            column->addWidget(part, part == m_view ? 1 : 0);
        close->setDefault(true); // of this dialog, so once it stands in it
        resize(WindowSize);
        m_view->setFocus();
    }

protected:
    void showEvent(QShowEvent* event) override {
        QDialog::showEvent(event);
        m_view->Read();
    }

private:
    RecordView* m_view;
    NoticeLine* m_failure;
};

} // namespace

ListTable UndoneFilesTable(const TaskRow& task, UndoneFiles which) {
    const bool failed = which == UndoneFiles::Failed;
    const auto stateA = static_cast<int>(failed ? SubTaskState::PendingRetry : SubTaskState::Pending);
    const auto stateB = static_cast<int>(failed ? SubTaskState::Failed : SubTaskState::Pending);
    return RecordTable<File>{
        .page = {.name = failed ? Text(QT_TRANSLATE_NOOP("UndoneFiles", "Failed files"))
                                : Text(QT_TRANSLATE_NOOP("UndoneFiles", "Files not done")),
                 .widths = u"UndoneFiles"_s,
                 .status =
                     failed
                         ? Text(QT_TRANSLATE_NOOP("UndoneFiles", "What failed in the last run. The service "
                                                                 "tries it again in the next one."))
                         : Text(QT_TRANSLATE_NOOP("UndoneFiles", "What the last run has not come to. The "
                                                                 "service goes on with it when the "
                                                                 "backup is resumed.")),
                 .empty = Text(QT_TRANSLATE_NOOP("UndoneFiles", "The service keeps none of them any more.")),
                 .subject = task.id},
        .columns =
            {{.title = Text(QT_TRANSLATE_NOOP("UndoneFiles", "Reason")), .width = 230, .cell = &File::text4},
             {.title = Text(QT_TRANSLATE_NOOP("UndoneFiles", "Path")), .width = 280, .cell = &File::text2},
             {Text(QT_TRANSLATE_NOOP("UndoneFiles", "Task Name")), 130,
              [](const File& file) { return SubTaskName(file.text1, file.text2); }}},
        .id = {&File::subTaskNumber, &File::text1, &File::text2},
        .read =
            [id = task.id, stateA, stateB](RecordStream<File>& rows, std::stop_token stop) {
                const auto put = [&rows](const File& file) {
                    rows.Put(file);
                    return true;
                };
                return EnumSubTasks(id, stateA, stateB, put, std::move(stop));
            },
        .commands = {{.caption = Text(QT_TRANSLATE_NOOP("UndoneFiles", "Open Folder")),
                      .icon = OpenFolderIcon,
                      .words = Text(QT_TRANSLATE_NOOP("UndoneFiles", "Click to open the folder")),
                      .run = OpenFolder}}};
}

void OpenUndoneFiles(const Console& console, QWidget& over, const TaskRow& task, UndoneFiles which) {
    (new UndoneFilesDialog(console, task, which, over.window()))->open();
}
