#pragma once

#include <QString>

#include <functional>
#include <vector>

class QWidget;

/// A button that a page sets in the main window.
struct FrameAction {
    QString caption;
    int image = 0;                  ///< a number of the icon registry; 0 for none
    std::function<void()> run = {}; ///< at each click, as long as the page is there
    bool enabled = true;            ///< disabled, it swallows clicks but keeps the focus
};

/// What a page may set outside itself, in the main window. A button does nothing once `owner` is gone.
/// Actions with the captions of those before change the buttons where they stand.
class MainFrame {
public:
    virtual ~MainFrame() = default;

    virtual void SetStatusText(const QString& text) = 0;

    /// Replaces all buttons of the toolbar, left to right.
    virtual void SetToolbar(QWidget& owner, const std::vector<FrameAction>& actions) = 0;

    /// Replaces the actions below the sections.
    virtual void SetSideActions(QWidget& owner, const std::vector<FrameAction>& actions) = 0;
};
