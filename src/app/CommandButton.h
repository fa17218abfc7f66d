#pragma once

#include "ui/MainFrame.h"

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

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int Inset() const;

    QPointer<CBrenPanel> m_panel;
    int m_command;
    CommandButtonKind m_kind;
};

/// Fills the layout with buttons for the actions in place of those that it holds.
void ReplaceButtons(QBoxLayout& layout, CBrenPanel& panel, const std::vector<FrameAction>& actions,
                    CommandButtonKind kind);
void EnableButtons(const QBoxLayout& layout, int command, bool enabled);
