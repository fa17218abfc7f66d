#include "TestList.h"

#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>

using namespace Qt::Literals::StringLiterals;

/// Keys, and the menu that a key or the right button opens.
class CardKeysTest : public QObject {
    Q_OBJECT

private slots:
    void walksByKeyboard() {
        TestList list;
        QVERIFY(QTest::qWaitForWindowActive(&list));
        list.Refresh(Titles(5));
        list.Card(0)->AddAction(u"Start"_s, 331, [] {});
        list.Card(0)->setFocus();
        const auto press = [&list](Qt::Key key) { QTest::keyClick(list.focusWidget(), key); };
        const auto focused = [&list](int index) {
            return list.Card(index)->hasFocus() && list.Card(index)->isVisible();
        };

        press(Qt::Key_Up);
        QVERIFY(focused(0));
        for (int step = 0; step < 3; ++step)
            press(Qt::Key_Down);
        QVERIFY(focused(3));
        QCOMPARE(list.CurrentPage(), 1);
        press(Qt::Key_Home);
        QVERIFY(focused(0));
        press(Qt::Key_End);
        QVERIFY(focused(4));

        press(Qt::Key_Return);
        QCOMPARE(list.ExpandedCard(), list.Card(4));
        press(Qt::Key_Down);
        QVERIFY(focused(4));
        press(Qt::Key_Escape);
        QVERIFY(!list.ExpandedCard());
        QVERIFY(focused(4));

        press(Qt::Key_PageUp);
        QCOMPARE(list.CurrentPage(), 0);
        list.Card(0)->setFocus();
        QTest::keyClick(list.Card(0), Qt::Key_Tab);
        auto* start = qobject_cast<ActionButton*>(list.focusWidget());
        QVERIFY(start);
        QCOMPARE(start->accessibleName(), u"Start"_s);
        press(Qt::Key_Down);
        QVERIFY(focused(1));
    }

    void pagingKeepsTheFocusOnTheCards() {
        TestList list;
        QVERIFY(QTest::qWaitForWindowActive(&list));
        list.Refresh(Titles(8));
        list.Card(1)->setFocus();
        const auto press = [&list](Qt::Key key) { QTest::keyClick(list.focusWidget(), key); };
        press(Qt::Key_PageDown);
        QVERIFY(list.Card(4)->hasFocus());
        press(Qt::Key_PageDown); // which has two cards only
        QVERIFY(list.Card(7)->hasFocus());
        press(Qt::Key_Return);
        press(Qt::Key_PageUp); // means nothing under an expanded card
        press(Qt::Key_Escape);
        QCOMPARE(list.CurrentPage(), 2);
        QVERIFY(list.Card(7)->hasFocus());
    }

    void tabWalksThroughTheExpandedCard() {
        TestList list;
        QVERIFY(QTest::qWaitForWindowActive(&list));
        list.Refresh(Titles(3));
        CountingCard* card = list.Card(1);
        card->setFocus();
        QTest::keyClick(card, Qt::Key_Return);
        QStringList walk; // what is inside is made late, as views are
        for (const auto& name : {u"first"_s, u"second"_s}) {
            auto* inside = new QLineEdit(card);
            inside->setObjectName(name);
            inside->show();
        }
        for (int step = 0; step < 3; ++step) {
            QTest::keyClick(list.focusWidget(), Qt::Key_Tab);
            walk << (qobject_cast<LinkLabel*>(list.focusWidget()) ? u"link"_s
                                                                  : list.focusWidget()->objectName());
        }
        QCOMPARE(walk, QStringList({u"first"_s, u"second"_s, u"link"_s}));
    }

    void offersItsActionsAsAMenu() {
        TestList list;
        QVERIFY(QTest::qWaitForWindowActive(&list));
        list.Refresh(Titles(2));
        CountingCard* card = list.Card(0);
        int runs = 0;
        const int start = card->AddAction(u"Start & go"_s, 331, [&runs] { ++runs; });
        list.RecalcLayout();
        const auto open = [&](QContextMenuEvent::Reason reason, QPoint place) {
            QContextMenuEvent asks(reason, place, card->mapToGlobal(place));
            QCoreApplication::sendEvent(card->childAt(place) ? card->childAt(place) : card, &asks);
            return card->findChild<QMenu*>();
        };
        const auto close = [](QMenu* menu) {
            menu->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
            const QPoint place =
                reason == QContextMenuEvent::Mouse ? card->ActionRect(start).center() : QPoint(5, 5);
            QMenu* menu = open(reason, place);
            QVERIFY(menu && menu->isVisible());
            QCOMPARE(menu->actions().size(), 2);
            QCOMPARE(menu->actions().at(1)->text(), u"Start && go"_s);
            menu->actions().at(1)->trigger();
            close(menu);
        }
        QCOMPARE(runs, 2);

        QMenu* menu = open(QContextMenuEvent::Mouse, {5, 5});
        card->SetAction(start, u"Pause"_s, 330); // what was meant is not there any more
        menu->actions().at(1)->trigger();
        QCOMPARE(runs, 2);
        close(menu);
        card->EnableAction(start, false);
        menu = open(QContextMenuEvent::Mouse, {5, 5});
        QVERIFY(!menu->actions().at(1)->isEnabled());
        menu->actions().at(0)->trigger();
        QCOMPARE(list.ExpandedCard(), card);
    }
};

BTASK_TEST(CardKeysTest);
#include "CardKeysTest.moc"
