#pragma once

#include <QString>

#include <vector>

class CBrenPanel;

/// Commands that panels answer in `OnCommand`.
namespace Command {
constexpr int Refresh = 1146; ///< reload what the page shows
}

struct FrameAction {
    QString caption;
    int command = 0;
    int image = 0; ///< a number of the icon registry; 0 for none
    bool enabled = true;
};

/// What a page may set outside itself, in the main window. A click on an action calls `OnCommand` of the
/// panel that set it, and its button does nothing once that panel is gone.
class MainFrame {
public:
    virtual ~MainFrame() = default;

    virtual void SetStatusText(const QString& text) = 0;

    /// Replaces all buttons of the toolbar, left to right.
    virtual void SetToolbar(CBrenPanel& panel, const std::vector<FrameAction>& actions) = 0;

    /// Replaces the actions below the sections.
    virtual void SetSideActions(CBrenPanel& panel, const std::vector<FrameAction>& actions) = 0;

    /// As while a command is under way; of no effect when neither toolbar nor side has that command now.
    virtual void EnableCommand(int command, bool enabled) = 0;
};
