#include "taskman/TaskListPanel.h"

#include "platform/Folders.h"
#include "taskman/TaskManItem.h"
#include "ui/Console.h"
#include "ui/IconRegistry.h"
#include "ui/MainFrame.h"

#include <QSet>
#include <QTextBrowser>
#include <QUrl>

namespace {

constexpr std::chrono::milliseconds RefreshPeriod{5000};
constexpr QMargins EmptyPageMargins(20, 25, 20, 25);

} // namespace

CTaskListPanel::CTaskListPanel(const Console& console, TaskFilter filter)
    : CExpandableItemList(console.frame), m_console(console), m_filter(filter),
      m_loader(console.reader, *this) {}

void CTaskListPanel::CreatePanel() {
    CExpandableItemList::CreatePanel();
    auto* page = new QTextBrowser;
    page->setFrameShape(QFrame::NoFrame);
    page->setAccessibleName(tr("No tasks"));
    const std::string folder = platform::Utf8FromPath(platform::ExecutableFolder());
    page->setSource(QUrl::fromLocalFile(QString::fromStdString(folder) + QStringLiteral("/task_list.html")));
    SetEmptyView(page, EmptyPageMargins);
}

void CTaskListPanel::Activate() {
    CExpandableItemList::Activate();
    if (!ExpandedCard())
        OnAllShown();
    Refresh();
    m_loader.StartTimer(RefreshPeriod, [this] { Refresh(); });
}

void CTaskListPanel::Deactivate() {
    m_loader.StopTimer();
    CExpandableItemList::Deactivate();
}

void CTaskListPanel::OnCommand(int command) {
    if (command == Command::Refresh)
        Refresh();
}

void CTaskListPanel::OnAllShown() {
    Frame().SetToolbar(*this, {{tr("Refresh..."), Command::Refresh, RefreshIcon}});
    ShowStatus();
}

void CTaskListPanel::ShowStatus() {
    Frame().SetStatusText(m_failure.isEmpty()
                              ? tr("View tasks. Use the icons on the right to start the task now "
                                   "or view details.")
                              : m_failure);
}

void CTaskListPanel::Refresh() {
    m_loader.Load(
        Lane::Databases, [filter = m_filter](std::stop_token stop) { return ReadTaskList(filter, stop); },
        [this](const Loaded<TaskList>& loaded) {
            if (!loaded)
                return;
            if (loaded->read)
                Show(*loaded);
            TellFailure(loaded->read.Sentence());
        });
}

void CTaskListPanel::TellFailure(const QString& failure) {
    if (m_failure == failure)
        return;
    m_failure = failure;
    if (IsActive() && !ExpandedCard())
        ShowStatus();
}

void CTaskListPanel::Show(const TaskList& list) {
    QSet<QString> ids;
    for (const TaskRow& task : list.rows)
        ids.insert(task.id);
    BeginRefresh();
    for (const TaskRow& task : list.rows) {
        auto* card = static_cast<CTaskManItem*>(Keep(task.name, [&] {
            auto made = std::make_unique<CTaskManItem>(m_console, task);
            connect(made.get(), &CTaskManItem::Deleted, this, &CTaskListPanel::Refresh);
            return made;
        }));
        // Tasks of one name share a card, which stays with its task until that has left the data.
        if (card && (card->TaskId() == task.id || !ids.contains(card->TaskId())))
            card->Update(task);
    }
    EndRefresh();
}
