#include "development/Sweep.h"

#include "development/SweepLayout.h"
#include "development/SweepPointer.h"
#include "development/SweepReach.h"

#include <QPointer>
#include <QWidget>

namespace {

struct Check {
    SweepRule rule;
    const char* name;
    void (*run)(QWidget& window, std::vector<SweepFind>& finds);
};

/// In the order in which a window is looked over: what moves pointer and focus comes last.
constexpr Check Checks[] = {
    {SweepRule::Fit, "fit", &FindCutTexts},
    {SweepRule::Overlap, "overlap", &FindOverlaps},
    {SweepRule::TabOrder, "tab order", &FindTabJumps},
    {SweepRule::Reach, "reach", &FindUnreached},
    {SweepRule::Name, "name", &FindNameless},
    {SweepRule::Default, "default", &FindDefaultless},
    {SweepRule::Words, "words", &FindWordless},
    {SweepRule::Ink, "ink", &FindInkLostByPointer},
    {SweepRule::Focus, "focus", &FindRingless},
};

} // namespace

QString SweepRuleName(SweepRule rule) {
    for (const Check& check : Checks) {
        if (check.rule == rule)
            return QString::fromLatin1(check.name);
    }
    return {};
}

std::vector<SweepFind> SweepWindow(QWidget& window, SweepRules rules) {
    std::vector<SweepFind> finds;
    const QPointer<QWidget> focused = window.focusWidget();
    for (const Check& check : Checks) {
        if (rules.testFlag(check.rule))
            check.run(window, finds);
    }
    if (focused)
        focused->setFocus();
    return finds;
}
