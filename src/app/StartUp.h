#pragma once

#include "app/CommandLine.h"
#include "service/ServiceClient.h"

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <vector>

enum class ConnectResult { Answered, TimedOut, StartRefused, ClosedByUser };

enum class MessageKind { Information, Error };

/// What start-up asks of the system, of the service and of the user, each a small operation that ends before
/// the next begins. A window stands while one waits; nothing, or Cancelled, means that the user has closed
/// it.
class StartUpOperations {
public:
    virtual ~StartUpOperations() = default;

    virtual void SetServerMode(bool serverMode) = 0;
    /// The title of the boxes and windows of start-up.
    virtual void SetTitle(const QString& title) = 0;
    virtual QString ReadServerModeValue() = 0;
    /// What keeps the console from using its environment, in a sentence; empty when nothing does.
    virtual QString EnvironmentMistake() = 0;
    virtual bool MayElevate() = 0;
    /// Starts an elevated copy of this program with the arguments; false when it did not start.
    virtual bool StartElevated(const QStringList& arguments) = 0;
    virtual std::optional<bool> IsServiceRunning() = 0;
    virtual std::optional<bool> ProbeSchedulerDbAccess() = 0;
    /// Whether the desktop shell holds its mutex.
    virtual bool IsShellRunning() = 0;
    /// Where that was looked for, in a sentence.
    virtual QString ShellPlace() = 0;

    /// Shows the connect dialog until the service answers or its time is over.
    virtual ConnectResult Connect(bool mayStartService) = 0;
    virtual std::optional<bool> IsServerConfigured() = 0;
    virtual void RunConfigurationWizard() = 0;
    virtual ServiceAnswer RequestVdirList() = 0;
    virtual void EditVirtualDirectory(const VDirRecord& record) = 0;
    virtual void ShowCloudServicePage() = 0;
    virtual void ShowMainWindow(const QString& title, int initialView) = 0;

    /// `details` can be folded out.
    virtual void ShowMessage(MessageKind kind, const QString& text, const QString& details = {}) = 0;
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
    /// The process's exit code after that: 0, 1 without a running shell, 2 in an environment of no use.
    int ExitCode() const { return m_exitCode; }

private:
    void SetModes();
    bool HasUsableEnvironment();
    bool ReachServer();
    bool MayReadScheduler();
    bool ReachDesktopShell();
    bool ConfigureServer();
    void RelaunchElevated();
    void EditHome();
    void ShowError(const QString& text, const QString& details = {});

    CommandLine m_commandLine;
    StartUpOperations& m_operations;
    QString m_title;
    int m_exitCode = 0;
};

/// Whether the text of the registry value "ServerMode" means the backup-server flavour.
bool IsQbsServerMode(const QString& serverMode);

/// The title of the main window.
QString ConsoleTitle(bool serverMode, bool qbsServerMode);

/// The first record that is named "Home", in any case, and has a login card.
const VDirRecord* FindHome(const std::vector<VDirRecord>& records);
