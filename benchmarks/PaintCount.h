#pragma once

#include "development/WatchedReader.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QWidget>

#include <stdexcept>
#include <utility>

/// Counts the paint events of a widget and of all below it.
class PaintCount : public QObject {
public:
    explicit PaintCount(QWidget& widget) : m_widget(widget) { qApp->installEventFilter(this); }

    int Take() { return std::exchange(m_count, 0); }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->isWidgetType() &&
            (watched == &m_widget || m_widget.isAncestorOf(static_cast<QWidget*>(watched))))
            ++m_count;
        return false;
    }

    QWidget& m_widget;
    int m_count = 0;
};

/// Handles events until all that was asked of the lanes is shown.
inline void RunUntilIdle(const WatchedReader& reader) {
    QElapsedTimer clock;
    clock.start();
    while (!reader.IsIdle()) {
        if (clock.hasExpired(60'000))
            throw std::runtime_error("the list was never read");
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    QApplication::processEvents();
    QApplication::sendPostedEvents();
    QApplication::processEvents();
}
