#pragma once

#include "page/MainFrame.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

/// A main window that only notes what pages set.
class RecordingFrame : public MainFrame {
public:
    void SetStatusText(const QString& text) override { statusTexts.append(text); }
    void SetNotice(const QString& text) override { notice = text; }
    void SetToolbar(QWidget& owner, const std::vector<FrameAction>& actions) override {
        toolbarOwner = &owner;
        toolbar = actions;
    }
    void SetSideActions(QWidget&, const std::vector<FrameAction>& actions) override { sideActions = actions; }

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
            if (action.caption == caption && action.enabled && toolbarOwner)
                action.run();
    }

    QStringList statusTexts;
    QString notice;
    QPointer<QWidget> toolbarOwner;
    std::vector<FrameAction> toolbar;
    std::vector<FrameAction> sideActions;
};
