#include "app/StartReport.h"

#include "development/WatchedReader.h"

#include <QEvent>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

namespace {

void Tell(const char* what) {
    QTextStream(stdout) << what << Qt::endl;
}

} // namespace

StartReport::StartReport(QWidget& window, const WatchedReader& reader) : m_window(window), m_reader(reader) {
    window.installEventFilter(this);
}

bool StartReport::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Paint && !m_painted) {
        m_painted = true;
        // At the next turn of the event loop the painting is done and flushed.
        QTimer::singleShot(0, this, [this] {
            Tell("painted");
            CloseWhenFilled();
        });
    }
    return false;
}

void StartReport::CloseWhenFilled() {
    if (!m_reader.IsIdle()) {
        QTimer::singleShot(1, this, &StartReport::CloseWhenFilled);
        return;
    }
    m_window.repaint();
    Tell("filled");
    m_window.close();
}
