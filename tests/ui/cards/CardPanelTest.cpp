#include "cards/CardPanel.h"
#include "cards/TaskItem.h"
#include "list/FindBar.h"
#include "page/NoticeLine.h"
#include "support/ConsoleFixture.h"
#include "support/TestMain.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Running = 1;
constexpr int Failed = 3;

struct Fruit : CardEntry {
    int harvest = 0;
};

/// A section of fruits, as many and in such states as the test says.
class FruitPanel : public ConsoleFixture<>, public CardPanel {
public:
    FruitPanel() : CardPanel(console) {
        CardSection section;
        section.help = u"help"_s;
        section.hidden = u"%1 hidden"_s;
        section.notFound = u"no %1"_s;
        section.shared = u"%1 of this name"_s;
        section.states = {{Running, u"Running"_s}, {Failed, u"Failed"_s}};
        section.read = [this](std::stop_token) { return CardEntries::Of(read, fruits); };
        section.make = [](const CardEntry& entry) { return std::make_unique<CTaskItem>(entry.title); };
        section.show = [](CExpandableItem& card, const CardEntry& entry) {
            card.SetBodyText(QString::number(static_cast<const Fruit&>(entry).harvest));
        };
        SetSection(std::move(section));
        resize(800, 400);
        Activate();
        activateWindow();
    }

    void Add(const QString& id, const QString& title, int state = 0) {
        fruits.push_back({{id, title, {}, state}, static_cast<int>(fruits.size())});
    }
    void Refresh() {
        Reload();
        reader.StepAll();
    }
    QStringList Titles() const {
        QStringList titles;
        for (int card = 0; card < CardCount(); ++card)
            titles << CardAt(card)->Title();
        return titles;
    }
    /// The choices as they are read, the chosen one in brackets.
    QString Choices() const {
        QStringList texts;
        for (const QAbstractButton* button : findChild<StateChoices*>()->findChildren<QAbstractButton*>())
            texts << (button->isChecked() ? u'[' + button->text() + u']' : button->text());
        return texts.join(u", "_s);
    }
    void Choose(const QString& text) {
        for (QAbstractButton* button : findChild<StateChoices*>()->findChildren<QAbstractButton*>())
            if (button->text().startsWith(text))
                QTest::mouseClick(button, Qt::LeftButton);
    }

    std::vector<Fruit> fruits;
    ReadResult read;
};

} // namespace

