#pragma once

#include "ctl/Command.h"

/// The identifier that a task operand means: itself when it begins with "{", otherwise that of the task which
/// has this name, in any case of its letters. None, with an exit code and after a sentence, when no task or
/// several have the name, or the list cannot be read.
struct TaskOperand {
    std::optional<QString> id;
    CtlExit exit = CtlExit::Done;
};
TaskOperand FindTask(const Invocation& invocation, const QString& operand);

inline constexpr char IdentifierMark = '{';
