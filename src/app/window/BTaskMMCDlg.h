#pragma once

#include "lanes/PageLoader.h"
#include "page/Console.h"
#include "page/MainFrame.h"
#include "window/PageEntry.h"
#include "window/SpeedMeter.h"

#include <QMargins>
#include <QTimer>
#include <QWidget>

class CBrenPanel;
class CConsoleStatusBar;
class CNavigationColumn;
class CPageHead;
class CServiceNotice;
class QStackedWidget;

/// The console's one window: sections on the left, the chosen one's page on the right, the status bar below.
class CBTaskMMCDlg : public QWidget, private MainFrame {
    Q_OBJECT

public:
    struct Options {
        QString title;
        QString version;     ///< empty when it is not known
        int initialView = 0; ///< the number behind "/view:"
        std::vector<PageEntry> pages;
    };

    /// The parts must outlive the window.
    CBTaskMMCDlg(ServiceClient& service, LiveCounters& counters, UserPrompts& prompts, Reader& reader,
                 const Options& options);
    ~CBTaskMMCDlg() override;

    int SectionCount() const;
    QString SectionTitle(int index) const;
    void SelectSection(int index);
    /// The page of the chosen section; null when none is.
    CBrenPanel* CurrentPage() const;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void SetStatusText(const QString& text) override;
    void SetToolbar(QWidget& owner, const std::vector<FrameAction>& actions) override;
    void SetSideActions(QWidget& owner, const std::vector<FrameAction>& actions) override;

    void BuildWindow();
    void BuildPages(const std::vector<PageEntry>& pages);
    void SelectInitialSection(int initialView);
    void ShowSection(int index);
    void RestoreGeometry();
    void StoreGeometry() const;
    void SampleSpeed();
    void EditCloudSpace();
    void EditBandwidth();

    Console m_console;
    CNavigationColumn* m_navigation;
    CPageHead* m_head;
    CServiceNotice* m_notice;
    QStackedWidget* m_stack;
    CConsoleStatusBar* m_statusBar;
    QMargins m_frameMargins; ///< as known when the window was placed, so that storing undoes restoring
    SpeedMeter m_speedMeter;
    bool m_closing = false;
    QTimer m_speedTimer;
    PageLoader m_loader;
};

/// The version in the configuration file beside the executable; empty when file or attribute is missing.
QString ReadConsoleVersion();
