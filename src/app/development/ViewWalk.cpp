#include "development/ViewWalk.h"

#include "cards/ExpandableItem.h"
#include "cards/ExpandableItemList.h"
#include "page/TabPanel.h"
#include "window/BTaskMMCDlg.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The box that shows more tabs, alone at the end of their strip or among others there.
QCheckBox* BoxBesideTabs(const CTabPanel& tabs) {
    for (QWidget* part : tabs.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        auto* box = qobject_cast<QCheckBox*>(part);
        if (!box && !qobject_cast<CBrenPanel*>(part))
            box = part->findChild<QCheckBox*>();
        if (box)
            return box;
    }
    return nullptr;
}

} // namespace

ViewWalk::ViewWalk(CBTaskMMCDlg& window, std::vector<DialogEntry> dialogs)
    : m_window(window), m_dialogs(std::move(dialogs)) {
    m_window.SelectSection(m_section);
}

bool ViewWalk::Next() {
    if (m_dialog >= 0)
        return NextDialog();
    if (NextView(m_window.CurrentPage()))
        return true;
    if (++m_section < m_window.SectionCount()) {
        m_window.SelectSection(m_section);
        return true;
    }
    return NextDialog();
}

bool ViewWalk::NextDialog() {
    if (m_open) {
        const DialogEntry& entry = m_dialogs.at(static_cast<std::size_t>(m_dialog));
        if (entry.next && entry.next(*m_open)) {
            ++m_dialogPage;
            return true;
        }
        // Destroyed, not closed: a wizard would ask first.
        delete m_open;
    }
    m_dialogPage = 0;
    while (++m_dialog < static_cast<int>(m_dialogs.size())) {
        m_dialogs.at(static_cast<std::size_t>(m_dialog)).open(m_window);
        m_open = QApplication::activeModalWidget();
        if (m_open)
            return true;
    }
    return false;
}

QWidget& ViewWalk::Front() const {
    return m_open ? *m_open : m_window;
}

bool ViewWalk::NextView(CBrenPanel* page) {
    if (auto* tabs = qobject_cast<CTabPanel*>(page))
        return NextTab(*tabs);
    auto* cards = qobject_cast<CExpandableItemList*>(page);
    if (!cards || cards->CardCount() == 0)
        return false;
    if (!m_opened.contains(cards)) {
        m_opened.insert(cards);
        cards->ToggleCard(*cards->CardAt(0));
        return true;
    }
    CExpandableItem* card = cards->ExpandedCard();
    if (card && NextView(card->findChild<CTabPanel*>()))
        return true;
    cards->ShowAll();
    return false;
}

bool ViewWalk::NextTab(CTabPanel& tabs) {
    if (NextView(tabs.CurrentPage()))
        return true;
    QCheckBox* more = BoxBesideTabs(tabs);
    const int next = tabs.CurrentIndex() + 1;
    if (next < tabs.PageCount() && !tabs.IsTabShown(next) && more && !more->isChecked())
        more->click();
    if (next >= tabs.PageCount() || !tabs.IsTabShown(next))
        return false;
    tabs.SelectPage(next);
    return true;
}

QString ViewWalk::Name() const {
    QStringList names;
    if (m_open) {
        names = {u"dialog"_s, m_dialogs.at(static_cast<std::size_t>(m_dialog)).name};
        if (m_dialogPage > 0)
            names.append(QString::number(m_dialogPage + 1));
    } else {
        names = {m_window.SectionTitle(m_section)};
    }
    CBrenPanel* page = m_open ? nullptr : m_window.CurrentPage();
    while (page) {
        CBrenPanel* inner = nullptr;
        if (auto* tabs = qobject_cast<CTabPanel*>(page)) {
            inner = tabs->CurrentPage();
            if (inner && tabs->CurrentIndex() > 0)
                names.append(inner->accessibleName());
        } else if (auto* cards = qobject_cast<CExpandableItemList*>(page); cards && cards->ExpandedCard()) {
            inner = cards->ExpandedCard()->findChild<CBrenPanel*>();
            names.append(u"card"_s);
        }
        page = inner;
    }
    return names.join(u'-').toLower().replace(u' ', u'-');
}
