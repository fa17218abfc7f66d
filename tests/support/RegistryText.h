#pragma once

#include "platform/Registry.h"

#include <QString>

/// A text in the registry for as long as it lives, or where the system keeps such values: below BREN_HOME
/// those of the machine, below XDG_CONFIG_HOME those of the user. The key is made when missing.
class RegistryText {
public:
    RegistryText(platform::RegistryRoot root, QString key, QString name, const QString& text);
    RegistryText(const RegistryText&) = delete;
    RegistryText& operator=(const RegistryText&) = delete;
    ~RegistryText();

private:
    const platform::RegistryRoot m_root;
    const QString m_key;
    const QString m_name;
};
