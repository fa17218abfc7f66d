#pragma once

#include "app/ServiceWait.h"
#include "app/StartUp.h"
#include "lanes/ThreadReader.h"
#include "page/WindowPrompts.h"
#include "service/ServiceClient.h"

/// Start-up's operations on the real system. Shows dialogs one after the other, each in an event loop of its
/// own; nothing after start-up does that.
class SystemOperations : public StartUpOperations {
    Q_DECLARE_TR_FUNCTIONS(SystemOperations)

public:
    explicit SystemOperations(CommandLine commandLine) : m_commandLine(std::move(commandLine)) {}

    QString ReadServerModeValue() override;
    void SetServerMode(bool serverMode) override;
    bool MayElevate() override;
    bool StartElevated(const QString& parameters) override;
    bool IsServiceRunning() override;
    bool ProbeSchedulerDbAccess() override;
    bool IsShellRunning() override;
    ConnectResult Connect(bool mayStartService) override;
    bool IsServerConfigured() override;
    void RunConfigurationWizard() override;
    std::optional<QByteArray> RequestVdirList() override;
    void EditVirtualDirectory(const VDirRecord& record) override;
    void ShowCloudServicePage() override;
    void ShowMainWindow(const QString& title, int initialView) override;
    void ShowMessage(const QString& text) override;
    bool AskToContinue(const QString& question) override;
    void Trace(const QString& line) override;

private:
    CommandLine m_commandLine;
    std::unique_ptr<ServiceWait> m_wait; ///< may still be inside a request when its dialog has given up
    ServiceClient m_service;
    WindowPrompts m_prompts;
    ThreadReader m_reader;
};
