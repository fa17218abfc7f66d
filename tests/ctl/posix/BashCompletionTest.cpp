#include "ctl/Command.h"
#include "ctl/Help.h"

#include "support/TestMain.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

/// Has bash complete command lines by the script that we make.
class BashCompletionTest : public QObject {
    Q_OBJECT

private slots:
    void offersWhatMayFollow_data() {
        // The line up to the word in work, and all that is offered for it.
        const Columns<QString, QString> row("line", "offered");
        row("btaskctl ta", "task tasks");
        row("btaskctl --server ta", "task tasks");
        row("btaskctl task re", "resume");
        row("btaskctl task start {1} --", "--wait");
        row("btaskctl tasks --state F", "Failed");
        row("btaskctl tasks --state Failed --js", "--json");
        row("btaskctl settings set Level 3 --type ", "bool int string");
        row("btaskctl settings set Level --from hel", "hello.txt");
        row("btaskctl audit --contains ", "");
    }

    void offersWhatMayFollow() {
        const auto [line, offered] = Fetched<QString, QString>();
        QCOMPARE(Completed(line), offered);
    }

    void knowsEveryCommand() {
        for (const Command& command : AllCommands()) {
            const QString words = command.words;
            QVERIFY2(Completed(u"btaskctl "_s + words).split(u' ').contains(words.section(u' ', -1)),
                     command.words.data());
            for (const CommandOption& option : command.options)
                QVERIFY2(
                    Completed(u"btaskctl %1 %2"_s.arg(words, option.name)).split(u' ').contains(option.name),
                    option.name.data()); // it may be the beginning of others
        }
    }

private:
    /// What the script offers for the last word of the line, sorted.
    static QString Completed(const QString& line) {
        const QTemporaryDir folder;
        QFile script(folder.filePath(u"completion"_s));
        QFile hello(folder.filePath(u"hello.txt"_s));
        if (!script.open(QIODevice::WriteOnly) || !hello.open(QIODevice::WriteOnly))
            return u"no file"_s;
        script.write(BashCompletion().toUtf8());
        script.close();
        QProcess bash;
        bash.setWorkingDirectory(folder.path());
        bash.start(u"bash"_s,
                   {u"-c"_s,
                    u". ./completion; IFS=' ' read -ra COMP_WORDS <<<\"$1\"; "
                    "case $1 in *' ') COMP_WORDS+=('') ;; esac; COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
                    "_btaskctl; printf '%s\\n' \"${COMPREPLY[@]}\" | sort -u"_s,
                    u"bash"_s, line});
        bash.waitForFinished();
        const QString said = QString::fromUtf8(bash.readAllStandardError());
        return said.isEmpty() ? QString::fromUtf8(bash.readAllStandardOutput()).simplified() : said;
    }
};

BTASK_TEST(BashCompletionTest);
#include "BashCompletionTest.moc"
