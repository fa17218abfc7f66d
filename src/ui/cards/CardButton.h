#pragma once

#include <QToolButton>

/// A button of 28 pixels that shows only its icon; the caption is told by tool-tip and to screen readers.
class CardButton : public QToolButton {
    Q_OBJECT

public:
    explicit CardButton(QWidget* parent);

    void Set(const QString& caption, const QIcon& icon);

    /// While busy it looks disabled and swallows clicks, but keeps the focus. `Clicked` comes only otherwise.
    void SetBusy(bool busy);
    bool IsBusy() const { return m_busy; }

signals:
    void Clicked();

protected:
    /// Up and down belong to the list of cards.
    void keyPressEvent(QKeyEvent* event) override;
    /// The second press of a double click is none: the button may mean something else by then.
    void mouseDoubleClickEvent(QMouseEvent*) override {}
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_busy = false;
};
