#pragma once

#include "devservice/DevService.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A running development service in a home of its own. While it lives, BREN_HOME and BREN_SERVICE_PORT point
/// to it; afterwards they are as before and the home is gone. Make it before threads that read them start.
class ServiceFixture {
public:
    explicit ServiceFixture(const char* scenario = "empty");
    /// Home and port are ours whatever the options say.
    explicit ServiceFixture(devservice::Options options);
    ~ServiceFixture();

    ServiceFixture(const ServiceFixture&) = delete;
    ServiceFixture& operator=(const ServiceFixture&) = delete;

    devservice::DevService* operator->() { return &m_service; }
    devservice::DevService& Service() { return m_service; }
    QString Home() const { return m_home.path(); }

    /// The verbs and targets received, as in "GET /settings/Dummy", "/dev/" ones left out.
    QStringList RequestLines() const;

private:
    QTemporaryDir m_home;
    QByteArray m_oldHome;
    QByteArray m_oldPort;
    std::vector<std::pair<const char*, QByteArray>> m_oldFolders{
        {"XDG_CONFIG_HOME", qgetenv("XDG_CONFIG_HOME")},
        {"XDG_RUNTIME_DIR", qgetenv("XDG_RUNTIME_DIR")},
        {"XDG_STATE_HOME", qgetenv("XDG_STATE_HOME")}};
    devservice::DevService m_service;
};