class CardPanelTest : public QObject {
    Q_OBJECT

private slots:
    void findsTheFailedOnesAmongTenThousand() {
        FruitPanel panel;
        for (int number = 0; number < 10'000; ++number)
            panel.Add(QString::number(number), u"Fruit %1"_s.arg(number),
                      number == 7'777 || number == 9'999 ? Failed : Running);
        panel.Refresh();
        QCOMPARE(panel.CardCount(), 100);
        QCOMPARE(panel.findChild<NoticeLine*>()->Text(), u"9900 hidden"_s);
        QCOMPARE(panel.Choices(), u"[All 10000], Running 9998, Failed 2"_s);
        panel.Choose(u"Failed"_s);
        QCOMPARE(panel.Titles(), QStringList({u"Fruit 7777"_s, u"Fruit 9999"_s}));
        QCOMPARE(panel.findChild<FindBar*>()->findChild<QLabel*>()->text(), u"2 of 10000"_s);

        const auto* find = panel.findChild<FindBar*>();
        QCoreApplication::sendPostedEvents();
        const int place = find->x();
        QTest::keyClicks(panel.findChild<QLineEdit*>(), u"7777"_s);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(find->x(), place); // what is typed into stays where it is
        QCOMPARE(panel.Titles(), QStringList{u"Fruit 7777"_s});
        QCOMPARE(panel.Choices(), u"All 1, Running 0, [Failed 1]"_s);

        // Who starts what has failed wants to look on; afterwards it is none of these any more.
        panel.ToggleCard(*panel.CardAt(0));
        panel.fruits[7'777].shownState = Running;
        panel.Refresh();
        QVERIFY(panel.ExpandedCard());
        panel.ShowAll();
        panel.Refresh();
        QCOMPARE(panel.CardCount(), 0);
        panel.Choose(u"All"_s);
        QCOMPARE(panel.Titles(), QStringList{u"Fruit 7777"_s});
    }

    void saysWhyThereIsNothing() {
        FruitPanel panel;
        const auto said = [&panel] {
            const auto labels = panel.findChildren<QLabel*>();
            const bool any = std::any_of(labels.begin(), labels.end(),
                                         [](const QLabel* label) { return label->text() == u"no kiwi"_s; });
            return any && panel.CardCount() == 0;
        };
        panel.Add(u"1"_s, u"Pear"_s);
        panel.Refresh();
        panel.OpenFind();
        QTest::keyClicks(panel.findChild<QLineEdit*>(), u"kiwi"_s);
        QVERIFY(said());
        QTest::keyClick(panel.findChild<QLineEdit*>(), Qt::Key_Escape);
        QCOMPARE(panel.Titles(), QStringList{u"Pear"_s});
    }

    void cardsLookAsOldAsTheyAre() {
        FruitPanel panel;
        panel.Add(u"1"_s, u"Pear"_s);
        panel.Refresh();
        const QImage fresh = panel.CardAt(0)->grab().toImage();
        panel.read = {ReadOutcome::Busy, u"fruits.db"_s};
        panel.Refresh();
        QCOMPARE(panel.Titles(), QStringList{u"Pear"_s});
        QVERIFY(
            panel.frame.notice.startsWith("The database is locked by another program: fruits.db (Shown"_L1));
        QVERIFY(panel.CardAt(0)->grab().toImage() != fresh);
        panel.Choose(u"All"_s);
        panel.Choose(u"Running"_s); // cards that come now are no younger
        panel.Choose(u"All"_s);
        QVERIFY(panel.CardAt(0)->accessibleDescription().contains(u"not read again"_s));
        panel.read = {};
        panel.Refresh();
        QCOMPARE(panel.frame.notice, QString());
        QVERIFY(panel.CardAt(0)->grab().toImage() == fresh);
    }

    void namesThatAreNone() {
        FruitPanel panel;
        panel.Add(u"{7}"_s, {});
        panel.Add(u"{8}"_s, u"Plum"_s);
        panel.Add(u"{9}"_s, u"PLUM"_s);
        panel.Refresh();
        QCOMPARE(panel.Titles(), QStringList({u"{7}"_s, u"Plum"_s}));
        QCOMPARE(panel.CardAt(1)->BodyText(), u"1"_s); // the first one's
        QVERIFY(panel.CardAt(1)->accessibleDescription().contains(u"2 of this name"_s));
        panel.fruits.erase(panel.fruits.begin() + 1);
        panel.Refresh();
        QCOMPARE(panel.CardAt(1)->BodyText(), u"2"_s);
        QVERIFY(!panel.CardAt(1)->accessibleDescription().contains(u"of this name"_s));
    }

    void aCardLeavesAnEntryThatIsNotChosen() {
        FruitPanel panel;
        panel.Add(u"{8}"_s, u"Plum"_s, Running);
        panel.Add(u"{9}"_s, u"PLUM"_s, Running);
        panel.Refresh();
        panel.Choose(u"Running"_s);
        QCOMPARE(panel.CardAt(0)->BodyText(), u"0"_s);
        panel.fruits[0].shownState = Failed;
        panel.Refresh();
        QCOMPARE(panel.Choices(), u"All 2, [Running 1], Failed 1"_s);
        QCOMPARE(panel.CardAt(0)->BodyText(), u"1"_s);
        QVERIFY(panel.CardAt(0)->accessibleDescription().contains(u"2 of this name"_s));
    }
};

BTASK_TEST(CardPanelTest);
#include "CardPanelTest.moc"
