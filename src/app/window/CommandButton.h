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
    CCommandButton(CBrenPanel& panel, const FrameAction& action, CommandButtonKind kind);

    int CommandNumber() const { return m_command; }

    /// While busy it looks disabled and swallows clicks, but keeps the focus.
    void SetBusy(bool busy);

    QSize sizeHint() const override;

protected:
    /// The second press of a double click is none: another button may have come below the pointer.
    void mouseDoubleClickEvent(QMouseEvent*) override {}
    void paintEvent(QPaintEvent* event) override;

private:
    int Inset() const;

    QPointer<CBrenPanel> m_panel;
    int m_command;
    CommandButtonKind m_kind;
    bool m_busy = false;
};

/// Fills the layout with buttons for the actions in place of those that it holds. The focus of one goes to
/// the new one of its command, or to the first.
void ReplaceButtons(QBoxLayout& layout, CBrenPanel& panel, const std::vector<FrameAction>& actions,
                    CommandButtonKind kind);
void EnableButtons(const QBoxLayout& layout, int command, bool enabled);
