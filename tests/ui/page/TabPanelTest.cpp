#include "page/TabPanel.h"
#include "look/Look.h"
#include "page/TabStrip.h"
#include "support/ConsoleFixture.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QCheckBox>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A page that writes into a common log what it is told.
class LoggingPage : public CBrenPanel {
public:
    LoggingPage(const Console& console, QString name, QStringList& log)
        : CBrenPanel(console), m_name(std::move(name)), m_log(log) {}

    void Activate() override {
        EnsureCreated();
        m_log.append(u'+' + m_name);
        CBrenPanel::Activate();
    }
    void Deactivate() override {
        CBrenPanel::Deactivate();
        m_log.append(u'-' + m_name);
    }
    void Reload() override { m_log.append(m_name + u'!'); }

protected:
    void CreatePanel() override { m_log.append(u"create "_s + m_name); }

private:
    QString m_name;
    QStringList& m_log;
};

/// Pages A, B, C with tabs and D, E without.
class TestTabs : public ConsoleFixture<>, public CTabPanel {
public:
    TestTabs() : CTabPanel(console) {
        resize(800, 400);
        for (const char* name : {"A", "B", "C"})
            AddTab(QLatin1String(name), Page(name), 316);
        for (const char* name : {"D", "E"})
            AddHiddenTab(QLatin1String(name), Page(name), 316);
    }

    LoggingPage* Page(const char* name) { return new LoggingPage(console, QLatin1String(name), log); }

    /// What was logged since the last call, posted commands included.
    QString Log() {
        QCoreApplication::sendPostedEvents();
        return std::exchange(log, {}).join(u' ');
    }

    QString Tabs() const {
        QString shown;
        for (int index = 0; index < PageCount(); ++index)
            shown += IsTabShown(index) ? u'1' : u'0';
        return shown;
    }

    QStringList log;
};

} // namespace

class TabPanelTest : public QObject {
    Q_OBJECT

private slots:
    void activatesOnlyTheCurrentPage() {
        TestTabs tabs;
        QCOMPARE(tabs.Log(), QString());
        tabs.Activate();
        QCOMPARE(tabs.Log(), u"create A +A A!"_s);
        tabs.SelectPage(1);
        QCOMPARE(tabs.Log(), u"-A create B +B B!"_s);
        QVERIFY(!tabs.findChildren<LoggingPage*>().at(0)->isVisible());
        QVERIFY(tabs.CurrentPage()->isVisible());
        QCOMPARE(tabs.CurrentPage()->geometry(), QRect(0, 37, 800, 363));
        tabs.Reload();
        tabs.Deactivate();
        tabs.SelectPage(0);
        tabs.Activate();
        QCOMPARE(tabs.Log(), u"B! -B -B +A A!"_s);
    }

    void showsFirstTabs() {
        TestTabs tabs;
        tabs.Activate();
        tabs.SelectPage(1);
        tabs.Log();
        tabs.ShowFirstTabs(2);
        QCOMPARE(tabs.Tabs(), u"11000"_s);
        QCOMPARE(tabs.Log(), u"B!"_s);
        tabs.ShowAllTabs(2);
        QCOMPARE(tabs.Tabs(), u"11111"_s);
        QCOMPARE(tabs.Log(), u"B!"_s);
        tabs.SelectPage(3);
        tabs.Log();
        tabs.ShowFirstTabs(2);
        QCOMPARE(tabs.Log(), u"-D +A A!"_s);
        QCOMPARE(tabs.CurrentIndex(), 0);
    }

    void showsAllTabs() {
        TestTabs tabs;
        tabs.Activate();
        tabs.Log();
        tabs.ShowAllTabs(4);
        QCOMPARE(tabs.Tabs(), u"11101"_s);
        QCOMPARE(tabs.Log(), u"A!"_s);
        tabs.ShowFirstTabs(0);
        tabs.ShowAllTabs(0);
        QCOMPARE(tabs.Tabs(), u"11111"_s);
        QCOMPARE(tabs.CurrentIndex(), 0);
        QVERIFY(tabs.CurrentPage()->isVisible());
    }

