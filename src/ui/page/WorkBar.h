#pragma once

#include <QProgressBar>

struct Progress;

/// A bar without words for work whose counts may be beyond 32 bits, and whose end may not be known.
class WorkBar : public QProgressBar {
    Q_OBJECT

public:
    explicit WorkBar(QWidget* parent = nullptr);

    void SetProgress(const Progress& progress);
};
