#include "app/SystemOperations.h"

#include "app/BackupSvrConfigWizard.h"
#include "app/ConnectProgressDlg.h"
#include "app/Pages.h"
#include "app/ServiceWait.h"
#include "app/StartReport.h"
#include "app/WaitDlg.h"
#include "clouddrive/BVDirMgrDlg.h"
#include "clouddrive/CloudSvcPage.h"
#include "development/CheckReport.h"
#include "development/Tour.h"
#include "development/WatchedReader.h"
#include "page/Console.h"
#include "page/MainFrame.h"
#include "page/SectionLinks.h"
#include "page/SettingNews.h"
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
#include "zep/Text.h"
#include "zep/TracePrintf.h"

#include <QApplication>
#include <QMessageBox>

#include <semaphore>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

const platform::RegistryKey MachineKey{platform::RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia"};
constexpr size_t ServerModeMaxBytes = 520;

constexpr std::chrono::milliseconds AppearDelay{250};
constexpr char ShellMutex[] = "IOSGUISHELLUPMUTEX";

/// Of a console that has no main window yet.
class NoFrame : public MainFrame {
public:
    void SetStatusText(const QString&) override {}
    void SetNotice(const QString&) override {}
    void SetToolbar(QWidget&, const std::vector<FrameAction>&) override {}
    void SetSideActions(QWidget&, const std::vector<FrameAction>&) override {}
};

} // namespace

/// Fetches while a window says what is waited for; nothing when that has been closed, `unknown` when the
/// fetch threw.
template <typename Fetch>
auto SystemOperations::Await(const QString& what, Fetch fetch,
                             std::invoke_result_t<Fetch&, std::stop_token> unknown)
    -> std::optional<std::invoke_result_t<Fetch&, std::stop_token>> {
    using Value = std::invoke_result_t<Fetch&, std::stop_token>;
    std::optional<Value> result;
    WaitDlg window(m_title, what);
    std::binary_semaphore fetched(0);
    std::jthread thread([&](std::stop_token stop) {
        try {
            result = fetch(std::move(stop));
        } catch (const std::exception& error) {
            TracePrintf(TraceLevel::Error, u"[StartUp]%1"_s.arg(QString::fromUtf8(error.what())));
            result = unknown;
        }
        fetched.release();
        QMetaObject::invokeMethod(&window, &QDialog::accept, Qt::QueuedConnection);
    });
    // Most answers are there before anybody could read the window.
    const bool closed = !fetched.try_acquire_for(AppearDelay) && window.exec() != QDialog::Accepted;
    thread.request_stop();
    thread.join();
    return closed ? std::nullopt : result;
}

void SystemOperations::SetServerMode(bool serverMode) {
    ZEPSysInfoSetServerMode(serverMode);
    m_reader.emplace();
}

void SystemOperations::SetTitle(const QString& title) {
    m_title = title;
}

QString SystemOperations::ReadServerModeValue() {
    const auto value = platform::ReadRegistryText(MachineKey, "ServerMode", ServerModeMaxBytes);
    return QString::fromStdString(value.value_or(std::string()));
}

QString SystemOperations::EnvironmentMistake() {
    try {
        platform::DataFolder(ZEPSysInfoIsServer());
    } catch (const platform::FolderUnknown& unknown) {
        return QString::fromUtf8(unknown.what());
    }
    return ServicePortMistake();
}

bool SystemOperations::MayElevate() {
    return platform::MayElevate();
}

bool SystemOperations::StartElevated(const QStringList& arguments) {
    std::vector<std::string> words;
    for (const QString& argument : WithSurroundings(arguments))
        words.push_back(argument.toStdString());
    return platform::RelaunchElevated(platform::ExecutableFile(), words);
}

std::optional<bool> SystemOperations::IsServiceRunning() {
    const auto check = Await(tr("Asking whether the background service runs."), CheckService);
    if (check && check->openFailed)
        ShowMessage(MessageKind::Error, tr("Open Service Manager Failed\n"));
    return check ? std::optional(check->running) : std::nullopt;
}

std::optional<bool> SystemOperations::ProbeSchedulerDbAccess() {
    return Await(
        tr("Looking for the scheduler's database."),
        [](std::stop_token stop) {
            // It is asked for the right alone: a missing file passes, and so does a locked one.
            return ProbeSchedulerDatabase(std::move(stop), {.attempts = 1}).outcome != ReadOutcome::NoRight;
        },
        true);
}

