#pragma once

#include "page/Console.h"
#include "page/MainFrame.h"
#include "page/SectionLinks.h"
#include "page/SettingNews.h"
#include "window/PageEntry.h"
#include "window/SpeedMeter.h"

#include <QMargins>
#include <QTimer>
#include <QWidget>

class CBrenPanel;
class ConsoleStatusBar;
class NavigationColumn;
class PageHead;
class ServiceNotice;
class NoticeLine;
class QStackedWidget;

/// The console's one window: sections on the left, the chosen one's page on the right, the status bar below.
class CBTaskMMCDlg : public QWidget, private MainFrame {
    Q_OBJECT

public:
    struct Options {
        QString title;
        QString version;           ///< empty when it is not known
        int initialView = 0;       ///< the number behind "/view:"
        QString firstSection = {}; ///< the title of the section to show first, where `initialView` says none
        std::vector<PageEntry> pages;
        DialogMaker cloudSpace = {};
        DialogMaker bandwidth = {};
    };

    /// The parts must outlive the window.
    CBTaskMMCDlg(ServiceClient& service, LiveCounters& counters, UserPrompts& prompts, Reader& reader,
                 const Options& options);
    ~CBTaskMMCDlg() override;

    /// What the pages are given.
    const Console& Parts() const { return m_console; }

    int SectionCount() const;
    QString SectionTitle(int index) const;
    void SelectSection(int index);
    /// The page of the chosen section; null when none is.
    CBrenPanel* CurrentPage() const;
    /// The parts of the window in the order of the Tab key: sections, head, side actions, page, foot.
    std::vector<QWidget*> TabAreas() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void SetStatusText(const QString& text) override;
    void SetNotice(const QString& text) override;
    void SetToolbar(QWidget& owner, const std::vector<FrameAction>& actions) override;
    void SetSideActions(QWidget& owner, const std::vector<FrameAction>& actions) override;

    void BuildWindow();
    QWidget* MakePageArea();
    CBrenPanel* PageOf(int section);
    void SelectInitialSection(const Options& options);
    void ShowSection(int index);
    void OfferFind();
    void Find();
    void FitIntoScreen();
    void RestoreGeometry();
    void StoreGeometry() const;
    void SampleSpeed();
    void OpenDialog(const DialogMaker& make);

    SettingNews m_settingNews;
    SectionLinks m_links;
    Console m_console;
    std::vector<PageEntry> m_sections;
    std::vector<CBrenPanel*> m_pages; ///< by section; null until it is first shown
    NavigationColumn* m_navigation;
    PageHead* m_head;
    ServiceNotice* m_notice;
    NoticeLine* m_pageNotice;
    QStackedWidget* m_stack;
    ConsoleStatusBar* m_statusBar;
    QMargins m_frameMargins; ///< as known when the window was placed, so that storing undoes restoring
    SpeedMeter m_speedMeter;
    bool m_closing = false;
    QTimer m_speedTimer;
};

/// The version in the configuration file beside the executable; empty when file or attribute is missing.
QString ReadConsoleVersion();
