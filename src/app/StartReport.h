#pragma once

#include <QObject>

class WatchedReader;
class QWidget;

/// Tells the benchmark on standard output when the window has been painted ("painted") and when the first
/// page has shown what it read ("filled"); then closes the window.
class StartReport : public QObject {
    Q_OBJECT

public:
    StartReport(QWidget& window, const WatchedReader& reader);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void CloseWhenFilled();

    QWidget& m_window;
    const WatchedReader& m_reader;
    bool m_painted = false;
};