    void beginsWithHiddenTabs() {
        ConsoleFixture<> parts;
        QStringList log;
        CTabPanel tabs(parts.console);
        tabs.Activate();
        for (const char* name : {"A", "B"})
            QVERIFY(tabs.AddHiddenTab(QLatin1String(name),
                                      new LoggingPage(parts.console, QLatin1String(name), log), 316));
        QVERIFY(!tabs.CurrentPage());
        tabs.ShowAllTabs(0);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(log.join(u' '), u"create A +A A! A!"_s);
    }

    void refusesTheHundredAndFirst() {
        TestTabs tabs;
        while (tabs.PageCount() < 100)
            QVERIFY(tabs.AddTab(u"more"_s, tabs.Page("more"), 0));
        const std::unique_ptr<CBrenPanel> refused(tabs.Page("refused"));
        QVERIFY(!tabs.AddTab(u"refused"_s, refused.get(), 0));
        QVERIFY(!tabs.AddHiddenTab(u"refused"_s, refused.get(), 0));
        QCOMPARE(tabs.PageCount(), 100);
        QVERIFY(!refused->parent());
    }

    void hiddenTabsAreGoneForScreenReaders() {
        TestTabs tabs;
        tabs.Activate();
        QAccessibleInterface* strip = QAccessible::queryAccessibleInterface(tabs.findChild<TabStrip*>());
        QStringList heard;
        for (int child = 0; child < strip->childCount(); ++child) {
            QAccessibleInterface* tab = strip->child(child);
            if (tab->role() != QAccessible::PageTab)
                continue;
            heard << tab->text(QAccessible::Name);
            tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            QVERIFY(tabs.CurrentPage() && tabs.CurrentPage()->isVisible());
        }
        QCOMPARE(heard, QStringList({u"A"_s, u"B"_s, u"C"_s}));
    }

    void keepsItsIconsWhereTheyFitSmaller() {
        ConsoleFixture<> fixture;
        CTabPanel tabs(fixture.console);
        for (const char* title :
             {"My Tasks", "System Activities", "Task Settings", "System Tasks", "Completed Tasks"})
            tabs.AddTab(QLatin1String(title), new CBrenPanel(fixture.console), 316);
        auto* corner = new QCheckBox(u"Advanced Mode"_s);
        corner->setFont(Look::Font(Look::Small));
        tabs.SetCorner(corner);
        tabs.Activate();
        const auto* strip = tabs.findChild<TabStrip*>();
        // The fonts of the other system are wider.
        const int firstSize = QSysInfo::productType() == "windows"_L1 ? 1600 : 786;
        for (const auto& [width, hasIcons] : {std::pair(1600, true), {firstSize, true}, {400, false}}) {
            tabs.resize(width, 400);
            QCOMPARE(!strip->iconSize().isEmpty(), hasIcons);
        }
    }

    void walksByKeyboardAndMouse() {
        TestTabs tabs;
        tabs.Activate();
        auto* strip = tabs.findChild<TabStrip*>();
        QTest::keyClick(strip, Qt::Key_Right);
        QCOMPARE(tabs.CurrentIndex(), 1);
        QTest::mouseClick(strip, Qt::LeftButton, {}, strip->tabRect(2).center());
        QCOMPARE(tabs.CurrentIndex(), 2);
        QTest::keyClick(strip, Qt::Key_Right);
        QCOMPARE(tabs.CurrentIndex(), 2);
    }

    void aPostedReloadOfADeadPageIsLost() {
        ConsoleFixture<> parts;
        QStringList log;
        auto page = std::make_unique<LoggingPage>(parts.console, u"A"_s, log);
        page->PostReload();
        page.reset();
        QCoreApplication::sendPostedEvents();
        QVERIFY(log.isEmpty());
    }
};

BTASK_TEST(TabPanelTest);
#include "TabPanelTest.moc"
