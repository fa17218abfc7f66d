#include "development/Tour.h"

#include "cards/ExpandableItem.h"
#include "cards/ExpandableItemList.h"
#include "page/TabPanel.h"
#include "window/BTaskMMCDlg.h"

#include <QCheckBox>
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
    if (ShowNextView(m_window.CurrentPage()))
        return;
    if (++m_section < m_window.SectionCount()) {
        m_window.SelectSection(m_section);
        return;
    }
    m_timer.stop();
    m_window.close();
}

bool Tour::ShowNextView(CBrenPanel* page) {
    if (auto* tabs = qobject_cast<CTabPanel*>(page))
        return ShowNextTab(*tabs);
    auto* cards = qobject_cast<CExpandableItemList*>(page);
    if (!cards || cards->CardCount() == 0)
        return false;
    if (!m_opened.contains(cards)) {
        m_opened.insert(cards);
        cards->ToggleCard(*cards->CardAt(0));
        return true;
    }
    CExpandableItem* card = cards->ExpandedCard();
    if (card && ShowNextView(card->findChild<CTabPanel*>()))
        return true;
    cards->ShowAll();
    return false;
}

bool Tour::ShowNextTab(CTabPanel& tabs) {
    if (ShowNextView(tabs.CurrentPage()))
        return true;
    auto* more = tabs.findChild<QCheckBox*>(QString(), Qt::FindDirectChildrenOnly);
    const int next = tabs.CurrentIndex() + 1;
    if (next < tabs.PageCount() && !tabs.IsTabShown(next) && more && !more->isChecked())
        more->click();
    if (next >= tabs.PageCount() || !tabs.IsTabShown(next))
        return false;
    tabs.SelectPage(next);
    return true;
}

QString Tour::ViewName() const {
    QStringList names{m_window.SectionTitle(m_section)};
    CBrenPanel* page = m_window.CurrentPage();
    while (page) {
        CBrenPanel* inner = nullptr;
        if (auto* tabs = qobject_cast<CTabPanel*>(page)) {
            inner = tabs->CurrentPage();
            if (inner && tabs->CurrentIndex() > 0)
                names.append(inner->accessibleName());
        } else if (auto* cards = qobject_cast<CExpandableItemList*>(page); cards && cards->ExpandedCard()) {
            inner = cards->ExpandedCard()->findChild<CBrenPanel*>();
            names.append(QStringLiteral("card"));
        }
        page = inner;
    }
    return names.join(u'-').toLower().replace(u' ', u'-');
}

void Tour::TakePicture() {
    const QString path = QDir(m_folder).filePath(ViewName() + QStringLiteral(".png"));
    QTextStream out(stdout);
    if (m_window.grab().save(path))
        out << path << Qt::endl;
    else
        out << "Not written: " << path << Qt::endl;
}
