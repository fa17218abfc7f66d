#include "app/SystemOperations.h"

#include "app/BackupSvrConfigWizard.h"
#include "app/ConnectProgressDlg.h"
#include "app/Pages.h"
#include "app/StartReport.h"
#include "clouddrive/BVDirMgrDlg.h"
#include "clouddrive/CloudSvcPage.h"
#include "development/Tour.h"
#include "development/WatchedReader.h"
#include "platform/Elevation.h"
#include "platform/Folders.h"
#include "platform/NamedObjects.h"
#include "platform/Registry.h"
#include "service/KnownSettings.h"
#include "stores/SchedulerStore.h"
#include "window/BTaskMMCDlg.h"
#include "zep/LiveCounters.h"
#include "zep/Mui.h"
#include "zep/SysInfo.h"
#include "zep/TracePrintf.h"

#include <QApplication>
#include <QMessageBox>
#include <QProcess>

namespace {

const platform::RegistryKey MachineKey{platform::RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia"};
constexpr size_t ServerModeMaxBytes = 520;

QMessageBox::StandardButton ShowBox(QMessageBox::Icon icon, const QString& text,
                                    QMessageBox::StandardButtons buttons) {
    QMessageBox box(icon, ZEPMuiGetBrandingStringW(Branding::DesktopConsole), text, buttons);
    box.setTextFormat(Qt::PlainText);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

} // namespace

QString SystemOperations::ReadServerModeValue() {
    const auto value = platform::ReadRegistryText(MachineKey, "ServerMode", ServerModeMaxBytes);
    return QString::fromLocal8Bit(value.value_or(std::string()));
}

void SystemOperations::SetServerMode(bool serverMode) {
    ZEPSysInfoSetServerMode(serverMode);
}

bool SystemOperations::MayElevate() {
    return platform::MayElevate();
}

bool SystemOperations::StartElevated(const QString& parameters) {
    std::vector<std::string> arguments;
    for (const QString& argument : QProcess::splitCommand(parameters))
        arguments.push_back(argument.toStdString());
    const QString program = QApplication::applicationFilePath();
    return platform::RelaunchElevated(platform::PathFromUtf8(program.toStdString()), arguments);
}

bool SystemOperations::IsServiceRunning() {
    const ServiceCheck check = CheckService();
    if (check.openFailed)
        ShowMessage(tr("Open Service Manager Failed\n"));
    return check.running;
}

bool SystemOperations::ProbeSchedulerDbAccess() {
    // It is asked for the right alone: a missing file passes, and so does a locked one.
    return ProbeSchedulerDatabase({}, {.attempts = 1}).outcome != ReadOutcome::NoRight;
}

bool SystemOperations::IsShellRunning() {
    return platform::IsMutexHeld("IOSGUISHELLUPMUTEX");
}

ConnectResult SystemOperations::Connect(bool mayStartService) {
    m_wait = std::make_unique<ServiceWait>(ServiceWait::RealSteps(), mayStartService);
    CConnectProgressDlg dialog(*m_wait);
    dialog.exec();
    return dialog.Result();
}

bool SystemOperations::IsServerConfigured() {
    return ReadSetting(m_service, Settings::BSInitConfig).value;
}

void SystemOperations::RunConfigurationWizard() {
    CBackupSvrConfigWizard(m_service, m_reader, m_prompts).exec();
}

std::optional<QByteArray> SystemOperations::RequestVdirList() {
    const ServiceAnswer answer = m_service.RequestVdirList();
    return answer ? std::optional(answer.body) : std::nullopt;
}

void SystemOperations::EditVirtualDirectory(const VDirRecord& record) {
    CBVDirMgrDlg(record).exec();
}

void SystemOperations::ShowCloudServicePage() {
    CloudSvcPage(m_service, m_reader).exec();
}

void SystemOperations::ShowMainWindow(const QString& title, int initialView) {
    LiveCounters counters;
    WatchedReader reader(m_reader);
    CBTaskMMCDlg window(m_service, counters, m_prompts, reader,
                        {.title = title,
                         .version = ReadConsoleVersion(),
                         .initialView = initialView,
                         .pages = PagesOf(ZEPSysInfoIsServer(), m_commandLine.Gallery()),
                         .cloudSpace = CloudSpaceDialog,
                         .bandwidth = BandwidthDialog});
    for (int section = 0; section < window.SectionCount(); ++section) {
        if (window.SectionTitle(section) == m_commandLine.FirstSection())
            window.SelectSection(section);
    }
    window.show();
    std::unique_ptr<Tour> tour;
    if (!m_commandLine.TourFolder().isEmpty())
        tour = std::make_unique<Tour>(window, reader, std::vector<DialogEntry>(), m_commandLine.TourFolder());
    std::unique_ptr<StartReport> report;
    if (m_commandLine.ReportStart())
        report = std::make_unique<StartReport>(window, reader);
    QApplication::exec();
}

void SystemOperations::ShowMessage(const QString& text) {
    ShowBox(QMessageBox::Information, text, QMessageBox::Ok);
}

bool SystemOperations::AskToContinue(const QString& question) {
    return ShowBox(QMessageBox::Warning, question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

void SystemOperations::Trace(const QString& line) {
    TracePrintf(TraceLevel::Info, line);
}
