#include "window/BTaskMMCDlg.h"

#include "page/BrenPanel.h"
#include "platform/Folders.h"
#include "service/ServiceClient.h"
#include "window/CloudSvcPage.h"
#include "window/ConsoleStatusBar.h"
#include "window/NavigationColumn.h"
#include "window/PageHead.h"
#include "window/ServiceNotice.h"
#include "window/SetBandWidthLimitDlg.h"
#include "window/WindowGeometry.h"
#include "zep/LiveCounters.h"
#include "zep/Mui.h"
#include "zep/Xml.h"

#include <QCloseEvent>
#include <QCursor>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QStackedWidget>
#include <QWindow>

namespace {

constexpr QSize DefaultSize(986, 678);
constexpr QSize SmallestSize(800, 480);
constexpr std::chrono::milliseconds SpeedPeriod{1000};
constexpr int BandwidthDialogRise = 140;

const QString UploadBandwidth = QStringLiteral("UploadBandwidth");
const QString DownloadBandwidth = QStringLiteral("DownloadBandwidth");

quint32 TickCount() {
    return static_cast<quint32>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                    std::chrono::steady_clock::now().time_since_epoch())
                                    .count());
}

QList<QRect> AvailableAreas() {
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

} // namespace

QString ReadConsoleVersion() {
    const auto file = XmlDocument::Load(platform::ExecutableFolder() / "ZEPSysMainCtrlConfig.xml");
    if (!file)
        return {};
    return file->NodeByPath(QStringLiteral("ZEPSysMainCtrl/properties"))
        .Attribute(QStringLiteral("version"))
        .value_or(QString());
}

CBTaskMMCDlg::CBTaskMMCDlg(ServiceClient& service, LiveCounters& counters, UserPrompts& prompts,
                           Reader& reader, const Options& options)
    : m_console{service, counters, prompts, reader, *this},
      m_navigation(new CNavigationColumn(options.title)), m_head(new CPageHead),
      m_notice(new CServiceNotice(reader, service, *this)), m_stack(new QStackedWidget),
      m_statusBar(new CConsoleStatusBar), m_loader(reader, *this) {
    setWindowTitle(options.title);
    setMinimumSize(SmallestSize);
    BuildWindow();
    BuildPages(options.pages);
    if (!options.version.isEmpty())
        m_statusBar->SetPart(CConsoleStatusBar::Version, tr("Version: ") + options.version);
    RestoreGeometry();
    SelectInitialSection(options.initialView);

    connect(&m_speedTimer, &QTimer::timeout, this, &CBTaskMMCDlg::SampleSpeed);
    m_speedTimer.start(SpeedPeriod);
    m_statusBar->SetPart(CConsoleStatusBar::CloudSpace, tr("Not In Cloud Space"));
    m_notice->Start();
}

CBTaskMMCDlg::~CBTaskMMCDlg() {
    // The pages reach for the frame while they go, so they go before it does.
    delete m_stack;
}

void CBTaskMMCDlg::BuildWindow() {
    auto* page = new QVBoxLayout;
    page->setSpacing(0);
    page->addWidget(m_head);
    page->addWidget(m_notice);
    page->addWidget(m_stack, 1);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(0);
    columns->addWidget(m_navigation);
    columns->addLayout(page, 1);
    auto* window = new QVBoxLayout(this);
    window->setContentsMargins(0, 0, 0, 0);
    window->setSpacing(0);
    window->addLayout(columns, 1);
    window->addWidget(m_statusBar);

    connect(m_navigation, &CNavigationColumn::SectionChosen, this, &CBTaskMMCDlg::ShowSection);
    connect(m_statusBar, &CConsoleStatusBar::CloudSpaceClicked, this, &CBTaskMMCDlg::EditCloudSpace);
    connect(m_statusBar, &CConsoleStatusBar::BandwidthClicked, this, &CBTaskMMCDlg::EditBandwidth);
    connect(m_notice, &CServiceNotice::Published, m_statusBar, [this](bool inCloudSpace) {
        m_statusBar->SetPart(CConsoleStatusBar::CloudSpace,
                             inCloudSpace ? tr("In Cloud Space") : tr("Not In Cloud Space"));
    });
    connect(m_notice, &CServiceNotice::ServiceReturned, this, [this] {
        if (CBrenPanel* page = CurrentPage())
            page->PostReload();
    });
}

void CBTaskMMCDlg::BuildPages(const std::vector<PageEntry>& pages) {
    for (const PageEntry& entry : pages) {
        CBrenPanel* page = entry.make(m_console);
        m_stack->addWidget(page);
        page->EnsureCreated();
        m_navigation->AddSection(entry.title, entry.icon);
    }
}

