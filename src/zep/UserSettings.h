#pragma once

#include <QString>

#include <optional>

/// A switch that is kept for the user who runs the console; off when there is none of that name.
bool ZEPSettingsGetSwitch(const QString& name);
/// False when it could not be kept.
bool ZEPSettingsSetSwitch(const QString& name, bool on);

/// A text that is kept for the user who runs the console; none when there is none of that name.
std::optional<QString> ZEPSettingsGetWString(const QString& name);
