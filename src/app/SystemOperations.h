#pragma once

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

    void SetServerMode(bool serverMode) override;
    void SetTitle(const QString& title) override;
    QString ReadServerModeValue() override;
    QString EnvironmentMistake() override;
    bool MayElevate() override;
    bool StartElevated(const QStringList& arguments) override;
    std::optional<bool> IsServiceRunning() override;
    std::optional<bool> ProbeSchedulerDbAccess() override;
    bool IsShellRunning() override;
    QString ShellPlace() override;
    ConnectResult Connect(bool mayStartService) override;
    std::optional<bool> IsServerConfigured() override;
    void RunConfigurationWizard() override;
    ServiceAnswer RequestVdirList() override;
    void EditVirtualDirectory(const VDirRecord& record) override;
    void ShowCloudServicePage() override;
    void ShowMainWindow(const QString& title, int initialView) override;
    void ShowMessage(MessageKind kind, const QString& text, const QString& details = {}) override;
    bool AskToContinue(const QString& question) override;
    void Trace(const QString& line) override;

private:
    template <typename Fetch>
    auto Await(const QString& what, Fetch fetch, std::invoke_result_t<Fetch&, std::stop_token> unknown = {})
        -> std::optional<std::invoke_result_t<Fetch&, std::stop_token>>;

    CommandLine m_commandLine;
    QString m_title;
    ServiceClient m_service;
    WindowPrompts m_prompts;
    std::optional<ThreadReader> m_reader; ///< once the mode is set, which its threads read
};
