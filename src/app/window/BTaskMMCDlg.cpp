#include "window/BTaskMMCDlg.h"

#include "page/BrenDialog.h"
#include "page/BrenPanel.h"
#include "page/NoticeLine.h"
#include "platform/Folders.h"
#include "service/ServiceClient.h"
#include "window/ConsoleStatusBar.h"
#include "window/NavigationColumn.h"
#include "window/PageHead.h"
#include "window/ServiceNotice.h"
#include "window/TabOrder.h"
#include "window/WindowGeometry.h"
#include "zep/LiveCounters.h"
#include "zep/Mui.h"
#include "zep/Xml.h"

#include <QCloseEvent>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QWindow>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize DefaultSize(986, 678);
constexpr QSize SmallestSize(800, 480);
constexpr QSize SmallestPage(424, 280); ///< a smaller one scrolls
constexpr std::chrono::milliseconds SpeedPeriod{1000};

quint32 TickCount() {
    return static_cast<quint32>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                    std::chrono::steady_clock::now().time_since_epoch())
                                    .count());
}

QScrollArea* MakeScrolling(QWidget* content) {
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->setWidget(content);
    return area;
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
    return file->NodeByPath(u"ZEPSysMainCtrl/properties"_s).Attribute(u"version"_s).value_or(QString());
}

CBTaskMMCDlg::CBTaskMMCDlg(ServiceClient& service, LiveCounters& counters, UserPrompts& prompts,
                           Reader& reader, const Options& options)
    : m_console{service, counters, prompts, reader, *this, m_settingNews, m_links}, m_sections(options.pages),
      m_pages(m_sections.size()), m_navigation(new NavigationColumn(options.title)), m_head(new PageHead),
      m_notice(new ServiceNotice(reader, service, *this)), m_pageNotice(new NoticeLine),
      m_stack(new QStackedWidget), m_statusBar(new ConsoleStatusBar) {
    setWindowTitle(options.title);
    BuildWindow();
    m_stack->setObjectName(u"pages"_s);
    connect(m_statusBar, &ConsoleStatusBar::CloudSpaceClicked, this,
            [this, make = options.cloudSpace] { OpenDialog(make); });
    connect(m_statusBar, &ConsoleStatusBar::BandwidthClicked, this,
            [this, make = options.bandwidth] { OpenDialog(make); });
    if (!options.version.isEmpty())
        m_statusBar->SetPart(ConsoleStatusBar::Version, tr("Version: ") + options.version);
    RestoreGeometry();
    SelectInitialSection(options);

    connect(&m_speedTimer, &QTimer::timeout, this, &CBTaskMMCDlg::SampleSpeed);
    m_speedTimer.start(SpeedPeriod);
    m_statusBar->SetPart(ConsoleStatusBar::CloudSpace, tr("Not In Cloud Space"));
    m_notice->Start();
}

CBTaskMMCDlg::~CBTaskMMCDlg() {
    // The pages reach for the frame while they go, so they go before it does.
    delete m_stack;
}

void CBTaskMMCDlg::BuildWindow() {
    for (const PageEntry& section : m_sections)
        m_navigation->AddSection(section.title, section.icon);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(0);
    QScrollArea* navigation = MakeScrolling(m_navigation);
    navigation->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    navigation->setFixedWidth(NavigationColumn::Width);
    columns->addWidget(navigation);
    columns->addWidget(MakeScrolling(MakePageArea()), 1);
    auto* window = new QVBoxLayout(this);
    window->setContentsMargins(0, 0, 0, 0);
    window->setSpacing(0);
    window->addLayout(columns, 1);
    window->addWidget(m_statusBar);

    connect(m_head, &PageHead::FindClicked, this, &CBTaskMMCDlg::Find);
    connect(m_navigation, &NavigationColumn::SectionChosen, this, &CBTaskMMCDlg::ShowSection);
    connect(m_notice, &ServiceNotice::Published, m_statusBar, [this](bool inCloudSpace) {
        m_statusBar->SetPart(ConsoleStatusBar::CloudSpace,
                             inCloudSpace ? tr("In Cloud Space") : tr("Not In Cloud Space"));
    });
    connect(m_notice, &ServiceNotice::ServiceReturned, this, [this] {
        if (CBrenPanel* page = CurrentPage())
            page->PostReload();
    });
}

