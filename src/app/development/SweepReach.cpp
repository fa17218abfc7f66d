#include "development/SweepReach.h"

#include "development/SweepLayout.h"
#include "page/BrenPanel.h"
#include "window/BTaskMMCDlg.h"
#include "window/TabOrder.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Head, side actions, page, foot; 0 for the sections, which come first, and in a dialog.
int ZoneOf(const QWidget& widget) {
    constexpr std::pair<const char*, int> Zones[] = {
        {"pageHead", 1}, {"sideActions", 2}, {"pages", 3}, {"statusBar", 4}};
    for (const QWidget* at = &widget; at; at = at->parentWidget()) {
        for (const auto& [name, zone] : Zones) {
            if (at->objectName() == QLatin1String(name))
                return zone;
        }
    }
    return 0;
}

bool TakesTab(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && widget.isEnabled() &&
           !widget.focusProxy() && !widget.size().isEmpty();
}

bool TakesInput(const QWidget& widget) {
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QAbstractSpinBox*>(&widget) ||
           qobject_cast<const QAbstractItemView*>(&widget) || qobject_cast<const QTextEdit*>(&widget);
}

bool IsPartOfAnother(const QWidget& widget) {
    if (widget.objectName().startsWith("qt_"_L1))
        return true;
    for (const QWidget* at = widget.parentWidget(); at && !at->isWindow(); at = at->parentWidget()) {
        if (TakesInput(*at) || qobject_cast<const QTabBar*>(at))
            return true;
    }
    return false;
}

/// Tab stops at one of a group only; arrows go on.
bool IsReachedByArrows(const QWidget& widget) {
    const auto* radio = qobject_cast<const QRadioButton*>(&widget);
    return radio && !radio->isChecked();
}

/// Whether Tab goes back within a line, or up within a column.
bool GoesBack(const QRect& from, const QRect& to) {
    const bool sameLine = from.top() < to.bottom() && to.top() < from.bottom();
    const bool sameColumn = from.left() < to.right() && to.left() < from.right();
    return (sameLine && !sameColumn && to.left() < from.left()) ||
           (sameColumn && !sameLine && to.top() < from.top());
}

/// What is scrolled out of sight stands at the edge of its area, to a widget that is outside of that.
QRect PlaceBeside(const QWidget& other, const QWidget& widget, const QWidget& window) {
    QRect place(widget.mapTo(&window, QPoint()), widget.size());
    for (const QWidget* at = widget.parentWidget(); at && at != &window && !at->isAncestorOf(&other);
         at = at->parentWidget()) {
        const QRect room(at->mapTo(&window, QPoint()), at->size());
        if (at->objectName() == "qt_scrollarea_viewport"_L1)
            place.moveTop(std::clamp(place.top(), room.top(), std::max(room.top(), room.bottom())));
    }
    return place;
}

void Add(std::vector<SweepFind>& finds, SweepRule rule, const QWidget& widget, const QString& why) {
    finds.push_back({rule, PathOf(widget), why});
}

QString WrongRole(const QWidget& widget, QAccessibleInterface& accessible) {
    const QAccessible::Role role = accessible.role();
    for (const QAccessible::Role none : {QAccessible::NoRole, QAccessible::Client, QAccessible::Pane,
                                         QAccessible::Grouping, QAccessible::Whitespace}) {
        if (role == none)
            return u"its role says nothing"_s;
    }
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    QAccessibleActionInterface* actions = accessible.actionInterface();
    if (button && (!actions || actions->actionNames().isEmpty()))
        return u"a button that cannot be pressed"_s;
    return {};
}

/// Tab goes round, and Qt does not say where it begins.
void StartAtTop(const QWidget& window, std::vector<QWidget*>& chain) {
    const auto place = [&window](const QWidget* widget) { return widget->mapTo(&window, QPoint()); };
    const auto top = std::min_element(chain.begin(), chain.end(), [&](const QWidget* a, const QWidget* b) {
        return std::pair(place(a).y(), place(a).x()) < std::pair(place(b).y(), place(b).x());
    });
    if (qobject_cast<const QDialog*>(&window))
        std::rotate(chain.begin(), top, chain.end());
}

} // namespace

std::vector<QWidget*> TabChain(QWidget& window) {
    std::vector<QWidget*> all;
    if (const auto* main = qobject_cast<const CBTaskMMCDlg*>(&window))
        all = TabStops(main->TabAreas());
    else
        for (QWidget* at = window.nextInFocusChain(); at && at != &window; at = at->nextInFocusChain())
            all.push_back(at);
    std::vector<QWidget*> chain;
    for (QWidget* at : all) {
        if (at->window() == &window && at->isVisibleTo(&window) && TakesTab(*at) && !IsPartOfAnother(*at) &&
            !IsReachedByArrows(*at))
            chain.push_back(at);
    }
    StartAtTop(window, chain);
    return chain;
}

void FindTabJumps(QWidget& window, std::vector<SweepFind>& finds) {
    const QWidget* last = nullptr;
    for (const QWidget* control : TabChain(window)) {
        if (last) {
            const QRect place = PlaceBeside(*last, *control, window);
            const QRect before = PlaceBeside(*control, *last, window);
            const int zone = ZoneOf(*control);
            const int zoneBefore = ZoneOf(*last);
            if (zone < zoneBefore)
                Add(finds, SweepRule::TabOrder, *control,
                    u"comes after another part of the window: "_s + PathOf(*last));
            else if (zone == zoneBefore && GoesBack(before, place))
                Add(finds, SweepRule::TabOrder, *control, u"Tab goes back from "_s + PathOf(*last));
        }
        last = control;
    }
}

void FindUnreached(QWidget& window, std::vector<SweepFind>& finds) {
    for (const QWidget* widget : VisibleWidgets(window)) {
        if (TakesInput(*widget) && widget->isEnabled() && !TakesTab(*widget) && !widget->focusProxy() &&
            !IsPartOfAnother(*widget) && !IsReachedByArrows(*widget))
            Add(finds, SweepRule::Reach, *widget, u"Tab does not reach it"_s);
    }
}

void FindNameless(QWidget& window, std::vector<SweepFind>& finds) {
    for (QWidget* control : TabChain(window)) {
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
        if (!accessible || accessible->text(QAccessible::Name).trimmed().isEmpty()) {
            Add(finds, SweepRule::Name, *control, u"has no accessible name"_s);
            continue;
        }
        if (Qt::mightBeRichText(accessible->text(QAccessible::Name)))
            Add(finds, SweepRule::Name, *control, u"its accessible name holds markup"_s);
        if (Qt::mightBeRichText(accessible->text(QAccessible::Description)))
            Add(finds, SweepRule::Name, *control, u"its accessible description holds markup"_s);
        const QString wrong = WrongRole(*control, *accessible);
        if (!wrong.isEmpty())
            Add(finds, SweepRule::Name, *control, wrong);
    }
}

void FindDefaultless(QWidget& window, std::vector<SweepFind>& finds) {
    if (!qobject_cast<QDialog*>(&window))
        return;
    const QList<QPushButton*> buttons = window.findChildren<QPushButton*>();
    const auto isShown = [](const QPushButton* button) { return button->isVisible(); };
    if (std::none_of(buttons.begin(), buttons.end(), isShown))
        return;
    const auto first = std::find_if(buttons.begin(), buttons.end(), [](const QPushButton* button) {
        return button->isVisible() && button->isDefault();
    });
    if (first == buttons.end())
        Add(finds, SweepRule::Default, window, u"no default button"_s);
    else if (!(*first)->isEnabled())
        Add(finds, SweepRule::Default, **first, u"the default button is disabled"_s);
}
