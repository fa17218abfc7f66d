#include "ctl/CommandLine.h"
#include "ctl/Help.h"

#include "support/TestMain.h"

#include <QBuffer>

using namespace Qt::Literals::StringLiterals;

namespace {

/// One that has an operand or option of every kind.
const Command Everything{"card make"_L1,
                         {{"red|blue"_L1}, {"NAME"_L1, Times::OneOrMore}},
                         {{"--field"_L1, "NAME=VALUE"_L1, {}, Times::Any},
                          {"--secret"_L1, "NAME=FILE"_L1, {}, Times::Any},
                          {"--from"_L1, "FILE"_L1},
                          {"--to"_L1, "TARGET"_L1, {}, Times::Once},
                          {"--box"_L1, "on|off"_L1},
                          {"--daily"_L1},
                          {"--weekly"_L1, "DAYS"_L1}},
                         {},
                         nullptr,
                         {{{"--daily"_L1, "--weekly"_L1}}}};

} // namespace

class CommandLineTest : public QObject {
    Q_OBJECT

private slots:
    void takesWordsApart_data() {
        // What is taken: operands, options in the order of their names; what is wrong begins with "!".
        const Columns<QString, QString> row("line", "taken");
        row("red a --to x", "red a|--to=x");
        row("BLUE a b --to  --daily", "blue a b|--daily|--to=");
        row("red --to x -- --a", "red --a|--to=x");
        row("red a --to --daily", "red a|--to=--daily");
        row("red a --to x --field B=1 --field A= --field B=2=3", "red a|--field=B=1,A=,B=2=3|--to=x");
        row("red a --to x --box ON", "red a|--box=on|--to=x");
        row("red a --to x --secret P=- --from f", "red a|--from=f|--secret=P=-|--to=x");
        row("red a --to x --secret P=- --from -", "!Standard input");
        row("red a --to x --secret P=- --secret Q=-", "!Standard input");
        row("red a --to x --daily --weekly mon", "!At most one");
        row("red a --to x --to x", "!--to is given twice");
        row("red a --to x --daily --daily", "!--daily is given twice");
        row("red a --to x --field novalue", "!--field takes");
        row("red a --to x --field =1", "!--field takes");
        row("red a --to x --box maybe", "!--box is one of on, off");
        row("green a --to x", "!\"green\"");
        row("red --to x", "!The command line is");
        row("red a", "!--to is needed");
        row("red a --to", "!--to needs a value");
        row("red a --to x --other", "!--other is no option");
    }

    void takesWordsApart() {
        const auto [line, taken] = Fetched<QString, QString>();
        QBuffer none;
        Invocation invocation{{}, {}, none, none, none, {}};
        const QString mistake = TakeWords(Everything, line.split(u' '), invocation);
        if (taken.startsWith(u'!')) {
            QVERIFY2(mistake.startsWith(taken.mid(1)), qPrintable(mistake));
            return;
        }
        QStringList found{invocation.operands.join(u' ')};
        for (auto option = invocation.options.cbegin(); option != invocation.options.cend(); ++option)
            found += option->isEmpty() ? option.key() : option.key() + u'=' + option->join(u',');
        QCOMPARE(mistake, QString());
        QCOMPARE(found.join(u'|'), taken);
    }

    void usageShowsWhatMayBeLeftOut() {
        QCOMPARE(UsageOf(Everything),
                 u"card make red|blue NAME... [--field NAME=VALUE]... [--secret NAME=FILE]... "
                 "[--from FILE] --to TARGET [--box on|off] [--daily | --weekly DAYS]"_s);
        QCOMPARE(UsageOf(*FindCommand({u"settings"_s, u"set"_s})),
                 u"settings set NAME (VALUE | --from FILE) [--type int|string|bool]"_s);
    }

    void helpAndManPageHoldEverything() {
        const QString help = HelpText();
        QString page = ManPage();
        page.replace(u"\\-"_s, u"-"_s).replace(u"\\(aq"_s, u"'"_s);
        for (const Command& command : AllCommands()) {
            for (const QString& text : {help, page, HelpText(QString(command.words).split(u' '))}) {
                QVERIFY2(text.contains(UsageOf(command)), command.words.data());
                for (const CommandOption& option : command.options)
                    QVERIFY2(!option.help.isEmpty() && text.contains(option.help), option.name.data());
            }
        }
        QVERIFY(HelpText({u"task"_s}).contains("task pause"_L1) &&
                !HelpText({u"task"_s}).contains("tasks"_L1));
    }
};

BTASK_TEST(CommandLineTest);
#include "CommandLineTest.moc"
