#include "taskman/TaskListPanel.h"

#include "list/FindBar.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/NoticeLine.h"
#include "platform/Folders.h"
#include "taskman/TaskManItem.h"

#include <QKeyEvent>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr std::chrono::milliseconds RefreshPeriod{5000};
constexpr QMargins EmptyPageMargins(20, 25, 20, 25);

QUrl EmptyPage() {
    const std::string folder = platform::Utf8FromPath(platform::ExecutableFolder());
    return QUrl::fromLocalFile(QString::fromStdString(folder) + QStringLiteral("/task_list.html"));
}

} // namespace

CTaskListPanel::CTaskListPanel(const Console& console, TaskFilter filter)
    : CExpandableItemList(console), m_filter(filter) {
    SetHelp(tr("View tasks. Use the icons on the right to start the task now or view details."));
    SetToolbar({RefreshAction()});
    ReloadEvery(RefreshPeriod);
}

void CTaskListPanel::CreatePanel() {
    CExpandableItemList::CreatePanel();
    m_emptyPage = new QTextBrowser;
    m_emptyPage->setFrameShape(QFrame::NoFrame);
    m_emptyPage->setAccessibleName(tr("No tasks"));
    SetEmptyView(m_emptyPage, EmptyPageMargins);

    auto* header = new QWidget;
    auto* column = new QVBoxLayout(header);
    column->setContentsMargins(Look::PageMargin, 0, Look::PageMargin, 0);
    column->setSpacing(Look::CardGap);
    m_hiddenTasks = new NoticeLine;
    m_find = new FindBar(this);
    column->addWidget(m_hiddenTasks);
    column->addWidget(m_find);
    SetHeader(header);
    ShowEmptyPage();
    // The bar stays while it is the way to the tasks without a card.
    connect(m_find, &FindBar::Toggled, this, [this] {
        if (m_tasks)
            ShowCards();
        else
            RecalcLayout();
    });
    connect(m_find, &FindBar::WordsChanged, this, [this] {
        ShowEmptyPage();
        RemoveAll(); // or the cards that are found would go before the others from then on
        ShowCards();
    });
}

void CTaskListPanel::ShowEmptyPage() {
    if (!m_tasks)
        m_emptyPage->setPlainText(Failure().isEmpty() ? tr("Loading...") : Failure());
    else if (!m_find->Words().isEmpty())
        m_emptyPage->setPlainText(tr("No task's name contains \"%1\".").arg(m_find->Words()));
    else
        m_emptyPage->setSource(EmptyPage());
}

void CTaskListPanel::Reload() {
    Refresh();
    if (ExpandedCard())
        static_cast<CTaskManItem*>(ExpandedCard())->Reload();
}

void CTaskListPanel::keyPressEvent(QKeyEvent* event) {
    if (!event->matches(QKeySequence::Find) || ExpandedCard())
        return CExpandableItemList::keyPressEvent(event);
    m_find->Open();
}

/// The find bar gives its focus to the panel.
void CTaskListPanel::focusInEvent(QFocusEvent* event) {
    CExpandableItemList::focusInEvent(event);
    FocusCard(0);
}

void CTaskListPanel::Refresh() {
    Loader().Load(
        Lane::Databases,
        [filter = m_filter, counters = &TheConsole().counters](std::stop_token stop) {
            return std::make_shared<const TaskList>(ReadTaskList(filter, *counters, stop));
        },
        [this](const Loaded<std::shared_ptr<const TaskList>>& loaded) {
            if (!loaded)
                return;
            const std::shared_ptr<const TaskList>& tasks = *loaded;
            const bool first = !m_tasks;
            if (tasks->read)
                m_tasks = tasks;
            TellFailure(tasks->read.Sentence());
            if (first)
                ShowEmptyPage();
            if (tasks->read)
                ShowCards();
        });
}

void CTaskListPanel::ShowCards() {
    if (!m_tasks)
        return;
    QSet<QString> titles; // of the cards: the list finds them one by one
    for (int card = 0; card < CardCount(); ++card)
        titles.insert(CardAt(card)->Title().toCaseFolded());
    const QString words = m_find->Words().toCaseFolded();
    int matching = 0;
    std::vector<const TaskRow*> others; // without a card
    BeginRefresh();
    for (const TaskRow& task : m_tasks->rows) {
        if (!task.title.contains(words))
            continue;
        ++matching;
        if (titles.contains(task.title))
            ShowCard(task);
        else
            others.push_back(&task);
    }
    const bool removed = EndRefresh(); // first of all, to make room for the others
    const int kept = CardCount();
    const int hidden = ShowNewCards(others);
    if (removed && CardCount() > kept)
        ShowAll();
    TellHidden(matching, hidden);
}

int CTaskListPanel::ShowNewCards(const std::vector<const TaskRow*>& tasks) {
    QSet<QString> titles;
    int hidden = 0;
    for (const TaskRow* task : tasks) {
        if (CardCount() == MaxCards && !titles.contains(task->title)) {
            ++hidden;
            continue;
        }
        titles.insert(task->title);
        ShowCard(*task);
    }
    return hidden;
}

void CTaskListPanel::ShowCard(const TaskRow& task) {
    auto* card = static_cast<CTaskManItem*>(Keep(task.name, [&] {
        auto made = std::make_unique<CTaskManItem>(TheConsole(), task);
        connect(made.get(), &CTaskManItem::Deleted, this, &CTaskListPanel::Refresh);
        return made;
    }));
    // Tasks of one name share a card, which stays with its task until that has left the data.
    if (card && (card->TaskId() == task.id || !m_tasks->ids.contains(card->TaskId())))
        card->Update(task);
}

void CTaskListPanel::TellHidden(int matching, int hidden) {
    m_hiddenTasks->SetText(
        hidden > 0 ? tr("%1 more tasks are not shown. Find a task by its name to see it here.").arg(hidden)
                   : QString());
    m_find->SetCounts(matching, static_cast<int>(m_tasks->rows.size()));
    if (hidden > 0)
        m_find->show();
    const bool any = hidden > 0 || !m_find->isHidden();
    m_find->parentWidget()->layout()->setContentsMargins(Look::PageMargin, any ? Look::PageMargin : 0,
                                                         Look::PageMargin, 0);
    RecalcLayout();
}
