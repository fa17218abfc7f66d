#pragma once

#include <QTabBar>

/// A strip of flat tabs: icon of 24 pixels and title, the current one bold over an accent line. Where that
/// does not fit, icons and distances are smaller; where even that does not, the titles stand alone and
/// scroll.
class TabStrip : public QTabBar {
    Q_OBJECT

public:
    explicit TabStrip(QWidget* parent = nullptr);

    /// Adds the tab of a page, by the order of the pages' numbers.
    void AddPage(int page, const QIcon& icon, const QString& title);
    /// The number of the page that a tab belongs to; -1 for a tab that is not there.
    int PageOf(int tab) const;

    /// Takes that many pixels, or fewer.
    void FitInto(int width);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Measures {
        int icon;
        int gap; ///< between icon and title
        int inset;
    };
    static const Measures AllMeasures[];

    int TabWidth(int index, const Measures& measures) const;

    const Measures* m_measures = AllMeasures;
};
