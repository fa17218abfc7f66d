#pragma once

#include <QAbstractButton>

/// A button that starts something: by a click, by Enter or by Space.
class ActionButton : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int Height = 28; ///< in pixels

    /// With a frame, as a link, or as a square that shows its icon alone and tells its caption by tool-tip.
    enum class Kind { Framed, Link, Icon };

    explicit ActionButton(Kind kind, QWidget* parent = nullptr);

    void Set(const QString& caption, const QIcon& icon);

    /// A framed button is its icon alone as long as it is compact; its caption is told by tool-tip then. One
    /// without an icon stays as it is.
    void SetCompact(bool compact);
    /// In pixels, with its caption.
    int CaptionWidth() const;

    /// While busy it looks disabled and swallows clicks, but keeps the focus. `Clicked` comes only otherwise.
    /// `why` is told by its tool-tip and to screen readers.
    void SetBusy(bool busy, const QString& why = {});
    bool IsBusy() const { return m_busy; }

    QSize sizeHint() const override;

signals:
    void Clicked();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// The second press of a double click is none: the button may mean something else by then.
    void mouseDoubleClickEvent(QMouseEvent*) override {}
    void paintEvent(QPaintEvent* event) override;

private:
    void ShowToolTip();
    bool IsIconOnly() const;
    void PaintFrame(QPainter& painter) const;
    void PaintIcon(QPainter& painter, const QRect& place) const;

    Kind m_kind;
    bool m_busy = false;
    QString m_why; ///< of what cannot be done now
    bool m_compact = false;
};
