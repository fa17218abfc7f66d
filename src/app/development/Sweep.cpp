#include "development/Sweep.h"

#include "development/SweepLayout.h"
#include "development/SweepPointer.h"
#include "development/SweepReach.h"

#include <QMetaEnum>
#include <QPointer>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

QString SweepRuleName(SweepRule rule) {
    switch (rule) {
    case SweepRule::Fit:
        return u"fit"_s;
    case SweepRule::Overlap:
        return u"overlap"_s;
    case SweepRule::Ink:
        return u"ink"_s;
    case SweepRule::Focus:
        return u"focus"_s;
    case SweepRule::TabOrder:
        return u"tab order"_s;
    case SweepRule::Reach:
        return u"reach"_s;
    case SweepRule::Name:
        return u"name"_s;
    case SweepRule::Default:
        return u"default"_s;
    case SweepRule::Words:
        return u"words"_s;
    }
    return {};
}

std::vector<SweepFind> SweepWindow(QWidget& window, SweepRules rules) {
    struct Check {
        SweepRule rule;
        void (*run)(QWidget& window, std::vector<SweepFind>& finds);
    };
    constexpr Check Checks[] = {
        {SweepRule::Fit, &FindCutTexts},      {SweepRule::Overlap, &FindOverlaps},
        {SweepRule::TabOrder, &FindTabJumps}, {SweepRule::Reach, &FindUnreached},
        {SweepRule::Name, &FindNameless},     {SweepRule::Default, &FindDefaultless},
        {SweepRule::Words, &FindWordless},    {SweepRule::Ink, &FindInkLostByPointer},
        {SweepRule::Focus, &FindRingless},
    };
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