bool SystemOperations::IsShellRunning() {
    return platform::IsMutexHeld(ShellMutex);
}

QString SystemOperations::ShellPlace() {
    const std::optional<std::filesystem::path> file = platform::MutexFile(ShellMutex);
    if (!file)
        return tr("Looked for the mutex \"%1\" of this session.").arg(QLatin1String(ShellMutex));
    if (file->empty())
        return tr("Looked for the lock \"%1.mutex\", but there is no folder for this user's locks.")
            .arg(QLatin1String(ShellMutex));
    return tr("Looked for the lock \"%1\" in the folder \"%2\".")
        .arg(FromPath(file->filename()), FromPath(file->parent_path()));
}

ConnectResult SystemOperations::Connect(bool mayStartService) {
    ServiceWait wait(ServiceWait::RealSteps(), mayStartService);
    CConnectProgressDlg dialog(wait, m_title);
    dialog.exec();
    return dialog.Result();
}

std::optional<bool> SystemOperations::IsServerConfigured() {
    return Await(
        tr("Waiting for the background service to tell how this server is set up."),
        [service = m_service](std::stop_token stop) {
            return ReadSetting(service, Settings::BSInitConfig, std::move(stop)).value;
        },
        true);
}

void SystemOperations::RunConfigurationWizard() {
    LiveCounters counters;
    NoFrame frame;
    SettingNews settingNews;
    SectionLinks links;
    const Console console{m_service, counters, m_prompts, *m_reader, frame, settingNews, links};
    SetRemoteFolderPicker(m_prompts, console);
    (new CBackupSvrConfigWizard(console))->exec(); // deletes itself
}

ServiceAnswer SystemOperations::RequestVdirList() {
    const auto answer = Await(
        tr("Waiting for the background service to list the virtual directories."),
        [service = m_service](std::stop_token stop) { return service.RequestVdirList(std::move(stop)); });
    return answer.value_or(ServiceAnswer{ServiceOutcome::Cancelled, 0, {}, {}});
}

void SystemOperations::EditVirtualDirectory(const VDirRecord& record) {
    CBVDirMgrDlg(m_service, *m_reader, record).exec();
}

void SystemOperations::ShowCloudServicePage() {
    CloudSvcPage(m_service, *m_reader).exec();
}

void SystemOperations::ShowMainWindow(const QString& title, int initialView) {
    LiveCounters counters;
    WatchedReader reader(*m_reader);
    CBTaskMMCDlg window(m_service, counters, m_prompts, reader,
                        {.title = title,
                         .version = ReadConsoleVersion(),
                         .initialView = initialView,
                         .firstSection = m_commandLine.FirstSection(),
                         .pages = PagesOf(ZEPSysInfoIsServer(), m_commandLine.Gallery()),
                         .cloudSpace = CloudSpaceDialog,
                         .bandwidth = BandwidthDialog});
    SetRemoteFolderPicker(m_prompts, window.Parts());
    LinkSections(window);
    window.show();
    std::unique_ptr<Tour> tour;
    if (!m_commandLine.TourFolder().isEmpty())
        tour = std::make_unique<Tour>(window, reader, DialogsOf(ZEPSysInfoIsServer()),
                                      m_commandLine.TourFolder());
    std::unique_ptr<CheckRun> check;
    if (!m_commandLine.Check().isEmpty())
        check = StartCheck(window, reader, m_service, DialogsOf(ZEPSysInfoIsServer()),
                           {m_commandLine.Check(), m_commandLine.Size(), m_commandLine.Fault()});
    std::unique_ptr<StartReport> report;
    if (m_commandLine.ReportStart())
        report = std::make_unique<StartReport>(window, reader);
    QApplication::exec();
}

void SystemOperations::ShowMessage(MessageKind kind, const QString& text, const QString& details) {
    const bool isError = kind == MessageKind::Error;
    QMessageBox box(isError ? QMessageBox::Critical : QMessageBox::Information, m_title, text,
                    QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    box.setDetailedText(details);
    box.exec();
}

bool SystemOperations::AskToContinue(const QString& question) {
    QMessageBox box(QMessageBox::Warning, m_title, question, QMessageBox::Yes | QMessageBox::No);
    box.setTextFormat(Qt::PlainText);
    return box.exec() == QMessageBox::Yes;
}

void SystemOperations::Trace(const QString& line) {
    TracePrintf(TraceLevel::Info, line);
}
