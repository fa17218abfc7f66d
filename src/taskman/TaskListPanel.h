#pragma once

#include "cards/ExpandableItemList.h"
#include "lanes/PageLoader.h"
#include "taskman/TaskList.h"

class FindBar;
class NoticeLine;
class QTextBrowser;

/// The tasks of one filter as cards, read again every five seconds. The find bar above them leaves the cards
/// of the tasks whose names hold its words, and so reaches those that the list has no room for.
class CTaskListPanel : public CExpandableItemList {
    Q_OBJECT

public:
    CTaskListPanel(const Console& console, TaskFilter filter);

    /// And what the expanded card shows.
    void Reload() override;

protected:
    void CreatePanel() override;
    void OnPeriod() override { Refresh(); }
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void Refresh();
    /// Gives the tasks their cards, of those that the find bar leaves.
    void ShowCards();
    /// Returns for how many there was no room.
    int ShowNewCards(const std::vector<const TaskRow*>& tasks);
    void ShowCard(const TaskRow& task);
    /// Says how many of the matching tasks have no card.
    void TellHidden(int matching, int hidden);
    void ShowEmptyPage();

    TaskFilter m_filter;
    std::shared_ptr<const TaskList> m_tasks; ///< as last read well; none before
    FindBar* m_find = nullptr;
    NoticeLine* m_hiddenTasks = nullptr;
    QTextBrowser* m_emptyPage = nullptr;
};
