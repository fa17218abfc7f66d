#include "TestList.h"
#include "look/Look.h"
#include "support/PaintNote.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QPointer>
#include <QToolTip>

using namespace Qt::Literals::StringLiterals;

class ExpandableItemListTest : public QObject {
    Q_OBJECT

private slots:
    void refusesTheHundredAndFirst() {
        TestList list;
        list.Refresh(Titles(100));
        QCOMPARE(list.CardCount(), 100);
        list.ToggleCard(*list.CardAt(0));

        QPointer<CExpandableItem> refused = new CountingCard(u"Card 101"_s);
        QVERIFY(!list.AddItem(std::unique_ptr<CExpandableItem>(refused)));
        QVERIFY(!refused);
        QCOMPARE(list.CardCount(), 100);

        // Card 2 goes, but the refused card was not created: the expanded one stays expanded.
        QStringList titles = Titles(101);
        list.BeginRefresh();
        for (const QString& title : titles)
            if (title != titles.at(1))
                list.Keep(title, [&title] { return std::make_unique<CountingCard>(title); });
        QVERIFY(list.EndRefresh());
        QCOMPARE(list.CardCount(), 99);
        QCOMPARE(list.ExpandedCard(), list.CardAt(0));
    }

    void turnsPages() {
        TestList list;
        list.Refresh(Titles(7));
        QCOMPARE(list.Shown(), Titles(3));
        QCOMPARE(list.Links(), (QStringList{u"1 of 3 Pages"_s, u"Next Page"_s}));
        list.ClickLink(u"Next"_s);
        QCOMPARE(list.Shown(), Titles(6).mid(3));
        list.ClickLink(u"Next"_s);
        QCOMPARE(list.Shown(), Titles(7).mid(6));
        QCOMPARE(list.Links(), (QStringList{u"Previous Page"_s, u"3 of 3 Pages"_s}));

        list.Refresh(Titles(4));
        QCOMPARE(list.Shown(), Titles(4).mid(3));
        list.resize(800, 1000);
        QCOMPARE(list.Shown(), Titles(4));
        QVERIFY(list.Links().isEmpty());
        list.resize(800, 100);
        QCOMPARE(list.Shown(), Titles(4));
        list.RemoveAll();
        QCOMPARE(list.CardCount(), 0);
        list.Refresh(Titles(1));
        QCOMPARE(list.CardCount(), 1);
    }

    void expandsByTheTitleBand() {
        TestList list;
        list.Refresh(Titles(7));
        list.NextPage();
        CountingCard* card = list.Card(4);
        list.frame.SetStatusText(u"page"_s);

        QTest::mouseClick(card, Qt::LeftButton, {}, {100, 35});
        QCOMPARE(list.ExpandedCard(), card);
        QVERIFY(card->IsExpanded());
        QCOMPARE(card->geometry(), QRect(10, 20, 780, 340));
        QCOMPARE(list.Shown(), QStringList{u"Card 5"_s});
        QCOMPARE(list.Links(), QStringList{u"6 item(s) hidden, click here to show all items"_s});
        QCOMPARE(card->expansions, 1);
        QCOMPARE(list.frame.StatusText(), u"page"_s);

        QTest::mouseClick(card, Qt::LeftButton, {}, {100, 5});
        QVERIFY(!list.ExpandedCard());
        QCOMPARE(card->collapses, 1);
        QCOMPARE(list.frame.StatusText(), u"list"_s);
        QCOMPARE(list.Shown(), Titles(6).mid(3));

        list.ToggleCard(*list.Card(3));
        list.ToggleCard(*card);
        QCOMPARE(list.Card(3)->collapses, 1);
        QVERIFY(!list.Card(3)->IsExpanded());
        QCOMPARE(list.ExpandedCard(), card);
        list.ClickLink(u"here"_s);
        QVERIFY(!list.ExpandedCard());
        QCOMPARE(list.CurrentPage(), 1);
    }

    void clicksOnEdgesAndBodies() {
        TestList list;
        list.Refresh(Titles(2));
        CountingCard* card = list.Card(0);
        for (const QPoint edge : {QPoint(0, 10), QPoint(100, 0)})
            QTest::mouseClick(card, Qt::LeftButton, {}, edge);
        QTest::mouseClick(card, Qt::RightButton, {}, {100, 10});
        QVERIFY(!list.ExpandedCard());
        QTest::mouseClick(card, Qt::LeftButton, {}, {100, 36});
        QCOMPARE(card->bodyClicks, 1);
        QVERIFY(!list.ExpandedCard());
        QTest::mouseClick(card, Qt::LeftButton, {}, {779, 35});
        QCOMPARE(list.ExpandedCard(), card);
    }

