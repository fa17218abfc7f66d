#pragma once

#include <QEvent>
#include <QPaintEvent>
#include <QWidget>

/// Notes what is repainted of the widget that it watches.
class PaintNote : public QObject {
public:
    explicit PaintNote(QWidget& watched) { watched.installEventFilter(this); }
    const QRegion& Painted() const { return m_painted; }
    QRegion Take() { return std::exchange(m_painted, QRegion()); }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            m_painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QRegion m_painted;
};
