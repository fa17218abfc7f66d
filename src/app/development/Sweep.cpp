#include "development/Sweep.h"

#include "development/SweepLayout.h"
#include "development/SweepPointer.h"
#include "development/SweepReach.h"

#include <QMetaEnum>
#include <QPointer>
#include <QWidget>

QString SweepRuleName(SweepRule rule) {
    switch (rule) {
    case SweepRule::Fit:
        return QStringLiteral("fit");
    case SweepRule::Overlap:
        return QStringLiteral("overlap");
    case SweepRule::Ink:
        return QStringLiteral("ink");
    case SweepRule::Focus:
        return QStringLiteral("focus");
    case SweepRule::TabOrder:
        return QStringLiteral("tab order");
    case SweepRule::Reach:
        return QStringLiteral("reach");
    case SweepRule::Name:
        return QStringLiteral("name");
    case SweepRule::Default:
        return QStringLiteral("default");
    case SweepRule::Words:
        return QStringLiteral("words");
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
