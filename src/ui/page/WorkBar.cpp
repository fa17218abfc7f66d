#include "page/WorkBar.h"

#include "lanes/ProgressNote.h"

#include <algorithm>

namespace {

constexpr int Steps = 1000;

} // namespace

WorkBar::WorkBar(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    setRange(0, 0);
}

void WorkBar::SetProgress(const Progress& progress) {
    if (progress.total <= 0) {
        setRange(0, 0);
        return;
    }
    const double share = std::clamp(double(progress.done) / double(progress.total), 0.0, 1.0);
    setRange(0, Steps);
    setValue(int(share * Steps));
}
