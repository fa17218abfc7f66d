#pragma once

#include "ctl/Command.h"

/// The command that the words begin with; none when there is no such.
const Command* FindCommand(const QStringList& words);

/// Takes the words behind the command's own apart, into operands and options. Returns what is wrong with
/// them, if anything: the command is to be run only when that is empty.
QString TakeWords(const Command& command, const QStringList& words, Invocation& invocation);

/// As in "settings set NAME (VALUE | --from FILE) [--type int|string|bool]".
QString UsageOf(const Command& command);

/// The words that an operand or an option takes; empty when it takes any.
QStringList ChoicesOf(QLatin1String name);