    void sweeps() {
        TestList list;
        list.Refresh(Titles(4));
        CountingCard* first = list.Card(0);
        list.ToggleCard(*first);

        list.Refresh({u"CARD 1"_s, u"card 2"_s, u"Card 3"_s, u"Card 4"_s});
        QVERIFY(!list.removed);
        QCOMPARE(list.CardCount(), 4);
        QCOMPARE(list.ExpandedCard(), first);

        list.Refresh(Titles(3));
        QVERIFY(list.removed);
        QCOMPARE(list.ExpandedCard(), first);

        list.Refresh(Titles(4));
        QVERIFY(!list.removed);
        QCOMPARE(list.ExpandedCard(), first);

        list.Refresh({u"Card 1"_s, u"New"_s});
        QVERIFY(list.removed);
        QVERIFY(!list.ExpandedCard());
        QCOMPARE(first->collapses, 1);
    }

    void aSweepTakesTheExpandedCardAway() {
        TestList list;
        QVERIFY(QTest::qWaitForWindowActive(&list));
        list.Refresh(Titles(7));
        list.NextPage();
        QPointer<CountingCard> card = list.Card(4);
        list.ToggleCard(*card);
        QVERIFY(card->hasFocus());

        list.Refresh(Titles(4));
        QVERIFY(!list.ExpandedCard());
        QCOMPARE(card->collapses, 1);
        QCOMPARE(list.CurrentPage(), 1);
        QCOMPARE(list.Shown(), QStringList{u"Card 4"_s});
        QVERIFY(list.Card(3)->hasFocus());
        QTRY_VERIFY(!card);
        QTest::keyClick(list.focusWidget(), Qt::Key_Escape);
        QTest::mouseClick(&list, Qt::LeftButton, {}, {100, 30});
        list.Refresh({});
        QCOMPARE(list.CardCount(), 0);
    }

    void removesACardFromItsOwnAction() {
        TestList list;
        list.Refresh(Titles(2));
        QPointer<CountingCard> card = list.Card(0);
        card->AddAction(u"Cancel"_s, 332, [&list, card] { list.RemoveCard(*card); });
        list.RecalcLayout();
        QTest::mouseClick(card->findChildren<ActionButton*>().last(), Qt::LeftButton);
        QCOMPARE(list.CardCount(), 1);
        QTRY_VERIFY(!card);
    }

    void goesWithThePage() {
        TestList list;
        list.Refresh(Titles(2));
        CountingCard* card = list.Card(1);
        list.Deactivate();
        QCOMPARE(card->collapses, 0);
        list.Activate();
        list.ToggleCard(*card);
        list.Deactivate();
        QCOMPARE(card->collapses, 1);
        QVERIFY(card->IsExpanded());

        // The status text is another page's by now.
        list.frame.SetStatusText(u"other page"_s);
        list.Refresh({u"New"_s});
        QCOMPARE(list.frame.StatusText(), u"other page"_s);
    }

    void theTitleHasTheRoomThatTheStatusLeaves() {
        TestList list;
        list.resize(500, 400);
        list.Refresh(
            {u"Backup of all photos"_s, u"A title that no card of this width could ever show whole"_s});
        const auto isCut = [&list](int card) {
            QHelpEvent asks(QEvent::ToolTip, {20, 10}, list.Card(card)->mapToGlobal(QPoint(20, 10)));
            QCoreApplication::sendEvent(list.Card(card), &asks);
            const bool cut = QToolTip::text().contains(list.Card(card)->Title());
            QToolTip::hideText();
            return cut;
        };
        for (int card = 0; card < 2; ++card)
            list.Card(card)->SetStatusText(u"Next Run: not scheduled"_s);
        if (QSysInfo::productType() != "windows"_L1) // whose fonts here are wider than a user's
            QVERIFY(!isCut(0));
        QVERIFY(isCut(1));
    }

    void aFailureIsReadWhole_data() {
        const Columns<int, bool> row("width", "cut");
        row("default", 762, false);
        row("narrow", 300, true); // then the tool-tip has it
    }

    void aFailureIsReadWhole() {
        const auto [width, cut] = Fetched<int, bool>();
        TestList list;
        list.resize(width + 40, 400);
        list.Refresh({u"Photos"_s});
        CountingCard& card = *list.Card(0);
        const QString failure = u"Not started: the service did not take it, or does not answer in time"_s;
        card.SetFailure(failure);
        QVERIFY(card.accessibleDescription().contains(failure));
        const QPoint place(card.width() - 60, 10);
        QHelpEvent asks(QEvent::ToolTip, place, card.mapToGlobal(place));
        QCoreApplication::sendEvent(&card, &asks);
        const QString told = QToolTip::text();
        QToolTip::hideText();
        if (QSysInfo::productType() != "windows"_L1) // whose fonts here are wider than a user's
            QCOMPARE(told.contains(failure), cut);
        const QImage band = card.grab({0, 0, card.width(), card.TitleBandHeight()}).toImage();
        bool red = false;
        for (int x = 0; x < band.width(); ++x)
            for (int y = 0; y < band.height(); ++y)
                red = red || band.pixelColor(x, y) == Look::Failed;
        QVERIFY(red);
    }

