#include "ctl/Command.h"

#include "zep/SysInfo.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Introduction =
    uR"(btaskctl: commands the storage agent's background service, and shows its tasks

  btaskctl [--desktop|--server] COMMAND

It speaks to the service of the desktop unless --server is given. Data goes to
standard output, sentences to standard error. --json writes a JSON array in place
of a table. Words that begin with "--" are options; behind "--" none is.

)"_s;

const QString Closing = uR"(Exit codes
  0  done
  1  refused by the service, or no such answer
  2  the command line is not understood
  3  the service is not reachable
  4  a database cannot be read

Environment
  BREN_HOME          the data folder of the service, where it is not the usual one
  BREN_SERVICE_PORT  the service's port, where it is not 9678 (desktop) or 9898 (server)

Examples
  btaskctl tasks --json | jq -r '.[] | select(.stateText == "Failed") | .id'
  btaskctl task start '{6E0C1A52-0F0C-4B8B-9A43-0D6B1F6A7C11}'
  btaskctl settings set LogLevel 3 --type int
  btaskctl audit --contains failed --from 2026-03-01 --max 50
  btaskctl request PROPFIND /resources/ --expect 207
)"_s;

std::vector<Command> AllCommands() {
    std::vector<Command> commands = DatabaseCommands();
    for (const auto& more : {LiveCommands(), ServiceCommands()})
        commands.insert(commands.end(), more.begin(), more.end());
    return commands;
}

QString Usage(const Command& command) {
    QString usage = command.words;
    for (const QLatin1String operand : command.operands)
        usage += u' ' + QString(operand);
    for (const CommandOption& option : command.options)
        usage +=
            u" [%1%2]"_s.arg(option.name, option.value.isEmpty() ? QString() : u' ' + QString(option.value));
    return usage;
}

QString Describe(const Command& command) {
    QString text = QString(command.help).replace(u'\n', u"\n      "_s);
    return u"  %1\n      %2\n"_s.arg(Usage(command), text);
}

QString HelpText(const std::vector<Command>& commands) {
    QString text = Introduction + u"Commands\n"_s;
    for (const Command& command : commands)
        text += Describe(command);
    return text + u'\n' + Closing;
}

/// Takes the command's options out of `words`; what remains are the operands. Returns what is wrong, if
/// anything.
QString TakeOptions(const Command& command, const QStringList& words, Invocation& invocation) {
    bool optionsEnded = false;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        if (optionsEnded || !word.startsWith("--"_L1)) {
            invocation.operands += word;
            continue;
        }
        optionsEnded = word == "--"_L1;
        if (optionsEnded)
            continue;
        const auto option = std::find_if(command.options.begin(), command.options.end(),
                                         [&word](const CommandOption& known) { return known.name == word; });
        if (option == command.options.end())
            return u"%1 is no option of \"%2\"."_s.arg(word, command.words);
        if (!option->value.isEmpty() && i + 1 == words.size())
            return u"%1 needs a value."_s.arg(word);
        invocation.options[word] = option->value.isEmpty() ? QString() : words[++i];
    }
    return {};
}

const Command* FindCommand(const std::vector<Command>& commands, const QStringList& words) {
    const auto found = std::find_if(commands.begin(), commands.end(), [&words](const Command& command) {
        const QStringList own = QString(command.words).split(u' ');
        return words.mid(0, own.size()) == own;
    });
    return found == commands.end() ? nullptr : &*found;
}

CtlExit RunCommand(const Command& command, const QStringList& words, Invocation& invocation) {
    QString mistake = TakeOptions(command, words, invocation);
    if (mistake.isEmpty() && invocation.operands.size() != static_cast<qsizetype>(command.operands.size()))
        mistake = u"The command line is: btaskctl %1"_s.arg(Usage(command));
    return mistake.isEmpty() ? command.run(invocation) : invocation.End(CtlExit::Usage, mistake);
}

/// Takes the leading switches that say which service is meant.
void TakeMode(QStringList& words) {
    bool serverMode = false;
    while (words.value(0) == "--server"_L1 || words.value(0) == "--desktop"_L1)
        serverMode = words.takeFirst() == "--server"_L1;
    ZEPSysInfoSetServerMode(serverMode);
}

bool AsksForHelp(const QStringList& words) {
    return words.mid(0, words.indexOf("--"_L1)).contains("--help"_L1) || words.value(0) == "help"_L1;
}

} // namespace

CtlExit RunBtaskctl(const QStringList& arguments, QIODevice& out, QIODevice& error, std::stop_token stop) {
    Invocation invocation{{}, {}, out, error, std::move(stop)};
    QStringList words = arguments;
    TakeMode(words);
    const std::vector<Command> commands = AllCommands();
    const Command* command = FindCommand(commands, words);
    if (AsksForHelp(words)) {
        out.write((command != nullptr ? Describe(*command) : HelpText(commands)).toUtf8());
        return CtlExit::Done;
    }
    if (command == nullptr) {
        const QString what =
            words.isEmpty() ? u"No command is given."_s : u"There is no command \"%1\"."_s.arg(words[0]);
        return invocation.End(CtlExit::Usage, what + u" \"btaskctl --help\" lists them."_s);
    }
    return RunCommand(*command, words.mid(QString(command->words).count(u' ') + 1), invocation);
}
