#include "ctl/Help.h"

#include "ctl/CommandLine.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Purpose = u"commands the storage agent's background service, and shows its tasks"_s;

const QString Rules = uR"(It speaks to the service of the desktop unless --server is given. Data goes to
standard output, sentences to standard error. --json writes a JSON array in place
of a table. Words that begin with "--" are options; behind "--" none is. A TASK is
an identifier, which begins with "{", or a task's name in any case of its letters.
A FILE of "-" is standard input. Nothing ever asks.
)"_s;

struct Entry {
    QString term;
    QString meaning;
};

const QList<Entry> ExitCodes{{u"0"_s, u"done"_s},
                             {u"1"_s, u"refused by the service, no such thing, or it went wrong"_s},
                             {u"2"_s, u"the command line is not understood"_s},
                             {u"3"_s, u"the service is not reachable"_s},
                             {u"4"_s, u"a database cannot be read"_s}};

const QList<Entry> Environment{
    {u"BREN_HOME"_s, u"the data folder of the service, where it is not the usual one"_s},
    {u"BREN_SERVICE_PORT"_s, u"the service's port, where it is not 9678 (desktop) or 9898 (server)"_s}};

const QStringList Examples{
    u"btaskctl tasks --json | jq -r '.[] | select(.stateText == \"Failed\") | .id'"_s,
    u"btaskctl tasks --state failed --state paused"_s,
    u"btaskctl task start 'Photo library' --wait"_s,
    u"btaskctl settings set LogLevel 3 --type int"_s,
    u"btaskctl audit --contains failed --from 2026-03-01 --max 50"_s,
    u"btaskctl request PROPFIND /resources/ --expect 207"_s,
};

CtlExit Help(const Invocation& invocation) {
    if (invocation.Has("--bash-completion"_L1))
        return invocation.Write(BashCompletion().toUtf8());
    if (invocation.Has("--man-page"_L1))
        return invocation.Write(ManPage().toUtf8());
    const QStringList& words = invocation.operands;
    const QString text = words.isEmpty() ? HelpText() : HelpText(words);
    return text.isEmpty() ? invocation.End(CtlExit::Usage, NoSuchCommand(words.join(u' ')))
                          : invocation.Write(text.toUtf8());
}

QString OptionTerm(const CommandOption& option) {
    return option.value.isEmpty() ? QString(option.name) : option.name + u' ' + option.value;
}

QString Describe(const Command& command) {
    QString text =
        u"  %1\n      %2\n"_s.arg(UsageOf(command), QString(command.help).replace(u'\n', u"\n      "_s));
    for (const CommandOption& option : command.options)
        text += u"        %1  %2\n"_s.arg(OptionTerm(option), -20).arg(option.help);
    return text;
}

QString Listed(const QString& title, const QList<Entry>& entries) {
    qsizetype width = 0;
    for (const Entry& entry : entries)
        width = std::max(width, entry.term.size());
    QString text = u'\n' + title + u'\n';
    for (const Entry& entry : entries)
        text += u"  "_s + entry.term.leftJustified(width) + u"  "_s + entry.meaning + u'\n';
    return text;
}

/// A line's text for man(1): what its macros and escapes would take stands for itself.
QString Roff(QString text) {
    text.replace(u'\\', u"\\e"_s).replace(u'-', u"\\-"_s).replace(u'\'', u"\\(aq"_s);
    return text.startsWith(u'.') ? u"\\&"_s + text : text;
}

QString RoffList(const QString& title, const QList<Entry>& entries) {
    QString page = u".SH %1\n"_s.arg(title);
    for (const Entry& entry : entries)
        page += u".TP\n.B %1\n%2\n"_s.arg(Roff(entry.term), Roff(entry.meaning));
    return page;
}

QString RoffCommand(const Command& command) {
    QString page = u".TP\n.B %1\n"_s.arg(Roff(UsageOf(command)));
    for (const QString& line : QString(command.help).split(u'\n'))
        page += Roff(line) + u'\n';
    if (!command.options.empty())
        page += u".RS\n"_s;
    for (const CommandOption& option : command.options)
        page += u".TP\n.B %1\n%2\n"_s.arg(Roff(OptionTerm(option)), Roff(option.help));
    return command.options.empty() ? page : page + u".RE\n"_s;
}

/// What bash offers behind an option or as an operand: words, or "@file" for the names of files.
QString Offered(QLatin1String name) {
    return name.endsWith("FILE"_L1) ? u"@file"_s : ChoicesOf(name).join(u' ');
}