    void showsTheEmptyViewWithoutCards() {
        TestList list;
        auto* view = new QWidget;
        list.SetEmptyView(view, {20, 25, 20, 25});
        list.RecalcLayout();
        QVERIFY(view->isVisible());
        QCOMPARE(view->geometry(), QRect(20, 25, 760, 350));
        list.Refresh(Titles(1));
        QVERIFY(!view->isVisible());
    }

    void repaintsOnlyWhatChanged() {
        TestList list;
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        list.Refresh(Titles(1));
        CountingCard* card = list.Card(0);
        PaintNote note(*card);
        const auto painted = [&list, &note] {
            QEvent flush(QEvent::UpdateRequest);
            QCoreApplication::sendEvent(&list, &flush);
            return note.Take().boundingRect();
        };
        QTRY_COMPARE(note.Painted(), QRegion(card->rect()));
        note.Take();

        card->SetStatusText(u"Next Run"_s);
        QCOMPARE(painted(), QRect(480, 0, 250, 36));
        card->SetProgress(500);
        QCOMPARE(painted(), QRect(0, 33, 780, 3));
        card->SetStatusText(u"NEXT RUN"_s);
        QCOMPARE(painted(), QRect());
        QCOMPARE(card->StatusText(), u"Next Run"_s);
        QCOMPARE(card->Progress(), 500);
        card->SetStatusText(u"Paused"_s);
        QCOMPARE(card->Progress(), 0);
        painted();

        card->SetStatusIcon(u"running"_s, 1, u"Running"_s);
        QCOMPARE(painted(), QRect(726, 0, 54, 36));
        card->SetStatusIcon(u"running"_s, 1, u"Other"_s);
        QCOMPARE(painted(), QRect());
        QVERIFY(card->accessibleDescription().contains(u"Other"_s));
        card->SetStatusIcon(u"running"_s, 2);
        QCOMPARE(painted(), QRect(726, 0, 54, 36));
    }

    void aBusyActionSwallowsClicks() {
        TestList list;
        QVERIFY(QTest::qWaitForWindowActive(&list));
        list.Refresh(Titles(1));
        CountingCard* card = list.Card(0);
        int runs = 0;
        const int start = card->AddAction(u"Start Now"_s, 331, [&runs] { ++runs; });
        list.RecalcLayout();
        const QPoint place = card->ActionRect(start).center();
        QWidget* button = card->childAt(place);
        QVERIFY(qobject_cast<ActionButton*>(button));

        QTest::mouseClick(button, Qt::LeftButton);
        QTest::keyClick(button, Qt::Key_Return);
        QCOMPARE(runs, 2);
        QVERIFY(button->hasFocus());
        card->EnableAction(start, false);
        QTest::mouseClick(button, Qt::LeftButton);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space})
            QTest::keyClick(list.focusWidget(), key);
        QCOMPARE(runs, 2);
        QCOMPARE(card->bodyClicks, 0);
        QVERIFY(!list.ExpandedCard());
        QVERIFY(button->hasFocus());

        card->EnableAction(start, true);
        card->SetAction(start, u"Pause"_s, 330);
        QCOMPARE(card->ActionCaption(start), u"Pause"_s);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(runs, 3);
    }

    void tellsScreenReadersWhatIsSeen() {
        TestList list;
        list.Refresh(Titles(1));
        CountingCard* card = list.Card(0);
        QCOMPARE(card->accessibleName(), u"Card 1"_s);
        card->SetBodyText(u"Mirrored Backup"_s);
        card->SetStatusIcon(u"failed"_s, 3, u"Failed"_s);
        card->SetStatusText(u"Next Run: NA"_s);
        QCOMPARE(card->accessibleDescription(), u"Mirrored Backup, Failed, Next Run: NA"_s);
        list.ToggleCard(*card);
        card->AddAction(u"<b>Cancel</b>"_s, 332, [] {});
        const ActionButton* cancel = card->findChildren<ActionButton*>().last();
        QVERIFY(cancel->toolTip().contains(u"&lt;b&gt;Cancel"_s));

        QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(card);
        QCOMPARE(heard->role(), QAccessible::ListItem);
        QVERIFY(heard->state().expanded && !heard->state().collapsed);
        heard->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(!list.ExpandedCard());
        QVERIFY(!heard->state().expanded && heard->state().collapsed);
        QAccessibleInterface* button =
            QAccessible::queryAccessibleInterface(const_cast<ActionButton*>(cancel));
        QCOMPARE(button->text(QAccessible::Name), u"<b>Cancel</b>"_s);
        QCOMPARE(button->text(QAccessible::Description),
                 QString()); // or the markup of its tool-tip was heard
        card->EnableAction(0, false);
        QVERIFY(button->state().busy);
        QCOMPARE(button->text(QAccessible::Description), u"Not available now"_s);
    }
};

BTASK_TEST(ExpandableItemListTest);
#include "ExpandableItemListTest.moc"
