#include "taskman/TaskSummary.h"

#include "taskman/TaskCommands.h"

CTaskSummary::CTaskSummary(const Console& console, const TaskRow& task, TaskSummaryPlan plan)
    : SummaryPanel(console, plan.widths), m_task(task), m_plan(std::move(plan)) {
    SetHelp(m_plan.help);
    connect(&Commands(), &CommandRunner::BusyChanged, this, &CTaskSummary::ShowToolbar);
}

void CTaskSummary::CreatePanel() {
    SummaryPanel::CreatePanel();
    SetRows(m_plan.rows(m_task, m_facts));
}

void CTaskSummary::SetTask(const TaskRow& task) {
    const bool same = task.id == m_task.id;
    m_task = task;
    if (same)
        return;
    Loader().Cancel();
    m_facts = {};
    ForgetRows();
    SetRows(m_plan.rows(m_task, m_facts));
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
        [id = m_task.id, before = m_facts, counters = &TheConsole().counters](std::stop_token stop) {
            return ReadTaskFacts(id, before, *counters, stop);
        },
        [this](const Loaded<TaskFacts>& loaded) {
            if (!IsActive())
                return;
            if (loaded)
                Show(*loaded);
            else if (loaded.outcome == LoadOutcome::Failed)
                TellFailure(loaded.why);
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
    const auto isSame = [this, id = m_task.id] { return m_task.id == id; };
    order.isStillMeant = isSame;
    order.after = [this, isSame, action, failure = order.failure](bool done) {
        if (IsActive())
            Reload();
        if (isSame())
            emit Commanded(action, done ? QString() : failure);
    };
    Commands().Run(TaskOrderKey(action, m_task.id), order);
}
