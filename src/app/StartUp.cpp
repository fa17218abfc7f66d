#include "app/StartUp.h"

#include "zep/Mui.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int NoShell = 1;
constexpr int EnvironmentUnusable = 2;

} // namespace

bool IsQbsServerMode(const QString& serverMode) {
    return serverMode.compare("QBS"_L1, Qt::CaseInsensitive) == 0;
}

QString ConsoleTitle(bool serverMode, bool qbsServerMode) {
    if (!serverMode)
        return ZEPMuiGetBrandingStringW(Branding::DesktopConsole);
    return qbsServerMode ? ZEPMuiGetBrandingStringW(Branding::BackupServerConsole)
                         : u"Brenvia Mesafile Console"_s;
}

const VDirRecord* FindHome(const std::vector<VDirRecord>& records) {
    const auto home = std::find_if(records.begin(), records.end(), [](const VDirRecord& record) {
        return record.name.compare("Home"_L1, Qt::CaseInsensitive) == 0;
    });
    return home == records.end() ? nullptr : &*home;
}

bool CBTaskMMCApp::InitInstance() {
    SetModes();
    if (!HasUsableEnvironment())
        return false;
    const bool server = m_commandLine.Server();
    if (server && !m_commandLine.RunAs() && m_operations.MayElevate()) {
        RelaunchElevated();
        return false;
    }
    if (!(server ? ReachServer() && ConfigureServer() : ReachDesktopShell()))
        return false;
    if (m_commandLine.EditHome())
        EditHome();
    else if (m_commandLine.Cloud())
        m_operations.ShowCloudServicePage();
    else
        m_operations.ShowMainWindow(m_title, m_commandLine.InitialView());
    return false;
}

/// First of all: where lines are traced, what a box is titled and which service is meant hang on it.
void CBTaskMMCApp::SetModes() {
    m_operations.SetServerMode(m_commandLine.Server());
    ZEPMuiInitialize();
    m_title = ConsoleTitle(m_commandLine.Server(), IsQbsServerMode(m_operations.ReadServerModeValue()));
    m_operations.SetTitle(m_title);
}

bool CBTaskMMCApp::HasUsableEnvironment() {
    const QString mistake = m_operations.EnvironmentMistake();
    if (mistake.isEmpty())
        return true;
    ShowError(mistake);
    m_exitCode = EnvironmentUnusable;
    return false;
}

bool CBTaskMMCApp::ReachServer() {
    switch (m_operations.Connect(m_commandLine.RunAs())) {
    case ConnectResult::Answered:
        return MayReadScheduler();
    case ConnectResult::StartRefused:
        ShowError(tr("Service can not be started. Launching the console as an Administrator may solve the "
                     "problem, or you can start the service directly from Service Control Manager."));
        return false;
    case ConnectResult::ClosedByUser:
        return false;
    case ConnectResult::TimedOut:
        // A service that runs but is busy gets no second attempt from us: that one is the user's.
        if (!m_operations.IsServiceRunning().value_or(true) && !m_commandLine.RunAs())
            RelaunchElevated();
        return false;
    }
    return false;
}

bool CBTaskMMCApp::MayReadScheduler() {
    const std::optional<bool> mayRead = m_operations.ProbeSchedulerDbAccess();
    if (!mayRead || *mayRead)
        return mayRead.has_value();
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
    m_operations.Trace(u"[ShellFolder]GUIShell is not up, exit....\n"_s);
    ShowError(tr("Brenvia Orbitdesk is not running, please start Brenvia Orbitdesk then try this again"),
              m_operations.ShellPlace());
    m_exitCode = NoShell;
    return false;
}

bool CBTaskMMCApp::ConfigureServer() {
    if (!m_commandLine.BackupWizard()) {
        const std::optional<bool> configured = m_operations.IsServerConfigured();
        if (!configured || *configured)
            return configured.has_value();
    }
    m_operations.RunConfigurationWizard();
    return m_operations.IsServerConfigured().value_or(false);
}

void CBTaskMMCApp::RelaunchElevated() {
    if (!m_operations.MayElevate())
        ShowError(tr("You don't have the required permission to run this program."));
    else if (!m_operations.StartElevated(m_commandLine.ElevatedArguments()))
        ShowError(
            tr("Application can not be started. Launch the console as Administrator may solve the problem."));
}

void CBTaskMMCApp::EditHome() {
    const ServiceAnswer answer = m_operations.RequestVdirList();
    if (answer.outcome == ServiceOutcome::Cancelled)
        return;
    if (!answer) {
        ShowError(ZEPMuiGetStringW(Message::VirtualDirectoriesUnavailable));
        return;
    }
    const std::optional<std::vector<VDirRecord>> records = ParseVdirList(answer.body);
    if (!records)
        return;
    if (const VDirRecord* home = FindHome(*records))
        m_operations.EditVirtualDirectory(*home);
    else
        m_operations.ShowMessage(MessageKind::Information, ZEPMuiGetStringW(Message::HomeDirectoryMissing));
}

void CBTaskMMCApp::ShowError(const QString& text, const QString& details) {
    m_operations.ShowMessage(MessageKind::Error, text, details);
}
