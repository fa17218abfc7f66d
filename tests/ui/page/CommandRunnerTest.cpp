#include "page/CommandRunner.h"
#include "page/BrenPanel.h"
#include "support/ConsoleFixture.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// A panel with one command, whose sending is only counted.
class CommandingPanel : public ConsoleFixture<>, public CBrenPanel {
public:
    CommandingPanel() : CBrenPanel(console) {
        SetHelp(u"help"_s);
        Activate();
    }

    void Order(bool answered, const QString& question = {}, bool inBox = false) {
        CommandOrder order;
        order.send = [this, answered](const ServiceClient&, std::stop_token) {
            ++sent;
            ServiceAnswer answer;
            answer.outcome = answered ? ServiceOutcome::Answered : ServiceOutcome::OtherStatus;
            return answer;
        };
        order.question = question;
        order.isStillMeant = [this] { return meant; };
        order.gone = u"gone"_s;
        order.failure = u"failed"_s;
        order.failureInBox = inBox;
        order.after = [this](const CommandEnd& done) { ended.append(done ? u"done"_s : u"not done"_s); };
        Commands().Run(u"key"_s, order);
    }
    bool IsBusy() { return Commands().IsBusy(u"key"_s); }

    int sent = 0;
    bool meant = true;
    QStringList ended;
};

} // namespace

class CommandRunnerTest : public QObject {
    Q_OBJECT

private slots:
    void swallowsTheSecondClick() {
        CommandingPanel panel;
        panel.Order(true);
        QVERIFY(panel.IsBusy());
        panel.Order(true);
        panel.reader.StepAll();
        QVERIFY(!panel.IsBusy());
        QCOMPARE(panel.sent, 1);
        QCOMPARE(panel.ended, QStringList{u"done"_s});
        panel.Order(true);
        panel.reader.StepAll();
        QCOMPARE(panel.sent, 2);
    }

    void tellsAFailureUntilTheNextSuccess() {
        CommandingPanel panel;
        for (const bool answered : {false, true}) {
            panel.Order(answered);
            panel.reader.StepAll();
            QCOMPARE(panel.frame.StatusText(), answered ? u"help"_s : u"failed"_s);
        }
        panel.prompts.ExpectMessage(u"failed"_s);
        panel.Order(false, {}, true);
        panel.reader.StepAll();
        QVERIFY(panel.prompts.IsPlayed());
    }

    void asksBefore() {
        CommandingPanel panel;
        panel.prompts.ExpectQuestion(u"sure?"_s, false);
        panel.Order(true, u"sure?"_s);
        panel.reader.StepAll();
        QCOMPARE(panel.sent, 0);
        panel.prompts.ExpectQuestion(u"sure?"_s, true);
        panel.prompts.Hold();
        panel.Order(true, u"sure?"_s);
        panel.Order(true, u"sure?"_s); // while the first is asked
        panel.meant = false;
        panel.prompts.ExpectMessage(u"gone"_s);
        panel.prompts.Release();
        panel.reader.StepAll();
        QCOMPARE(panel.sent, 0);
        panel.meant = true;
        panel.prompts.ExpectQuestion(u"sure?"_s, true);
        panel.Order(true, u"sure?"_s);
        panel.reader.StepAll();
        QCOMPARE(panel.sent, 1);
    }
};

BTASK_TEST(CommandRunnerTest);
#include "CommandRunnerTest.moc"
