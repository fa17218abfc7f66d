#pragma once

#include <QString>

#include <optional>

/// A text that is kept for the user who runs the console; none when there is none of that name.
std::optional<QString> ZEPSettingsGetWString(const QString& name);
