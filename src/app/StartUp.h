#pragma once

#include "app/CommandLine.h"
#include "service/VDirRecord.h"

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <vector>

enum class ConnectResult { Answered, TimedOut, StartRefused, ClosedByUser };

/// What start-up asks of the system, of the service and of the user, each a small operation that ends before
/// the next begins.
class StartUpOperations {
public:
    virtual ~StartUpOperations() = default;

    virtual QString ReadServerModeValue() = 0;
    virtual void SetServerMode(bool serverMode) = 0;
    virtual bool MayElevate() = 0;
    /// Starts an elevated copy of this program with the parameters; false when it did not start.
    virtual bool StartElevated(const QString& parameters) = 0;
    virtual bool IsServiceRunning() = 0;
    virtual bool ProbeSchedulerDbAccess() = 0;
    /// Whether the desktop shell holds its mutex.
    virtual bool IsShellRunning() = 0;

    /// Shows the connect dialog until the service answers or its time is over.
    virtual ConnectResult Connect(bool mayStartService) = 0;
    virtual bool IsServerConfigured() = 0;
    virtual void RunConfigurationWizard() = 0;
    /// The answer to the list of virtual directories, or none when the service did not answer.
    virtual std::optional<QByteArray> RequestVdirList() = 0;
    virtual void EditVirtualDirectory(const VDirRecord& record) = 0;
    virtual void ShowCloudServicePage() = 0;
    virtual void ShowMainWindow(const QString& title, int initialView) = 0;

    virtual void ShowMessage(const QString& text) = 0;
    virtual bool AskToContinue(const QString& question) = 0;
    virtual void Trace(const QString& line) = 0;
};

/// The console's start, a straight sequence: whose service, may we, does it answer, what is wanted.
class CBTaskMMCApp {
    Q_DECLARE_TR_FUNCTIONS(CBTaskMMCApp)

public:
    CBTaskMMCApp(CommandLine commandLine, StartUpOperations& operations)
        : m_commandLine(std::move(commandLine)), m_operations(operations) {}

    /// Runs the whole program; always false: the process ends when the window it showed has closed.
    bool InitInstance();

private:
    bool ReachServer();
    bool MayReadScheduler();
    bool ReachDesktopShell();
    bool ConfigureServer();
    void RelaunchElevated();
    void EditHome();

    CommandLine m_commandLine;
    StartUpOperations& m_operations;
    bool m_qbsServerMode = false;
};

/// Whether the text of the registry value "ServerMode" means the backup-server flavour.
bool IsQbsServerMode(const QString& serverMode);

/// The title of the main window.
QString ConsoleTitle(bool serverMode, bool qbsServerMode);

/// The first record that is named "Home", in any case, and has a login card.
const VDirRecord* FindHome(const std::vector<VDirRecord>& records);
