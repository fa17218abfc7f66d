#pragma once

#include <QString>

/// A text among the machine's values for as long as it lives, in the registry or where the system keeps such
/// values below BREN_HOME. The key is made when missing.
class MachineText {
public:
    MachineText(QString key, QString name, const QString& text);
    MachineText(const MachineText&) = delete;
    MachineText& operator=(const MachineText&) = delete;
    ~MachineText();

private:
    const QString m_key;
    const QString m_name;
};
