#include "development/SweepLayout.h"

#include "development/SweepInk.h"
#include "list/HeaderCtrlCl.h"
#include "page/BrenPanel.h"
#include "wizard/WizardSteps.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QSizeGrip>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What a label or a field may be short of before anything is cut, in pixels.
constexpr int Slack = 1;

QString OwnName(const QWidget& widget) {
    QString name = QString::fromLatin1(widget.metaObject()->className());
    QString text = widget.accessibleName();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget); button && text.isEmpty())
        text = button->text();
    if (const auto* label = qobject_cast<const QLabel*>(&widget); label && text.isEmpty())
        text = label->text().left(40);
    if (text.isEmpty())
        text = widget.objectName();
    return text.isEmpty() ? name : name + u" '%1'"_s.arg(text.simplified());
}

void Add(std::vector<SweepFind>& finds, SweepRule rule, const QWidget& widget, const QString& why) {
    finds.push_back({rule, PathOf(widget), why});
}

QString CutLabel(const QLabel& label) {
    if (label.text().isEmpty() || label.text().isNull())
        return {};
    const QSize room = label.size();
    if (label.wordWrap()) {
        const int wanted = label.heightForWidth(room.width());
        return wanted > room.height() + Slack
                   ? u"wants %1 lines of pixels, has %2"_s.arg(wanted).arg(room.height())
                   : QString();
    }
    const int wanted = label.sizeHint().width();
    return wanted > room.width() + Slack ? u"wants a width of %1, has %2"_s.arg(wanted).arg(room.width())
                                         : QString();
}

QString CutButton(const QAbstractButton& button) {
    const int wanted = button.text().isEmpty() ? 0 : button.sizeHint().width();
    return wanted > button.width() + Slack && button.toolTip().isEmpty()
               ? u"wants a width of %1, has %2"_s.arg(wanted).arg(button.width())
               : QString();
}

QString CutChoice(const QComboBox& combo) {
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    option.editable = combo.isEditable();
    const int room = combo.style()
                         ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo)
                         .width();
    const int wanted = combo.fontMetrics().horizontalAdvance(combo.currentText());
    return wanted > room + Slack ? u"wants a width of %1, has %2"_s.arg(wanted).arg(room) : QString();
}

QString CutTab(const QTabBar& bar) {
    for (int tab = 0; tab < bar.count(); ++tab) {
        const int wanted = bar.fontMetrics().horizontalAdvance(bar.tabText(tab));
        if (bar.isTabVisible(tab) && wanted > bar.tabRect(tab).width() && bar.tabToolTip(tab).isEmpty())
            return u"the tab \"%1\" is cut"_s.arg(bar.tabText(tab));
    }
    return {};
}

QString CutColumn(const QHeaderView& header) {
    if (header.orientation() != Qt::Horizontal || !header.model())
        return {};
    for (int column = 0; column < header.count(); ++column) {
        const QString title = header.model()->headerData(column, Qt::Horizontal).toString();
        const auto* own = qobject_cast<const CHeaderCtrlCl*>(&header);
        const int wanted =
            own ? own->WrappedTitleWidth(column) : header.fontMetrics().horizontalAdvance(title);
        if (!header.isSectionHidden(column) && !title.isEmpty() && wanted > header.sectionSize(column))
            return u"the column title \"%1\" is cut"_s.arg(title);
    }
    return {};
}

QString CutText(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return CutLabel(*label);
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return CutButton(*button);
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget))
        return CutChoice(*combo);
    if (const auto* bar = qobject_cast<const QTabBar*>(&widget))
        return CutTab(*bar);
    if (const auto* header = qobject_cast<const QHeaderView*>(&widget))
        return CutColumn(*header);
    if (const auto* steps = qobject_cast<const WizardSteps*>(&widget); steps && !steps->CutText().isEmpty())
        return u"the step's text \"%1\" is cut"_s.arg(steps->CutText());
    return {};
}

