#pragma once

#include "page/BrenPanel.h"

#include <vector>

class TabStrip;

/// A page of up to 100 sub-panels behind a strip of tabs.
class CTabPanel : public CBrenPanel {
    Q_OBJECT

public:
    static constexpr int MaxPages = 100;

    explicit CTabPanel(const Console& console, QWidget* parent = nullptr);

    /// Adds a page at the end; `image` is a number of the icon registry. The panel owns the page. False, and
    /// the page is the caller's, when there are 100.
    bool AddTab(const QString& title, CBrenPanel* page, int image);
    /// The same without a tab, until ShowAllTabs.
    bool AddHiddenTab(const QString& title, CBrenPanel* page, int image);

    /// Takes the tabs from `count` on away. When the current page loses its tab, the first page is selected,
    /// otherwise the current page is told to reload.
    void ShowFirstTabs(int count);
    /// Gives the pages from `from` on their tabs again, and tells the current page to refresh.
    void ShowAllTabs(int from);
    /// Gives one page its tab or takes it away; then the first page is selected in its place.
    void ShowTab(int page, bool shown);

    int PageCount() const { return static_cast<int>(m_pages.size()); }
    CBrenPanel* CurrentPage() const; ///< null for none
    int CurrentIndex() const { return m_current; }
    void SelectPage(int index);
    bool IsTabShown(int index) const;

    /// A widget at the right end of the strip. The panel owns it.
    void SetCorner(QWidget* corner);

    void Activate() override;
    void Deactivate() override;
    /// Goes to the current page.
    void Reload() override;
    bool CanFind() const override { return CurrentPage() && CurrentPage()->CanFind(); }
    void OpenFind() override { CurrentPage()->OpenFind(); }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Page {
        CBrenPanel* panel;
        int image;
    };

    bool Add(const QString& title, CBrenPanel* page, int image, bool shown);
    void ShowTabs(int from, int end, bool shown);
    int TabOf(int page) const;
    void OnTabChanged(int tab);
    void LayOutPages();

    TabStrip* m_strip;
    QWidget* m_corner = nullptr;
    std::vector<Page> m_pages;
    int m_current = -1;
};