void CBTaskMMCDlg::SelectInitialSection(int initialView) {
    const qint64 wanted = qint64(initialView) + 1;
    const bool valid = initialView != 0 && wanted >= 0 && wanted < m_navigation->SectionCount();
    m_navigation->SelectSection(valid ? static_cast<int>(wanted) : 0);
}

int CBTaskMMCDlg::SectionCount() const {
    return m_navigation->SectionCount();
}

QString CBTaskMMCDlg::SectionTitle(int index) const {
    return m_navigation->SectionTitle(index);
}

void CBTaskMMCDlg::SelectSection(int index) {
    m_navigation->SelectSection(index);
}

CBrenPanel* CBTaskMMCDlg::CurrentPage() const {
    return static_cast<CBrenPanel*>(m_stack->currentWidget());
}

void CBTaskMMCDlg::ShowSection(int index) {
    if (index < 0)
        return;
    CBrenPanel* before = CurrentPage();
    auto* page = static_cast<CBrenPanel*>(m_stack->widget(index));
    if (before && before != page && before->IsActive())
        before->Deactivate();
    m_head->SetTitle(m_navigation->SectionTitle(index));
    SetToolbar(*page, {});
    SetSideActions(*page, {});
    m_stack->setCurrentWidget(page);
    page->Activate();
}

void CBTaskMMCDlg::SetStatusText(const QString& text) {
    m_head->SetStatusText(text);
}

void CBTaskMMCDlg::SetToolbar(QWidget& owner, const std::vector<FrameAction>& actions) {
    m_head->SetActions(owner, actions);
}

void CBTaskMMCDlg::SetSideActions(QWidget& owner, const std::vector<FrameAction>& actions) {
    m_navigation->SetActions(owner, actions);
}

void CBTaskMMCDlg::closeEvent(QCloseEvent* event) {
    // An open editor commits when it loses the focus, and tells of it at the next turn of the event loop.
    if (QWidget* editor = focusWidget(); editor && !m_closing) {
        m_closing = true;
        editor->clearFocus();
        event->ignore();
        QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
        return;
    }
    m_speedTimer.stop();
    StoreGeometry();
    QWidget::closeEvent(event);
}

void CBTaskMMCDlg::RestoreGeometry() {
    resize(DefaultSize.boundedTo(screen()->availableSize()));
    create();
    m_frameMargins = windowHandle()->frameMargins();
    if (const auto stored = ReadWindowGeometry())
        setGeometry(MovedOntoScreen(*stored, AvailableAreas()).marginsRemoved(m_frameMargins));
}

void CBTaskMMCDlg::StoreGeometry() const {
    const bool normal = !isMinimized() && !isMaximized() && !isFullScreen();
    StoreWindowGeometry((normal ? geometry() : normalGeometry()).marginsAdded(m_frameMargins));
}

void CBTaskMMCDlg::SampleSpeed() {
    const quint32 tick = TickCount();
    if (!m_speedMeter.Due(tick))
        return;
    const NetIoSize bytes = m_console.counters.ZEPHttpGetLastNetIOSize();
    if (const auto texts = m_speedMeter.Add(tick, bytes.sent, bytes.received)) {
        m_statusBar->SetPart(CConsoleStatusBar::Upload, texts->upload);
        m_statusBar->SetPart(CConsoleStatusBar::Download, texts->download);
    }
}

void CBTaskMMCDlg::EditCloudSpace() {
    auto* dialog = new CloudSvcPage(m_console.service, m_console.reader, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::finished, m_notice, &CServiceNotice::Start);
    dialog->open();
}

void CBTaskMMCDlg::EditBandwidth() {
    using Limits = CSetBandWidthLimitDlg::Limits;
    auto* dialog = new CSetBandWidthLimitDlg(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->move(QCursor::pos() - QPoint(0, BandwidthDialogRise));
    const ServiceClient service = m_console.service;
    m_loader.Load(
        Lane::Service,
        [service](std::stop_token stop) {
            return Limits{service.GetIntSetting(UploadBandwidth, 0, stop),
                          service.GetIntSetting(DownloadBandwidth, 0, stop)};
        },
        [dialog = QPointer(dialog)](const Loaded<Limits>& loaded) {
            if (dialog && loaded)
                dialog->SetLimits(*loaded);
        });
    connect(dialog, &QDialog::accepted, this, [this, service, dialog] {
        m_loader.Command(
            Lane::Service,
            [service, wanted = dialog->Wanted()](std::stop_token stop) {
                service.SetIntSetting(UploadBandwidth, wanted.upload, stop);
                service.SetIntSetting(DownloadBandwidth, wanted.download, stop);
                return true;
            },
            [](const Loaded<bool>&) {});
    });
    dialog->open();
}
