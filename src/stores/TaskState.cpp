#include "stores/TaskState.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

constexpr TaskAction Waiting[] = {TaskAction::StartNow, TaskAction::Pause, TaskAction::Cancel};
constexpr TaskAction Running[] = {TaskAction::Pause, TaskAction::Cancel};
constexpr TaskAction Paused[] = {TaskAction::StartNow, TaskAction::Resume, TaskAction::Cancel};

constexpr TaskStateMeaning Meanings[] = {
    {TaskState::Running, QT_TRANSLATE_NOOP("TaskState", "Running"), "running", Running},
    {TaskState::Failed, QT_TRANSLATE_NOOP("TaskState", "Failed"), "failed", Waiting},
    {TaskState::Paused, QT_TRANSLATE_NOOP("TaskState", "Paused"), "paused", Paused},
    {TaskState::Pending, QT_TRANSLATE_NOOP("TaskState", "Pending"), "pending", Waiting},
    {TaskState::Completed, QT_TRANSLATE_NOOP("TaskState", "Completed"), "completed", {}},
};

constexpr TaskStateMeaning NoMeaning{TaskState::Held, nullptr, "pending", {}};

} // namespace

const TaskStateMeaning& MeaningOf(TaskState state) {
    const auto* found = std::find_if(std::begin(Meanings), std::end(Meanings),
                                     [state](const TaskStateMeaning& entry) { return entry.state == state; });
    return found == std::end(Meanings) ? NoMeaning : *found;
}

QString TaskStateText(TaskState state) {
    const char* text = MeaningOf(state).text;
    return text ? QCoreApplication::translate("TaskState", text) : QString();
}
