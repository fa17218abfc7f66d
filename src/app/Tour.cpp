#include "app/Tour.h"

#include "app/BTaskMMCDlg.h"
#include "ui/ExpandableItemList.h"
#include "ui/TabPanel.h"

#include <QDir>
#include <QPixmap>
#include <QTextStream>

namespace {

constexpr std::chrono::milliseconds StepPeriod{100};
/// A page may read again what its first read told it of, so it counts as filled after some quiet steps.
constexpr int QuietStepsWanted = 4;

} // namespace

void IdleWatch::Submit(Job job) {
    ++*m_pending;
    job.done = [pending = m_pending, done = std::move(job.done)] {
        done();
        --*pending;
    };
    m_reader.Submit(std::move(job));
}

Tour::Tour(CBTaskMMCDlg& window, const IdleWatch& reader, const QString& folder)
    : m_window(window), m_reader(reader), m_folder(folder) {
    QDir().mkpath(folder);
    m_window.SelectSection(m_section);
    QObject::connect(&m_timer, &QTimer::timeout, &m_window, [this] { Step(); });
    m_timer.start(StepPeriod);
}

void Tour::Step() {
    m_quietSteps = m_reader.IsIdle() ? m_quietSteps + 1 : 0;
    if (m_quietSteps < QuietStepsWanted)
        return;
    TakePicture();
    m_quietSteps = 0;
    if (ShowNextView())
        return;
    m_view = 0;
    if (++m_section < m_window.SectionCount()) {
        m_window.SelectSection(m_section);
        return;
    }
    m_timer.stop();
    m_window.close();
}

bool Tour::ShowNextView() {
    ++m_view;
    CBrenPanel* page = m_window.CurrentPage();
    if (auto* tabs = qobject_cast<CTabPanel*>(page)) {
        if (m_view >= tabs->PageCount() || !tabs->IsTabShown(m_view))
            return false;
        tabs->SelectPage(m_view);
        return true;
    }
    auto* cards = qobject_cast<CExpandableItemList*>(page);
    if (!cards || cards->CardCount() == 0 || m_view > 1)
        return false;
    cards->ToggleCard(*cards->CardAt(0));
    return true;
}

void Tour::TakePicture() {
    QString name = m_window.SectionTitle(m_section).toLower().replace(u' ', u'-');
    if (m_view > 0)
        name += QStringLiteral("-%1").arg(m_view + 1);
    const QString path = QDir(m_folder).filePath(name + QStringLiteral(".png"));
    QTextStream out(stdout);
    if (m_window.grab().save(path))
        out << path << Qt::endl;
    else
        out << "Not written: " << path << Qt::endl;
}