QWidget* CBTaskMMCDlg::MakePageArea() {
    auto* area = new QWidget;
    auto* column = new QVBoxLayout(area);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addStrut(SmallestPage.width());
    column->addWidget(m_head);
    column->addWidget(m_stack, 1);
    m_head->LayOverStatus(m_notice);
    m_head->LayOverStatus(m_pageNotice); // on top: it says what the page's own reads and commands met
    m_stack->setMinimumHeight(SmallestPage.height());
    return area;
}

CBrenPanel* CBTaskMMCDlg::PageOf(int section) {
    CBrenPanel*& page = m_pages.at(static_cast<size_t>(section));
    if (!page) {
        page = m_sections.at(static_cast<size_t>(section)).make(m_console);
        page->setAccessibleName(SectionTitle(section));
        page->EnsureCreated(); // while it is hidden, so that it shows all of it at once
        m_stack->addWidget(page);
    }
    return page;
}

void CBTaskMMCDlg::SelectInitialSection(const Options& options) {
    const qint64 wanted = qint64(options.initialView) + 1;
    if (options.initialView != 0 && wanted >= 0 && wanted < SectionCount()) {
        m_navigation->SelectSection(static_cast<int>(wanted));
        return;
    }
    const auto named = std::find_if(m_sections.begin(), m_sections.end(), [&](const PageEntry& section) {
        return section.title == options.firstSection;
    });
    m_navigation->SelectSection(named == m_sections.end() ? 0 : static_cast<int>(named - m_sections.begin()));
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
    CBrenPanel* page = PageOf(index);
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

void CBTaskMMCDlg::SetNotice(const QString& text) {
    m_pageNotice->SetText(text);
}

void CBTaskMMCDlg::SetToolbar(QWidget& owner, const std::vector<FrameAction>& actions) {
    m_head->SetActions(owner, actions);
    // A page that sets its toolbar has turned to what may have words to find.
    QMetaObject::invokeMethod(this, &CBTaskMMCDlg::OfferFind, Qt::QueuedConnection);
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

void CBTaskMMCDlg::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Find))
        Find();
    else
        QWidget::keyPressEvent(event);
}

void CBTaskMMCDlg::OfferFind() {
    m_head->OfferFind(CurrentPage() && CurrentPage()->CanFind());
}

void CBTaskMMCDlg::Find() {
    if (CurrentPage() && CurrentPage()->CanFind())
        CurrentPage()->OpenFind();
}

std::vector<QWidget*> CBTaskMMCDlg::TabAreas() const {
    return {m_navigation->Sections(), m_head, m_navigation->Actions(), m_stack, m_statusBar};
}

bool CBTaskMMCDlg::focusNextPrevChild(bool next) {
    QWidget* to = NextByTab(TabAreas(), focusWidget(), next);
    if (!to)
        return false;
    to->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    for (QWidget* around = to->parentWidget(); around; around = around->parentWidget())
        if (auto* scrolling = qobject_cast<QScrollArea*>(around))
            scrolling->ensureWidgetVisible(to);
    return true;
}

/// The window wants no more than the screen has; what does not fit scrolls.
void CBTaskMMCDlg::FitIntoScreen() {
    const QSize room = screen()->availableGeometry().marginsRemoved(m_frameMargins).size();
    setMinimumSize(SmallestSize.boundedTo(room));
    resize(size().boundedTo(room));
}

void CBTaskMMCDlg::RestoreGeometry() {
    resize(DefaultSize);
    create();
    m_frameMargins = windowHandle()->frameMargins();
    FitIntoScreen();
    connect(windowHandle(), &QWindow::screenChanged, this, &CBTaskMMCDlg::FitIntoScreen);
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
        m_statusBar->SetPart(ConsoleStatusBar::Upload, texts->upload);
        m_statusBar->SetPart(ConsoleStatusBar::Download, texts->download);
    }
}

void CBTaskMMCDlg::OpenDialog(const DialogMaker& make) {
    if (!make)
        return;
    CBrenDialog* dialog = make(m_console, this);
    connect(dialog, &QDialog::finished, m_notice, &ServiceNotice::Start);
    dialog->Open(m_settingNews);
}
