#pragma once

#include <QWidget>

class MainFrame;

/// Base of every page: white, made on first use, active while its entry is the chosen one.
class CBrenPanel : public QWidget {
    Q_OBJECT

public:
    explicit CBrenPanel(MainFrame& frame, QWidget* parent = nullptr);

    /// Shows the panel and clears the status text.
    virtual void Activate();
    virtual void Deactivate();
    bool IsActive() const { return m_active; }

    /// Answers a command of the toolbar, of the side or of a panel around this one.
    virtual void OnCommand(int command);

    /// Calls `OnCommand` at the next turn of the event loop, unless the panel is gone by then.
    void PostCommand(int command);

    /// Calls `CreatePanel` the first time.
    void EnsureCreated();

protected:
    /// Fills the panel with its children, before it is first activated.
    virtual void CreatePanel();

    /// A press of the left button on the panel or on a part of it that takes no presses.
    virtual void OnPanelClick(const QPoint& position);

    void mousePressEvent(QMouseEvent* event) override;
    /// The second press of a double click is none: another card may have come below the pointer.
    void mouseDoubleClickEvent(QMouseEvent*) override {}

    MainFrame& Frame() const { return m_frame; }

private:
    MainFrame& m_frame;
    bool m_created = false;
    bool m_active = false;
};
