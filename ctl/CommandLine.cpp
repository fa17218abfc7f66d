#include "ctl/CommandLine.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool MayRepeat(Times times) {
    return times == Times::Any || times == Times::OneOrMore;
}

bool IsNeeded(Times times) {
    return times == Times::Once || times == Times::OneOrMore;
}

QString WithTimes(const QString& text, Times times) {
    const QString framed = IsNeeded(times) ? text : u'[' + text + u']';
    return MayRepeat(times) ? framed + u"..."_s : framed;
}

QString PlainUsage(const CommandOption& option) {
    return option.value.isEmpty() ? QString(option.name) : option.name + u' ' + option.value;
}

/// The word of the choice as the command knows it; none when it is no such word.
std::optional<QString> Chosen(const QStringList& choices, const QString& word) {
    for (const QString& choice : choices) {
        if (choice.compare(word, Qt::CaseInsensitive) == 0)
            return choice;
    }
    return {};
}

/// Puts a word of a choice as the command knows it. Returns what is wrong with it, if anything.
QString TakeChoice(const QString& what, QLatin1String name, QString& word) {
    const QStringList choices = ChoicesOf(name);
    if (choices.isEmpty())
        return {};
    const auto chosen = Chosen(choices, word);
    if (!chosen)
        return u"%1 is one of %2."_s.arg(what, choices.join(u", "_s));
    word = *chosen;
    return {};
}

QString TakeValue(const CommandOption& option, QString value, Invocation& invocation) {
    if (option.value.startsWith("NAME="_L1) && value.indexOf(u'=') < 1)
        return u"%1 takes %2, with an equals sign between them."_s.arg(option.name, option.value);
    QString mistake = TakeChoice(option.name, option.value, value);
    if (mistake.isEmpty())
        invocation.options[option.name] += value;
    return mistake;
}

QString TakeOption(const Command& command, const QStringList& words, qsizetype& at, Invocation& invocation) {
    const QString& word = words[at];
    const auto option = std::find_if(command.options.begin(), command.options.end(),
                                     [&word](const CommandOption& known) { return known.name == word; });
    if (option == command.options.end())
        return u"%1 is no option of \"%2\"."_s.arg(word, command.words);
    if (invocation.options.contains(word) && !MayRepeat(option->times))
        return u"%1 is given twice."_s.arg(word);
    if (option->value.isEmpty()) {
        invocation.options[word] = {};
        return {};
    }
    if (at + 1 == words.size())
        return u"%1 needs a value."_s.arg(word);
    return TakeValue(*option, words[++at], invocation);
}

QString CheckOperands(const Command& command, Invocation& invocation) {
    const auto count = static_cast<size_t>(invocation.operands.size());
    const auto needed =
        static_cast<size_t>(std::count_if(command.operands.begin(), command.operands.end(),
                                          [](const Operand& operand) { return IsNeeded(operand.times); }));
    const bool open = !command.operands.empty() && MayRepeat(command.operands.back().times);
    if (count < needed || (count > command.operands.size() && !open))
        return u"The command line is: btaskctl %1"_s.arg(UsageOf(command));
    for (size_t i = 0; i < count; ++i) {
        const Operand& operand = command.operands[std::min(i, command.operands.size() - 1)];
        QString& word = invocation.operands[static_cast<qsizetype>(i)];
        QString mistake = TakeChoice(u"\"%1\": this operand"_s.arg(word), operand.name, word);
        if (!mistake.isEmpty())
            return mistake;
    }
    return {};
}

bool IsGiven(const Command& command, const Invocation& invocation, QLatin1String name) {
    if (name.startsWith("--"_L1))
        return invocation.Has(name);
    const auto operand = std::find_if(command.operands.begin(), command.operands.end(),
                                      [name](const Operand& each) { return each.name == name; });
    return operand - command.operands.begin() < invocation.operands.size();
}

