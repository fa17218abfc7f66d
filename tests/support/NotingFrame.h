#pragma once

#include "page/BrenPanel.h"
#include "page/MainFrame.h"

#include <QPointer>
#include <QStringList>

/// A main window that only notes what pages set.
class NotingFrame : public MainFrame {
public:
    void SetStatusText(const QString& text) override { statusTexts.append(text); }
    void SetToolbar(CBrenPanel& panel, const std::vector<FrameAction>& actions) override {
        toolbarPanel = &panel;
        toolbar = actions;
    }
    void SetSideActions(CBrenPanel&, const std::vector<FrameAction>& actions) override {
        sideActions = actions;
    }
    void EnableCommand(int command, bool enabled) override {
        for (std::vector<FrameAction>* actions : {&toolbar, &sideActions})
            for (FrameAction& action : *actions)
                if (action.command == command)
                    action.enabled = enabled;
    }

    QString StatusText() const { return statusTexts.isEmpty() ? QString() : statusTexts.last(); }

    /// The captions of the enabled buttons of the toolbar.
    QStringList Captions() const {
        QStringList captions;
        for (const FrameAction& action : toolbar)
            if (action.enabled)
                captions.append(action.caption);
        return captions;
    }

    /// A click on a button of the toolbar; nothing when it is not there, disabled or its panel is gone.
    void Click(const QString& caption) {
        for (const FrameAction& action : std::vector<FrameAction>(toolbar))
            if (action.caption == caption && action.enabled && toolbarPanel)
                toolbarPanel->OnCommand(action.command);
    }

    QStringList statusTexts;
    QPointer<CBrenPanel> toolbarPanel;
    std::vector<FrameAction> toolbar;
    std::vector<FrameAction> sideActions;
};
