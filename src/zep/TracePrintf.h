#pragma once

#include <QString>

enum class TraceLevel { Error = 1, Warning = 2, Info = 3, Verbose = 4 };

/// Appends a line to the console's log in the home path "logging": time (UTC), process, level and the text
/// (whose own line end at its end is not doubled; others are shown as "\n"). Silent when that cannot be
/// written; never throws. Any thread may call. Never give it a secret: no setting's value, no card, no
/// password.
void TracePrintf(TraceLevel level, const QString& text) noexcept;
