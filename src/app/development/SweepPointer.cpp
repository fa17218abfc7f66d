#include "development/SweepPointer.h"

#include "development/SweepInk.h"
#include "development/SweepLayout.h"
#include "development/SweepReach.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollArea>
#include <QTabBar>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A region that has ink of its own, in the window's coordinates.
struct Spot {
    const QWidget* widget = nullptr;
    QString name; ///< of the row in its list; empty for a whole control
    QRect place;
    int ink = 0;
};

QRect PlaceIn(const QWidget& window, const QWidget& widget, const QRect& rect) {
    QRect place(widget.mapTo(&window, rect.topLeft()), rect.size());
    for (const QWidget* at = &widget; at && at != &window; at = at->parentWidget())
        place &= QRect(at->mapTo(&window, QPoint()), at->size());
    return place;
}

QImage CutOut(const QImage& picture, const QRect& place) {
    const qreal ratio = picture.devicePixelRatio();
    return picture.copy(QRectF(place.topLeft() * ratio, QSizeF(place.size()) * ratio).toRect());
}

void AddRows(const QWidget& window, const QAbstractItemView& view, std::vector<Spot>& spots) {
    const QAbstractItemModel* model = view.model();
    const int rows = model ? std::min(model->rowCount(), 40) : 0;
    for (int row = 0; row < rows; ++row) {
        QRect rect;
        for (int column = 0; column < model->columnCount(); ++column)
            rect |= view.visualRect(model->index(row, column));
        const QRect place = PlaceIn(window, *view.viewport(), rect);
        if (!place.isEmpty())
            spots.push_back({&view, u"row %1"_s.arg(row), place, 0});
    }
}

bool IsControl(const QWidget& widget) {
    return qobject_cast<const QLabel*>(&widget) || qobject_cast<const QAbstractButton*>(&widget) ||
           qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QComboBox*>(&widget) ||
           qobject_cast<const QTabBar*>(&widget) || widget.focusPolicy() != Qt::NoFocus;
}

std::vector<Spot> SpotsOf(QWidget& window, const QImage& picture) {
    std::vector<Spot> spots;
    for (const QWidget* widget : VisibleWidgets(window)) {
        if (const auto* view = qobject_cast<const QAbstractItemView*>(widget))
            AddRows(window, *view, spots);
        else if (IsControl(*widget) && widget->findChildren<QWidget*>().size() < 3)
            spots.push_back({widget, {}, PlaceIn(window, *widget, widget->rect()), 0});
    }
    for (Spot& spot : spots)
        spot.ink = spot.place.isEmpty() ? 0 : CountInk(CutOut(picture, spot.place));
    return spots;
}

QWidget* Target(const Spot& spot) {
    const auto* view = qobject_cast<const QAbstractItemView*>(spot.widget);
    return view && !spot.name.isEmpty() ? view->viewport() : const_cast<QWidget*>(spot.widget);
}

/// As the window system would when the pointer comes to rest there, or leaves.
void MovePointer(QWidget& window, const Spot& spot, bool over) {
    QWidget& target = *Target(spot);
    const QPointF local(target.mapFrom(&window, spot.place.center()));
    const QPointF global(target.mapToGlobal(local));
    target.setAttribute(Qt::WA_UnderMouse, over);
    if (over) {
        QEnterEvent enter(local, local, global);
        QCoreApplication::sendEvent(&target, &enter);
        QHoverEvent hover(QEvent::HoverEnter, local, global, QPointF(-1, -1));
        QCoreApplication::sendEvent(&target, &hover);
        QHoverEvent moved(QEvent::HoverMove, local, global, local - QPointF(1, 1));
        QCoreApplication::sendEvent(&target, &moved);
        QMouseEvent move(QEvent::MouseMove, local, global, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &move);
    } else {
        QHoverEvent hover(QEvent::HoverLeave, QPointF(-1, -1), global, local);
        QCoreApplication::sendEvent(&target, &hover);
        QEvent leave(QEvent::Leave);
        for (QWidget* left = &target; left != &window; left = left->parentWidget())
            QCoreApplication::sendEvent(left, &leave);
    }
}

