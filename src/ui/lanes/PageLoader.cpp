#include "lanes/PageLoader.h"

#include <QEvent>

#include "zep/TracePrintf.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

PageLoader::PageLoader(Reader& reader, QWidget& page)
    : m_reader(reader), m_page(&page), m_state(std::make_shared<State>()) {
    m_state->loader = this;
    m_timer.setSingleShot(true);
    page.installEventFilter(this);
    connect(&m_timer, &QTimer::timeout, this, &PageLoader::Refresh);
}

PageLoader::~PageLoader() {
    m_state->loader = nullptr;
    Cancel();
}

void PageLoader::StartTimer(std::chrono::milliseconds period, std::function<void()> refresh,
                            std::optional<std::chrono::milliseconds> first) {
    m_period = period;
    m_refresh = std::move(refresh);
    m_first = first;
    if (!IsReading())
        m_timer.start(std::exchange(m_first, std::nullopt).value_or(period));
}

void PageLoader::BeginRead() {
    Cancel();
    m_timer.stop();
    m_read = std::stop_source();
    ++m_state->reads;
}

void PageLoader::EndRead(const State& state) {
    if (state.loader)
        state.loader->RestartTimer();
}

void PageLoader::Rest() {
    StopTimer();
    Cancel();
}

bool PageLoader::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide && !event->spontaneous())
        Rest();
    return QObject::eventFilter(watched, event);
}

void PageLoader::StopTimer() {
    m_timer.stop();
    m_refresh = nullptr;
}

QString PageLoader::NoteThrown(State& state, const QString& what) {
    QString before;
    {
        const std::lock_guard lock(state.mutex);
        before = std::exchange(state.traced, what);
    }
    if (what.isEmpty())
        return QCoreApplication::translate("PageLoader", "The data could not be read.");
    if (before != what)
        TracePrintf(TraceLevel::Error, u"[PageLoader]A read ended early: "_s + what);
    return QCoreApplication::translate("PageLoader", "The data could not be read: %1").arg(what);
}

std::function<ReadPriority()> PageLoader::PriorityOf(ReadPriority wanted) const {
    if (wanted == ReadPriority::Command)
        return [] { return ReadPriority::Command; };
    return [page = m_page] { return page && page->isVisible() ? ReadPriority::Front : ReadPriority::Hidden; };
}

void PageLoader::Refresh() {
    if (!IsInFront())
        return;
    const auto refresh = m_refresh;
    refresh();
    RestartTimer();
}

void PageLoader::RestartTimer() {
    if (m_refresh && !IsReading() && IsInFront())
        m_timer.start(std::exchange(m_first, std::nullopt).value_or(m_period));
}
