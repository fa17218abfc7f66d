#include "page/WorkBar.h"

#include "lanes/ProgressNote.h"

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr int Steps = 1000;
constexpr auto WanderPeriod = 40ms;

} // namespace

WorkBar::WorkBar(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    setRange(0, 0);
    connect(&m_wander, &QTimer::timeout, this, qOverload<>(&WorkBar::update));
}

void WorkBar::SetProgress(const Progress& progress) {
    if (progress.total <= 0) {
        setRange(0, 0);
        Wander();
        return;
    }
    const double share = std::clamp(double(progress.done) / double(progress.total), 0.0, 1.0);
    setRange(0, Steps);
    setValue(int(share * Steps));
    Wander();
}

void WorkBar::Wander() {
    const bool wanders = isVisible() && maximum() == 0;
    if (wanders && !m_wander.isActive())
        m_wander.start(WanderPeriod);
    else if (!wanders)
        m_wander.stop();
}

void WorkBar::showEvent(QShowEvent* event) {
    QProgressBar::showEvent(event);
    Wander();
}

void WorkBar::hideEvent(QHideEvent* event) {
    QProgressBar::hideEvent(event);
    Wander();
}
