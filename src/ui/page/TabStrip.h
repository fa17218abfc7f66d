#pragma once

#include <QTabBar>

/// A strip of flat tabs: icon of 24 pixels and title, the current one bold over an accent line. Where that
/// does not fit, the titles alone.
class TabStrip : public QTabBar {
    Q_OBJECT

public:
    explicit TabStrip(QWidget* parent = nullptr);

    /// Takes that many pixels, or fewer.
    void FitInto(int width);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    int TabWidth(int index, bool withIcon) const;
};
