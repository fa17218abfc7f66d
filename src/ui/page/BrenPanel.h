#pragma once

#include "lanes/PageLoader.h"
#include "page/Console.h"
#include "page/MainFrame.h"

#include <QWidget>

#include <chrono>
#include <optional>

class CommandRunner;

/// Base of every page: white, made on first use, active while its entry is the chosen one. It owns the loader
/// by which it reads: leaving the page ends its timer and its read.
class CBrenPanel : public QWidget {
    Q_OBJECT

public:
    explicit CBrenPanel(const Console& console, QWidget* parent = nullptr);
    ~CBrenPanel() override;

    /// Shows the panel with its status text and toolbar, and reads what it shows.
    virtual void Activate();
    virtual void Deactivate();
    bool IsActive() const { return m_active; }

    /// Reads anew what the panel shows.
    virtual void Reload();

    /// Whether there is something to find words in; then a find bar opens for it.
    virtual bool CanFind() const { return false; }
    virtual void OpenFind() {}

    /// Reloads at the next turn of the event loop, unless the panel is gone by then.
    void PostReload();

    /// Calls `CreatePanel` the first time.
    void EnsureCreated();

    /// Commands by the runner of another panel, which lives as long: what both command is under way once.
    void ShareCommands(CommandRunner& commands);

protected:
    /// Fills the panel with its children, before it is first activated.
    virtual void CreatePanel();

    /// A press of the left button on the panel or on a part of it that takes no presses.
    virtual void OnPanelClick(const QPoint& position);

    /// Called by the timer of ReloadEvery; reloads.
    virtual void OnPeriod();

    /// Reads again by itself while the panel is active: after `first` (or `period`), then `period` after each
    /// read has ended.
    void ReloadEvery(std::chrono::milliseconds period, std::optional<std::chrono::milliseconds> first = {});

    /// What the status line says while all is well.
    void SetHelp(const QString& text);
    /// Says why the last read failed, in place of the help; empty when it did not.
    void TellFailure(const QString& sentence);
    const QString& Failure() const { return m_failure; }
    /// Says in the yellow line what is to be known while nothing has failed; empty: nothing.
    void TellCondition(const QString& sentence);
    void SetToolbar(std::vector<FrameAction> actions);
    /// Stands below the sections as long as no other panel sets its own.
    void SetSideActions(std::vector<FrameAction> actions);
    FrameAction RefreshAction(const QString& caption = tr("Refresh..."));

    /// Leaves status line and toolbar to another panel, as to that of an expanded card, or takes them again.
    void LeaveHead(bool left);

    /// The commands of the panel. A failed one is told in the status line until the next one that succeeds.
    CommandRunner& Commands();

    const Console& TheConsole() const { return m_console; }
    MainFrame& Frame() const { return m_console.frame; }
    PageLoader& Loader() { return m_loader; }

    void mousePressEvent(QMouseEvent* event) override;
    /// The second press of a double click is none: another card may have come below the pointer.
    void mouseDoubleClickEvent(QMouseEvent*) override {}

private:
    void ShowStatus();
    void ShowToolbar();
    void StartPeriod();

    const Console& m_console;
    bool m_created = false;
    bool m_active = false;
    bool m_headLeft = false;
    QString m_help;
    QString m_failure;
    QString m_commandFailure;
    QString m_condition;
    std::vector<FrameAction> m_toolbar;
    std::vector<FrameAction> m_sideActions;
    std::chrono::milliseconds m_period{};
    std::optional<std::chrono::milliseconds> m_firstPeriod;
    CommandRunner* m_commands = nullptr;
    PageLoader m_loader;
};