/// Qt's own parts of a control lie over each other as they like.
bool IsPartOfControl(const QWidget& widget) {
    if (widget.objectName().startsWith("qt_"_L1) || qobject_cast<const QSizeGrip*>(&widget))
        return true;
    const QWidget* parent = widget.parentWidget();
    return qobject_cast<const QAbstractScrollArea*>(parent) || qobject_cast<const QComboBox*>(parent) ||
           qobject_cast<const QTabBar*>(parent) || qobject_cast<const QHeaderView*>(parent) ||
           qobject_cast<const QLineEdit*>(parent) || (parent && parent->inherits("QAbstractSpinBox"));
}

bool IsScrolled(const QWidget& widget) {
    for (const QWidget* at = widget.parentWidget(); at; at = at->parentWidget()) {
        const auto* area = qobject_cast<const QAbstractScrollArea*>(at->parentWidget());
        if (area && area->viewport() == at)
            return true;
    }
    return false;
}

void FindStickingOut(const QWidget& widget, std::vector<SweepFind>& finds) {
    const QWidget* parent = widget.parentWidget();
    if (widget.isWindow()) {
        const QRect screen = widget.screen()->availableGeometry();
        if (widget.width() > screen.width() || widget.height() > screen.height())
            Add(finds, SweepRule::Overlap, widget, u"larger than the screen"_s);
    } else if (parent && !IsScrolled(widget) && !parent->rect().contains(widget.geometry()) &&
               !widget.size().isEmpty()) {
        const QRect at = widget.geometry();
        Add(finds, SweepRule::Overlap, widget,
            u"sticks out of its parent: %1,%2 %3x%4 in %5x%6"_s.arg(at.x())
                .arg(at.y())
                .arg(at.width())
                .arg(at.height())
                .arg(parent->width())
                .arg(parent->height()));
    }
}

void FindOverlapsOf(const QWidget& widget, const std::vector<QWidget*>& all, std::vector<SweepFind>& finds) {
    for (const QWidget* other : all) {
        if (other == &widget)
            return; // each pair once
        if (other->parentWidget() != widget.parentWidget() || other->isWindow() || widget.isWindow() ||
            IsPartOfControl(*other))
            continue;
        const QRect common = widget.geometry().intersected(other->geometry());
        if (common.width() > 1 && common.height() > 1)
            Add(finds, SweepRule::Overlap, widget,
                u"lies over %1 by %2x%3"_s.arg(OwnName(*other)).arg(common.width()).arg(common.height()));
    }
}

} // namespace

QString PathOf(const QWidget& widget) {
    QStringList names;
    for (const QWidget* at = &widget; at; at = at->isWindow() ? nullptr : at->parentWidget())
        names.prepend(OwnName(*at));
    return names.join(u'/');
}

std::vector<QWidget*> VisibleWidgets(QWidget& window) {
    std::vector<QWidget*> visible{&window};
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisibleTo(&window) && widget->window() == &window)
            visible.push_back(widget);
    }
    return visible;
}

void FindCutTexts(QWidget& window, std::vector<SweepFind>& finds) {
    for (const QWidget* widget : VisibleWidgets(window)) {
        const QString why = CutText(*widget);
        if (!why.isEmpty())
            Add(finds, SweepRule::Fit, *widget, why);
    }
}

void FindOverlaps(QWidget& window, std::vector<SweepFind>& finds) {
    const std::vector<QWidget*> all = VisibleWidgets(window);
    for (const QWidget* widget : all) {
        if (IsPartOfControl(*widget))
            continue;
        FindStickingOut(*widget, finds);
        FindOverlapsOf(*widget, all, finds);
    }
}

void FindWordless(QWidget& window, std::vector<SweepFind>& finds) {
    for (QWidget* widget : VisibleWidgets(window)) {
        if (auto* view = qobject_cast<QAbstractItemView*>(widget); view && view->viewport()->height() > 40) {
            if (CountInk(view->viewport()->grab().toImage()) == 0)
                Add(finds, SweepRule::Words, *view, u"neither rows nor a word"_s);
        } else if (const auto* panel = qobject_cast<CBrenPanel*>(widget);
                   panel && panel->IsActive() && CountInk(widget->grab().toImage()) == 0) {
            Add(finds, SweepRule::Words, *panel, u"an empty page"_s);
        }
    }
}