QString CheckOptions(const Command& command, const Invocation& invocation) {
    for (const CommandOption& option : command.options) {
        if (IsNeeded(option.times) && !invocation.Has(option.name))
            return u"%1 is needed. The command line is: btaskctl %2"_s.arg(option.name, UsageOf(command));
    }
    for (const Alternatives& alternatives : command.alternatives) {
        const auto given =
            std::count_if(alternatives.names.begin(), alternatives.names.end(),
                          [&](QLatin1String name) { return IsGiven(command, invocation, name); });
        if (given > 1 || (given == 0 && alternatives.needed))
            return u"%1 is given of these: %2."_s.arg(
                alternatives.needed ? u"Exactly one"_s : u"At most one"_s,
                QStringList(alternatives.names.begin(), alternatives.names.end()).join(u", "_s));
    }
    return {};
}

/// Standard input can be read once only.
QString CheckInputs(const Command& command, const Invocation& invocation) {
    qsizetype count = 0;
    for (const CommandOption& option : command.options) {
        if (!option.value.endsWith("FILE"_L1))
            continue;
        const bool named = option.value.startsWith("NAME="_L1);
        for (const QString& value : invocation.Values(option.name))
            count += (named ? value.mid(value.indexOf(u'=') + 1) : value) == "-"_L1;
    }
    return count > 1 ? u"Standard input can be read once only."_s : QString();
}

} // namespace

const std::vector<Command>& AllCommands() {
    static const std::vector<Command> all = [] {
        std::vector<Command> commands = DatabaseCommands();
        for (const auto& more :
             {LiveCommands(), TaskCommands(), SettingsCommands(), DirectoryCommands(), MountCommands(),
              FolderCommands(), BackupCommands(), CreateCommands(), ApplicationCommands(), SnapshotCommands(),
              SyncFolderCommands(), MailCommands(), DavCommands(), RequestCommands(), HelpCommands()})
            commands.insert(commands.end(), more.begin(), more.end());
        return commands;
    }();
    return all;
}

const Command* FindCommand(const QStringList& words) {
    const std::vector<Command>& commands = AllCommands();
    const auto found = std::find_if(commands.begin(), commands.end(), [&words](const Command& command) {
        const QStringList own = QString(command.words).split(u' ');
        return words.mid(0, own.size()) == own;
    });
    return found == commands.end() ? nullptr : &*found;
}

QString TakeWords(const Command& command, const QStringList& words, Invocation& invocation) {
    bool optionsEnded = false;
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (optionsEnded || !words[i].startsWith("--"_L1)) {
            invocation.operands += words[i];
            continue;
        }
        optionsEnded = words[i] == "--"_L1;
        QString mistake = optionsEnded ? QString() : TakeOption(command, words, i, invocation);
        if (!mistake.isEmpty())
            return mistake;
    }
    for (const QString& mistake : {CheckOperands(command, invocation), CheckOptions(command, invocation),
                                   CheckInputs(command, invocation)}) {
        if (!mistake.isEmpty())
            return mistake;
    }
    return {};
}

QString UsageOf(const Command& command) {
    QStringList parts{QString(command.words)};
    QList<QLatin1String> told;
    const auto add = [&](QLatin1String name, const QString& plain, Times times) {
        const auto group = std::find_if(command.alternatives.begin(), command.alternatives.end(),
                                        [name](const Alternatives& each) {
                                            return std::count(each.names.begin(), each.names.end(), name) > 0;
                                        });
        if (group == command.alternatives.end()) {
            parts += WithTimes(plain, times);
            return;
        }
        if (!told.contains(group->names.front()))
            parts += group->needed ? u"()"_s : u"[]"_s;
        else
            parts.last().insert(parts.last().size() - 1, u" | "_s);
        told += group->names.front();
        parts.last().insert(parts.last().size() - 1, MayRepeat(times) ? plain + u"..."_s : plain);
    };
    for (const Operand& operand : command.operands)
        add(operand.name, operand.name, operand.times);
    for (const CommandOption& option : command.options)
        add(option.name, PlainUsage(option), option.times);
    return parts.join(u' ');
}

QStringList ChoicesOf(QLatin1String name) {
    return name.contains('|'_L1) ? QString(name).split(u'|') : QStringList();
}