/// One line of the table in the script: the command, and what it takes.
QString CompletionLine(const Command& command) {
    QStringList options;
    QString values;
    for (const CommandOption& option : command.options) {
        options += option.name;
        if (!option.value.isEmpty())
            values += u"        \"=%1 %2\") offered=\"%3\" ;;\n"_s.arg(command.words, option.name,
                                                                       Offered(option.value));
    }
    QStringList operands;
    for (const Operand& operand : command.operands)
        operands += ChoicesOf(operand.name);
    return values +
           u"        \"%1 \"*) offered=\"%2\" ;;\n"_s.arg(command.words, (operands + options).join(u' '));
}

/// The words that may follow each beginning of a command.
QString BeginningLines() {
    QStringList first;
    QMap<QString, QStringList> second;
    for (const Command& command : AllCommands()) {
        const QStringList words = QString(command.words).split(u' ');
        if (!first.contains(words[0]))
            first += words[0];
        if (words.size() > 1)
            second[words[0]] += words[1];
    }
    first += {u"--server"_s, u"--desktop"_s, u"--help"_s, u"--version"_s};
    QString lines = u"        \" \") offered=\"%1\" ;;\n"_s.arg(first.join(u' '));
    for (auto group = second.cbegin(); group != second.cend(); ++group)
        lines += u"        \"%1 \") offered=\"%2\" ;;\n"_s.arg(group.key(), group->join(u' '));
    return lines;
}

} // namespace

QString HelpText() {
    QString text =
        u"btaskctl: %1\n\n  btaskctl [--desktop|--server] COMMAND\n\n%2\nCommands\n"_s.arg(Purpose, Rules);
    for (const Command& command : AllCommands())
        text += Describe(command);
    text += Listed(u"Exit codes"_s, ExitCodes) + Listed(u"Environment"_s, Environment);
    return text + u"\nExamples\n  "_s + Examples.join(u"\n  "_s) + u'\n';
}

QString HelpText(const QStringList& words) {
    QString text;
    for (const Command& command : AllCommands()) {
        const QStringList own = QString(command.words).split(u' ');
        const qsizetype common = std::min(own.size(), words.size());
        if (common > 0 && words.mid(0, common) == own.mid(0, common))
            text += Describe(command);
    }
    return text;
}

QString NoSuchCommand(const QString& words) {
    return u"There is no command \"%1\". \"btaskctl --help\" lists them."_s.arg(words);
}

std::vector<Command> HelpCommands() {
    return {{"help"_L1,
             {{"COMMAND"_L1, Times::Any}},
             {{"--bash-completion"_L1, {}, "the script that completes command lines in bash"_L1},
              {"--man-page"_L1, {}, "the manual page, in the macros of man"_L1}},
             "What there is to command, or how one command or group is used."_L1,
             Help,
             {{{"COMMAND"_L1, "--bash-completion"_L1, "--man-page"_L1}}}}};
}

QString VersionText() {
    return u"btaskctl " BTASK_VERSION "\n"_s;
}

QString BashCompletion() {
    QString lines;
    for (const Command& command : AllCommands())
        lines += CompletionLine(command);
    return uR"(# Completion of btaskctl for bash; made from its table of commands.
_btaskctl() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} offered="" i
    local -a words=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        --server | --desktop) [ ${#words[@]} -gt 0 ] && words+=("${COMP_WORDS[i]}") ;;
        *) words+=("${COMP_WORDS[i]}") ;;
        esac
    done
    # What an option of a command of two words takes, or of one word; else what the command line may go on with.
    local key
    for key in "=${words[0]-} ${words[1]-} $previous" "=${words[0]-} $previous" "${words[*]-} "; do
        offered=""
        case $key in
)"_s + BeginningLines() +
           lines + uR"(        *) continue ;;
        esac
        break
    done
    COMPREPLY=()
    if [ "$offered" = @file ]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$word")
    fi
}
complete -F _btaskctl btaskctl
)"_s;
}

QString ManPage() {
    QString page = u".TH BTASKCTL 1 \"\" \"btaskctl %1\"\n.SH NAME\nbtaskctl \\- %2\n"_s.arg(
        QLatin1String(BTASK_VERSION), Roff(Purpose));
    page += u".SH SYNOPSIS\n.B btaskctl\n[\\-\\-desktop|\\-\\-server] COMMAND\n.SH DESCRIPTION\n"_s;
    for (const QString& line : Rules.split(u'\n', Qt::SkipEmptyParts))
        page += Roff(line) + u'\n';
    page += u".SH COMMANDS\n"_s;
    for (const Command& command : AllCommands())
        page += RoffCommand(command);
    page += RoffList(u"EXIT STATUS"_s, ExitCodes) + RoffList(u"ENVIRONMENT"_s, Environment);
    page += u".SH EXAMPLES\n.nf\n"_s;
    for (const QString& example : Examples)
        page += Roff(example) + u'\n';
    return page + u".fi\n"_s;
}
