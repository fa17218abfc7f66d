#pragma once

#include "page/MainFrame.h"

#include <QAbstractButton>
#include <QPointer>

class QBoxLayout;

/// Of a command button, in pixels.
inline constexpr int CommandButtonHeight = 28;

enum class CommandButtonKind { Toolbar, Link };

/// A button of the toolbar or of the side actions: a click gives its panel the command.
class CCommandButton : public QAbstractButton {
    Q_OBJECT

public:
    CCommandButton(QWidget& owner, const FrameAction& action, CommandButtonKind kind);

    void Set(QWidget& owner, const FrameAction& action);

    QSize sizeHint() const override;

protected:
    /// The second press of a double click is none: another button may have come below the pointer.
    void mouseDoubleClickEvent(QMouseEvent*) override {}
    void paintEvent(QPaintEvent* event) override;

private:
    int Inset() const;

    QPointer<QWidget> m_owner;
    std::function<void()> m_run;
    CommandButtonKind m_kind;
    bool m_busy = false;
};

/// Fills the layout with buttons for the actions in place of those that it holds; buttons of the same
/// captions stay. The focus of one that goes goes to the new one of its caption, or to the first.
void ReplaceButtons(QBoxLayout& layout, QWidget& owner, const std::vector<FrameAction>& actions,
                    CommandButtonKind kind);