QString NameOf(const Spot& spot) {
    return spot.name.isEmpty() ? PathOf(*spot.widget) : PathOf(*spot.widget) + u' ' + spot.name;
}

/// Tells the first of the spots that have lost more than half of their ink, and how many more have.
void TellLost(const std::vector<Spot>& spots, const QImage& before, const QImage& after, const QString& doing,
              std::vector<SweepFind>& finds) {
    constexpr int LeastInk = 12;
    const auto isLost = [&](const Spot& spot) {
        if (spot.ink < LeastInk)
            return false;
        const QImage now = CutOut(after, spot.place);
        return now != CutOut(before, spot.place) && CountInk(now) * 2 < spot.ink;
    };
    const auto first = std::find_if(spots.begin(), spots.end(), isLost);
    if (first == spots.end())
        return;
    const auto others = std::count_if(first + 1, spots.end(), isLost);
    finds.push_back({SweepRule::Ink, NameOf(*first),
                     others > 0 ? u"its ink and that of %1 more goes "_s.arg(others) + doing
                                : u"its ink goes "_s + doing});
}

/// One row stands for all of its list.
bool IsRepeated(const Spot& spot) {
    return !spot.name.isEmpty() && spot.name != "row 1"_L1;
}

int ChangedPixels(const QImage& before, const QImage& after) {
    int changed = 0;
    for (int y = 0; y < before.height(); ++y)
        for (int x = 0; x < before.width(); ++x)
            changed += before.pixel(x, y) != after.pixel(x, y) ? 1 : 0;
    return changed;
}

/// With the room around it that a ring may take.
QRect RingPlace(const QWidget& window, const QWidget& widget) {
    return QRect(widget.mapTo(&window, QPoint()), widget.size()).adjusted(-4, -4, 4, 4) & window.rect();
}

/// As Tab does on its way; true when it moved anything.
bool ScrollTo(QWidget& control) {
    const QPoint before = control.mapTo(control.window(), QPoint());
    for (QWidget* at = control.parentWidget(); at; at = at->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(at))
            area->ensureWidgetVisible(&control);
    }
    return control.mapTo(control.window(), QPoint()) != before;
}

} // namespace

void FindInkLostByPointer(QWidget& window, std::vector<SweepFind>& finds) {
    const QImage before = window.grab().toImage();
    const std::vector<Spot> spots = SpotsOf(window, before);
    for (const Spot& spot : spots) {
        if (spot.place.isEmpty() || IsRepeated(spot) || !spot.widget->isEnabled())
            continue;
        MovePointer(window, spot, true);
        const QImage after = window.grab().toImage();
        MovePointer(window, spot, false);
        if (after != before)
            TellLost(spots, before, after, u"while the pointer is on "_s + NameOf(spot), finds);
    }
}

void FindRingless(QWidget& window, std::vector<SweepFind>& finds) {
    if (QWidget* focused = window.focusWidget())
        focused->clearFocus();
    QImage before = window.grab().toImage();
    std::vector<Spot> spots = SpotsOf(window, before);
    for (QWidget* control : TabChain(window)) {
        if (ScrollTo(*control)) {
            if (QWidget* focused = window.focusWidget())
                focused->clearFocus();
            before = window.grab().toImage();
            spots = SpotsOf(window, before);
        }
        control->setFocus(Qt::OtherFocusReason);
        const QImage after = window.grab().toImage();
        const QRect place = RingPlace(window, *control);
        const int wanted = static_cast<int>(8 * after.devicePixelRatio());
        if (control->hasFocus() && ChangedPixels(CutOut(before, place), CutOut(after, place)) < wanted)
            finds.push_back({SweepRule::Focus, PathOf(*control), u"shows no ring with the focus"_s});
        TellLost(spots, before, after, u"while the focus is on "_s + PathOf(*control), finds);
    }
}
