#pragma once

#include "platform/Folders.h"

#include <QString>

/// The file of what the console remembers by itself, in the INI format of QSettings.
inline QString StateFile() {
    return QString::fromStdString(platform::Utf8FromPath(platform::ConsoleStateFile()));
}
