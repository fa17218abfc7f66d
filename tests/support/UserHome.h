#pragma once

#include <QByteArray>
#include <QString>

/// While it lives, the folder is the user's home, and nothing else says where the user's files are.
class UserHome {
public:
    explicit UserHome(const QString& folder) : m_home(qgetenv("HOME")), m_data(qgetenv("XDG_DATA_HOME")) {
        qputenv("HOME", folder.toUtf8());
        qunsetenv("XDG_DATA_HOME");
    }
    ~UserHome() {
        qputenv("HOME", m_home);
        if (!m_data.isNull())
            qputenv("XDG_DATA_HOME", m_data);
    }
    UserHome(const UserHome&) = delete;
    UserHome& operator=(const UserHome&) = delete;

private:
    QByteArray m_home;
    QByteArray m_data;
};
