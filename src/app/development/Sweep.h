#pragma once

#include <QFlags>
#include <QString>

#include <vector>

class QWidget;

/// What the sweep looks for.
enum class SweepRule {
    Fit = 1 << 0,      ///< a text does not fit into its room
    Overlap = 1 << 1,  ///< two controls overlap, or one is cut off by its parent, its window or the screen
    Ink = 1 << 2,      ///< the pointer over a control, or the focus in it, makes ink vanish
    Focus = 1 << 3,    ///< a focused control shows no ring
    TabOrder = 1 << 4, ///< Tab leaves the order of a page
    Reach = 1 << 5,    ///< a control that takes input is not reached by Tab
    Name = 1 << 6,     ///< no accessible name, or a role or action that does not fit
    Default = 1 << 7,  ///< a dialog's default button is missing or disabled
    Words = 1 << 8,    ///< a view shows neither rows nor a word
};
Q_DECLARE_FLAGS(SweepRules, SweepRule)
Q_DECLARE_OPERATORS_FOR_FLAGS(SweepRules)

namespace Sweeps {
inline constexpr SweepRules Everything = SweepRules(0x1FF);
/// What another size, another scale or a fault can change.
inline constexpr SweepRules Layout = SweepRule::Fit | SweepRule::Overlap | SweepRule::Words;
} // namespace Sweeps

struct SweepFind {
    SweepRule rule{};
    QString path; ///< the widgets from the window down to the place: classes and names
    QString why;
};

/// The rule's name as reports and silences write it.
QString SweepRuleName(SweepRule rule);

/// Looks over a shown window. Moves pointer and focus about, and leaves the focus where it was. The window
/// must stand still meanwhile: no read may end.
std::vector<SweepFind> SweepWindow(QWidget& window, SweepRules rules);
