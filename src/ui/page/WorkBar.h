#pragma once

#include <QProgressBar>
#include <QTimer>

struct Progress;

/// A bar without words for work whose counts may be beyond 32 bits, and whose end may not be known.
class WorkBar : public QProgressBar {
    Q_OBJECT

public:
    explicit WorkBar(QWidget* parent = nullptr);

    void SetProgress(const Progress& progress);

    QSize minimumSizeHint() const override { return sizeHint(); } ///< the toolkit's has room for words

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Wander();

    QTimer m_wander; ///< moves a bar whose end is not known, as long as it is seen
};
