#include "list/BrenListCtrl.h"
#include "list/FindBar.h"
#include "look/AccessiblePart.h"
#include "look/IconRegistry.h"
#include "page/ActionButton.h"
#include "page/BrenPanel.h"
#include "page/NoticeLine.h"
#include "support/ConsoleFixture.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "window/ActionButtons.h"
#include "window/BTaskMMCDlg.h"
#include "window/ConsoleStatusBar.h"
#include "window/NavigationColumn.h"
#include "window/PageHead.h"
#include "window/WindowGeometry.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A page with a record table, two fields side by side below it, and actions in head and side.
class BusyPage : public CBrenPanel {
public:
    explicit BusyPage(const Console& console) : CBrenPanel(console) {
        SetToolbar({{u"Delete"_s}, RefreshAction()});
        SetSideActions({{u"Add"_s}});
    }
    bool CanFind() const override { return true; }
    void OpenFind() override { findChild<FindBar*>()->Open(); }

protected:
    void CreatePanel() override {
        auto* rows = new QVBoxLayout(this);
        auto* fields = new QHBoxLayout;
        auto* right = new QLineEdit; // made first, stands at the right
        right->setAccessibleName(u"right"_s);
        auto* left = new QLineEdit;
        left->setAccessibleName(u"left"_s);
        fields->addWidget(left);
        fields->addWidget(right);
        rows->addLayout(fields);
        auto* list = new CBrenListCtrl(TheConsole().prompts);
        list->SetTableKind(TableKind::Record);
        list->AddColumn(u"Name"_s, 100);
        list->setAccessibleName(u"rows"_s);
        rows->addWidget(FindBar::Above(list));
    }
};

class PlainPage : public CBrenPanel {
public:
    using CBrenPanel::CBrenPanel;
};

template <typename Page>
PageEntry Section(const QString& title) {
    return {title, u"tasks"_s, [](const Console& console) -> CBrenPanel* { return new Page(console); }};
}

ActionButton* ButtonOf(const QBoxLayout& layout, int index) {
    return static_cast<ActionButton*>(layout.itemAt(index)->widget());
}

} // namespace

class WindowFrameTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { TeachPartsToScreenReaders(); }

    void init() {
        m_parts = std::make_unique<ConsoleFixture<>>();
        StoreWindowGeometry({});
    }

    void pressesAButton_data() {
        const Columns<ActionButton::Kind, int> row("kind", "key");
        row("framed, Enter", ActionButton::Kind::Framed, Qt::Key_Return);
        row("framed, Space", ActionButton::Kind::Framed, Qt::Key_Space);
        row("link, Enter of the number pad", ActionButton::Kind::Link, Qt::Key_Enter);
        row("icon, Enter", ActionButton::Kind::Icon, Qt::Key_Return);
    }

    void pressesAButton() {
        const auto [kind, key] = Fetched<ActionButton::Kind, int>();
        ActionButton button(kind);
        button.Set(u"Start"_s, {});
        button.show();
        button.setFocus();
        QSignalSpy clicked(&button, &ActionButton::Clicked);
        QTest::keyClick(&button, Qt::Key(key));
        QCOMPARE(clicked.size(), 1);
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::mouseDClick(&button, Qt::LeftButton);
        QCOMPARE(clicked.size(), 2); // the second press of a double click is none

        button.SetBusy(true);
        QTest::keyClick(&button, Qt::Key(key));
        QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(clicked.size(), 2);
        QCOMPARE(button.focusWidget(), &button);
        QVERIFY(button.isEnabled());
    }

    void keepsButtonsAndFocusAcrossActions() {
        QWidget bar;
        QHBoxLayout layout(&bar);
        auto owner = std::make_unique<QWidget>();
        int refreshed = 0;
        int deleted = 0;
        const FrameAction refresh{u"Refresh..."_s, RefreshIcon, [&] { ++refreshed; }};
        const FrameAction remove{u"Delete"_s, DeleteIcon, [&] { ++deleted; }};
        const auto show = [&](const std::vector<FrameAction>& actions) {
            ShowActions(layout, *owner, actions, ActionButton::Kind::Framed);
        };
        show({remove, refresh});
        bar.show();
        ActionButton* button = ButtonOf(layout, 1);
        button->setFocus();

        FrameAction busy = refresh;
        busy.enabled = false;
        show({remove, busy});
        QCOMPARE(ButtonOf(layout, 1), button);
        QTest::keyClick(button, Qt::Key_Return);
        QCOMPARE(refreshed, 0);
        show({remove, refresh});
        QTest::keyClick(button, Qt::Key_Return);
        QCOMPARE(refreshed, 1);

        show({refresh});
        QCOMPARE(layout.count(), 1);
        QCOMPARE(bar.focusWidget(), ButtonOf(layout, 0));
        owner.reset();
        QTest::mouseClick(ButtonOf(layout, 0), Qt::LeftButton);
        QCOMPARE(refreshed, 1);
        QCOMPARE(deleted, 0);
    }

    void buttonsThatLackRoomAreIcons() {
        QWidget window;
        auto& head = *new PageHead;
        head.setParent(&window);
        head.SetTitle(u"Task Manager"_s);
        std::vector<FrameAction> actions;
        for (const auto& caption : {u"Start Now"_s, u"Pause"_s, u"Cancel Task"_s, u"Refresh"_s})
            actions.push_back({caption, RefreshIcon});
        head.SetActions(head, actions);
        head.OfferFind(true);
        window.show();
        for (const int width : {760, 424, 760}) {
            head.resize(width, head.sizeHint().height());
            head.layout()->activate();
            const bool narrow = width == 424;
            QVERIFY(head.minimumSizeHint().width() <= 424);
            for (const ActionButton* button : head.findChildren<ActionButton*>()) {
                const bool find = button->text().startsWith(u"Find");
                QCOMPARE(button->width() == ActionButton::Height, narrow || find);
                QCOMPARE(button->toolTip().contains(button->text()), narrow || find);
                QVERIFY(head.rect().contains(button->geometry()));
            }
        }
    }

    void aNoticesSignStandsBesideItsFirstLine() {
        NoticeLine line;
        for (const auto& text : {u"The service does not answer."_s, QString(u"word "_s).repeated(60)}) {
            line.SetText(text);
            line.resize(500, std::max(60, line.heightForWidth(500)));
            line.layout()->activate();
            const QList<QLabel*> labels = line.findChildren<QLabel*>();
            const bool signFirst = labels.first()->text().isEmpty();
            const QLabel* sign = labels.at(signFirst ? 0 : 1);
            const QLabel* words = labels.at(signFirst ? 1 : 0);
            const int firstLine =
                words->y() + words->contentsMargins().top() + words->fontMetrics().height() / 2;
            QVERIFY(std::abs(sign->geometry().center().y() - firstLine) <= 1);
        }
    }

    void screenReadersMeetPartsAsTheyAreSeen() {
        const auto window = Open({Section<BusyPage>(u"Busy"_s)});
        auto* head = window->findChild<PageHead*>();
        QTRY_VERIFY(head->findChildren<ActionButton*>().first()->isVisible());
        QCOMPARE(QAccessible::queryAccessibleInterface(window.get())->role(), QAccessible::Window);
        QAccessibleInterface* met = QAccessible::queryAccessibleInterface(head);
        QStringList names;
        for (int part = 0; part < 4; ++part) {
            QCOMPARE(met->indexOfChild(met->child(part)), part);
            names << met->child(part)->text(QAccessible::Name);
            QVERIFY(!met->child(part)->text(QAccessible::Description).contains(u'<'));
        }
        names.last().truncate(4);
        QCOMPARE(names, QStringList({u"Busy"_s, u"Delete"_s, u"Refresh..."_s, u"Find"_s}));
    }

    void tabGoesByPlace() {
        const auto window = Open({Section<BusyPage>(u"Busy"_s), Section<PlainPage>(u"Plain"_s)});
        auto* find = window->findChild<PageHead*>()->findChildren<ActionButton*>().first();
        QTRY_VERIFY(find->isVisible());
        window->findChild<NavigationColumn*>()->Sections()->setFocus();
        const QStringList order{u"Sections"_s,
                                u"Delete"_s,
                                u"Refresh..."_s,
                                find->text(),
                                u"Add"_s,
                                u"left"_s,
                                u"right"_s,
                                u"rows"_s,
                                u"Not In Cloud Space"_s,
                                u"Click to set bandwidth limit"_s,
                                u"Click to set bandwidth limit"_s,
                                u"Sections"_s};
        QStringList forth{FocusName(*window)};
        while (forth.size() < order.size()) {
            QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
            forth << FocusName(*window);
        }
        QCOMPARE(forth, order);
        QStringList back{forth.last()};
        while (back.size() < order.size()) {
            QTest::keyClick(window->focusWidget(), Qt::Key_Backtab);
            back.prepend(FocusName(*window));
        }
        QCOMPARE(back, order);
    }

    void findsFromTheSectionList() {
        const auto window = Open({Section<BusyPage>(u"Busy"_s), Section<PlainPage>(u"Plain"_s)});
        auto* sections = window->findChild<NavigationColumn*>()->Sections();
        auto* button = window->findChild<PageHead*>()->findChildren<ActionButton*>().first();
        auto* bar = window->findChild<FindBar*>();
        QTRY_VERIFY(button->isVisible());
        sections->setFocus();
        QTest::keySequence(sections, QKeySequence::Find);
        QVERIFY(bar->isVisible());
        QVERIFY(bar->isAncestorOf(window->focusWidget()));
        bar->Close();
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(bar->isVisible());

        window->SelectSection(1);
        QTRY_VERIFY(!button->isVisible());
        QTest::keySequence(sections, QKeySequence::Find);
        window->SelectSection(0);
        QTRY_VERIFY(button->isVisible());
    }

    void makesPagesWhenTheyAreShown() {
        QStringList made;
        std::vector<PageEntry> entries;
        for (const QString& title : {u"A"_s, u"B"_s})
            entries.push_back({title, u"tasks"_s, [&made, title](const Console& console) -> CBrenPanel* {
                                   made << title;
                                   return new PlainPage(console);
                               }});
        const auto window = Open(entries);
        QCOMPARE(made, QStringList({u"A"_s}));
        window->SelectSection(1);
        window->SelectSection(0);
        QCOMPARE(made, QStringList({u"A"_s, u"B"_s}));
    }

    void scrollsInASmallWindow() {
        const auto window = Open({Section<BusyPage>(u"Busy"_s)});
        const QSize screen = window->screen()->availableSize();
        QVERIFY(window->minimumSizeHint().boundedTo({520, 400}) == window->minimumSizeHint());
        QVERIFY(window->frameGeometry().size().boundedTo(screen) == window->frameGeometry().size());

        window->setMinimumSize(0, 0);
        window->resize(480, 320);
        auto* page = window->CurrentPage();
        QVERIFY(page->width() >= 424);
        for (QWidget* around = page; around; around = around->parentWidget())
            if (auto* area = qobject_cast<QScrollArea*>(around))
                QVERIFY(area->viewport()->width() < page->width());
        auto* right = NamedField(*page, u"right"_s);
        NamedField(*page, u"left"_s)->setFocus();
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        QCOMPARE(window->focusWidget(), right);
        QVERIFY(window->rect().contains(right->mapTo(window.get(), QPoint(8, 8))));
    }

    void showsTheFootInANarrowWindow() {
        ConsoleStatusBar bar;
        bar.show();
        for (const int width : {960, 800, 640}) {
            bar.resize(width, bar.height());
            for (const QObject* child : bar.children())
                if (const auto* part = qobject_cast<const QWidget*>(child); part && part->isVisible())
                    QVERIFY2(bar.rect().contains(part->geometry()), qPrintable(QString::number(width)));
        }
    }

    void namesStatusTextsForScreenReaders() {
        const auto window = Open({Section<PlainPage>(u"Plain"_s)});
        auto* head = window->findChild<PageHead*>();
        head->SetStatusText(u"The service does not answer."_s);
        QStringList names;
        for (QLabel* label : head->findChildren<QLabel*>())
            names.append(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name));
        QVERIFY(names.contains(u"The service does not answer."_s));
    }

    void fitsAStoredPlaceToTheScreens_data() {
        const Columns<QRect, QRect> row("stored", "shown");
        row("as it was", {100, 100, 820, 500}, {100, 100, 820, 500});
        row("partly outside, its title can be grasped", {-400, 30, 820, 500}, {-400, 30, 820, 500});
        row("title above the screen", {100, -40, 820, 500}, {100, 0, 820, 500});
        row("on a screen that has gone", {5000, 100, 820, 500}, {460, 100, 820, 500});
        row("larger than the screen", {10, 10, 3000, 2000}, {0, 0, 1280, 1024});
        row("larger than the second screen", {1300, 20, 900, 700}, {1280, 0, 800, 600});
    }

    void fitsAStoredPlaceToTheScreens() {
        QFETCH(QRect, stored);
        QTEST(MovedOntoScreen(stored, {QRect(0, 0, 1280, 1024), QRect(1280, 0, 800, 600)}), "shown");
    }

private:
    std::unique_ptr<CBTaskMMCDlg> Open(const std::vector<PageEntry>& pages) {
        auto window = std::make_unique<CBTaskMMCDlg>(
            m_parts->client, m_parts->counters, m_parts->prompts, m_parts->reader,
            CBTaskMMCDlg::Options{.title = u"Title"_s, .version = u"1.2"_s, .pages = pages});
        window->show();
        window->activateWindow();
        return window;
    }

    static QString FocusName(const QWidget& window) { return window.focusWidget()->accessibleName(); }

    static QWidget* NamedField(const QWidget& page, const QString& name) {
        const auto fields = page.findChildren<QLineEdit*>();
        return *std::find_if(fields.begin(), fields.end(),
                             [&](const QLineEdit* field) { return field->accessibleName() == name; });
    }

    ServiceFixture m_service; // for a home of its own
    std::unique_ptr<ConsoleFixture<>> m_parts;
};

BTASK_TEST(WindowFrameTest);

#include "WindowFrameTest.moc"
