#include "app/StartUp.h"

#include "zep/Mui.h"

#include <algorithm>

bool IsQbsServerMode(const QString& serverMode) {
    return serverMode.compare(QLatin1String("QBS"), Qt::CaseInsensitive) == 0;
}

QString ConsoleTitle(bool serverMode, bool qbsServerMode) {
    if (!serverMode)
        return ZEPMuiGetBrandingStringW(Branding::DesktopConsole);
    return qbsServerMode ? ZEPMuiGetBrandingStringW(Branding::BackupServerConsole)
                         : QStringLiteral("Brenvia Mesafile Console");
}

const VDirRecord* FindHome(const std::vector<VDirRecord>& records) {
    const auto home = std::find_if(records.begin(), records.end(), [](const VDirRecord& record) {
        return record.name.compare(QLatin1String("Home"), Qt::CaseInsensitive) == 0;
    });
    return home == records.end() ? nullptr : &*home;
}

bool CBTaskMMCApp::InitInstance() {
    m_qbsServerMode = IsQbsServerMode(m_operations.ReadServerModeValue());
    ZEPMuiInitialize();
    const bool server = m_commandLine.Server();
    if (server && !m_commandLine.RunAs() && m_operations.MayElevate()) {
        RelaunchElevated();
        return false;
    }
    m_operations.SetServerMode(server);
    if (!(server ? ReachServer() && ConfigureServer() : ReachDesktopShell()))
        return false;
    if (m_commandLine.EditHome())
        EditHome();
    else if (m_commandLine.Cloud())
        m_operations.ShowCloudServicePage();
    else
        m_operations.ShowMainWindow(ConsoleTitle(server, m_qbsServerMode), m_commandLine.InitialView());
    return false;
}

bool CBTaskMMCApp::ReachServer() {
    switch (m_operations.Connect(m_commandLine.RunAs())) {
    case ConnectResult::Answered:
        return MayReadScheduler();
    case ConnectResult::StartRefused:
        m_operations.ShowMessage(
            tr("Service can not be started. Launching the console as an Administrator may solve the "
               "problem, or you can start the service directly from Service Control Manager."));
        return false;
    case ConnectResult::ClosedByUser:
        return false;
    case ConnectResult::TimedOut:
        // A service that runs but is busy gets no second attempt from us: that one is the user's.
        if (!m_operations.IsServiceRunning() && !m_commandLine.RunAs())
            RelaunchElevated();
        return false;
    }
    return false;
}

bool CBTaskMMCApp::MayReadScheduler() {
    if (m_operations.ProbeSchedulerDbAccess())
        return true;
    if (!m_commandLine.RunAs()) {
        RelaunchElevated();
        return false;
    }
    return m_operations.AskToContinue(
        tr("You don't have the permission to access Task scheduler DB, you may not be able to view "
           "the task information, do you want to continue?"));
}

bool CBTaskMMCApp::ReachDesktopShell() {
    if (m_operations.IsShellRunning())
        return true;
    m_operations.Trace(QStringLiteral("[ShellFolder]GUIShell is not up, exit....\n"));
    m_operations.ShowMessage(
        tr("Brenvia Orbitdesk is not running, please start Brenvia Orbitdesk then try this again"));
    return false;
}

bool CBTaskMMCApp::ConfigureServer() {
    if (!m_commandLine.BackupWizard() && m_operations.IsServerConfigured())
        return true;
    m_operations.RunConfigurationWizard();
    return m_operations.IsServerConfigured();
}

void CBTaskMMCApp::RelaunchElevated() {
    if (!m_operations.MayElevate())
        m_operations.ShowMessage(tr("You don't have the required permission to run this program."));
    else if (!m_operations.StartElevated(m_commandLine.ElevatedText()))
        m_operations.ShowMessage(
            tr("Application can not be started. Launch the console as Administrator may solve the problem."));
}

void CBTaskMMCApp::EditHome() {
    const std::optional<QByteArray> answer = m_operations.RequestVdirList();
    if (!answer) {
        m_operations.ShowMessage(ZEPMuiGetStringW(Message::VirtualDirectoriesUnavailable));
        return;
    }
    const std::optional<std::vector<VDirRecord>> records = ParseVdirList(*answer);
    if (!records)
        return;
    if (const VDirRecord* home = FindHome(*records))
        m_operations.EditVirtualDirectory(*home);
    else
        m_operations.ShowMessage(ZEPMuiGetStringW(Message::HomeDirectoryMissing));
}
