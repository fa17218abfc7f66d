#include "development/Tour.h"

#include "development/WatchedReader.h"
#include "window/BTaskMMCDlg.h"

#include <QDir>
#include <QPixmap>
#include <QTextStream>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::milliseconds StepPeriod{50};

} // namespace

Tour::Tour(CBTaskMMCDlg& window, WatchedReader& reader, std::vector<DialogEntry> dialogs,
           const QString& folder)
    : m_window(window), m_reader(reader), m_walk(window, std::move(dialogs)), m_folder(folder) {
    QDir().mkpath(folder);
    QObject::connect(&m_timer, &QTimer::timeout, &m_window, [this] { Step(); });
    m_timer.start(StepPeriod);
}

void Tour::Step() {
    if (!m_reader.IsQuiet())
        return;
    TakePicture();
    if (m_walk.Next())
        return;
    m_timer.stop();
    m_window.close();
}

void Tour::TakePicture() {
    const QString path = QDir(m_folder).filePath(m_walk.Name() + u".png"_s);
    QTextStream out(stdout);
    if (m_walk.Front().grab().save(path))
        out << path << Qt::endl;
    else
        out << "Not written: " << path << Qt::endl;
}
