#pragma once

#include <QTabBar>

/// A strip of flat tabs: icon of 24 pixels and title, the current one bold over an accent line.
class TabStrip : public QTabBar {
    Q_OBJECT

public:
    explicit TabStrip(QWidget* parent = nullptr);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;
};
