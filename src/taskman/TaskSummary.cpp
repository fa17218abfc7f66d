#include "taskman/TaskSummary.h"

#include "taskman/TaskCommands.h"

CTaskSummary::CTaskSummary(const Console& console, const TaskRow& task, TaskSummaryPlan plan,
                           CommandRunner* commands)
    : SummaryPanel(console, plan.widths), m_task(task), m_plan(std::move(plan)) {
    SetHelp(m_plan.help);
    if (commands)
        ShareCommands(*commands);
    connect(&Commands(), &CommandRunner::BusyChanged, this, &CTaskSummary::ShowToolbar);
}

void CTaskSummary::CreatePanel() {
    SummaryPanel::CreatePanel();
    SetRows(m_plan.rows(m_task, m_facts), Known::Before);
}

void CTaskSummary::SetTask(const TaskRow& task) {
    const bool same = task.id == m_task.id;
    m_task = task;
    if (same)
        return;
    Loader().Cancel();
    m_facts = {};
    ForgetRows();
    SetRows(m_plan.rows(m_task, m_facts), Known::Before);
    SetToolbar({});
    if (IsActive())
        Reload();
}

void CTaskSummary::Activate() {
    m_facts.changes.reset();
    SetToolbar({});
    SummaryPanel::Activate();
}

void CTaskSummary::Reload() {
    Loader().Load(
        Lane::Databases,
        [id = m_task.id, before = m_facts, read = m_plan.counts, counters = &TheConsole().counters](
            std::stop_token stop) { return ReadTaskFacts(id, before, read, *counters, stop); },
        [this](const Loaded<TaskFacts>& loaded) {
            if (!IsActive())
                return;
            if (loaded)
                return Show(*loaded);
            if (loaded.outcome == LoadOutcome::Cancelled)
                return;
            TellFailure(loaded.why);
            SetRows(m_plan.rows(m_task, m_facts));
        });
}

void CTaskSummary::Show(const TaskFacts& facts) {
    m_facts = facts;
    TellFailure(facts.lookup.read.Sentence());
    SetRows(m_plan.rows(m_task, facts));
    if (facts.lookup)
        ShowToolbar();
}

void CTaskSummary::ShowToolbar() {
    std::vector<FrameAction> actions;
    for (const auto& [action, caption] : m_plan.buttons(m_facts.lookup.task.state)) {
        if (!action)
            actions.push_back(RefreshAction(caption));
        else
            actions.push_back({caption, TaskActionImage(*action), [this, action = *action] { Run(action); },
                               !Commands().IsBusy(TaskOrderKey(*action, m_task.id))});
    }
    SetToolbar(std::move(actions));
}

void CTaskSummary::Run(TaskAction action) {
    CommandOrder order = TaskOrder(action, m_task.id, m_task.title);
    // The commands may be those of a list, which outlives the card.
    const auto isSame = [summary = QPointer(this), id = m_task.id] {
        return summary && summary->m_task.id == id;
    };
    order.isStillMeant = isSame;
    order.after = [summary = QPointer(this), isSame, action](const CommandEnd& end) {
        if (summary && summary->IsActive())
            summary->Reload();
        if (isSame())
            emit summary->Commanded(action, end);
    };
    Commands().Run(TaskOrderKey(action, m_task.id), order);
}
