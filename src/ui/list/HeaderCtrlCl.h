#pragma once

#include <QHeaderView>

/// The column header of a list: a band of 36 pixels with rounded corners and a shaded fill. Without its
/// custom mode it is the toolkit's header.
class CHeaderCtrlCl : public QHeaderView {
    Q_OBJECT

public:
    static constexpr int CustomHeight = 36;

    explicit CHeaderCtrlCl(QWidget* parent = nullptr);

    void SetCustom(bool custom);

    /// Pixels that a column needs to show its whole title.
    int TitleWidth(int section) const;
    /// The same where the title stands in two lines, which it does in a narrower column.
    int WrappedTitleWidth(int section) const;

    QSize sizeHint() const override;

signals:
    /// A column's divider was dragged and let go.
    void DividerReleased();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void PaintSection(QPainter& painter, int section) const;

    bool m_custom = true;
    bool m_resized = false;
};
