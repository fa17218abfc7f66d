#include "ctl/Rows.h"

#include "service/RequestText.h"
#include "service/Setting.h"
#include "service/SettingsCatalog.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Settings whose value is shown nowhere and never comes from an argument.
const QStringList Secrets{u"EncFolderKey"_s, u"ProxyPwd"_s};
/// Settings that a character changed on the way would damage.
const QStringList Lists{u"DropFolders"_s};
const QString Hidden = u"******"_s;

struct TypeWord {
    ServiceClient::ValueType type;
    QLatin1String word;
};

constexpr TypeWord TypeWords[] = {{ServiceClient::ValueType::Integer, "int"_L1},
                                  {ServiceClient::ValueType::String, "string"_L1},
                                  {ServiceClient::ValueType::Boolean, "bool"_L1}};

QString WordOf(ServiceClient::ValueType type) {
    const auto known = std::find_if(std::begin(TypeWords), std::end(TypeWords),
                                    [type](const TypeWord& each) { return each.type == type; });
    return known == std::end(TypeWords) ? QString() : QString(known->word);
}

/// Whether a request can name the setting; it is told when not.
bool CanBeNamed(const Invocation& invocation, const QString& name) {
    const QStringList lost = LostInPath(name);
    if (!lost.isEmpty())
        invocation.End(CtlExit::Usage,
                       u"A request cannot carry %1 in the name of a setting."_s.arg(lost.join(u", "_s)));
    return lost.isEmpty();
}

QString NotSetSentence(const QString& name) {
    for (const SettingGroup& group : LoadSettingsCatalog(SettingsCatalogPath())) {
        for (const CatalogSetting& setting : group.settings) {
            if (setting.name == name)
                return u"\"%1\" is not set. Its default is \"%2\"."_s.arg(name, setting.fallback);
        }
    }
    return u"\"%1\" is not set, and no default of it is known."_s.arg(name);
}

CtlExit GetSetting(const Invocation& invocation) {
    const QString& name = invocation.operands[0];
    if (!CanBeNamed(invocation, name))
        return CtlExit::Usage;
    ServiceAnswer answer = ServiceClient().GetSetting(name, invocation.stop);
    if (SettingStateOf(answer) == SettingState::NotSet)
        return invocation.End(CtlExit::Refused, NotSetSentence(name));
    if (Secrets.contains(name, Qt::CaseInsensitive) && !answer.body.isEmpty())
        answer.body = Hidden.toUtf8();
    return invocation.WriteBody(answer, "\n");
}

CtlExit ListSettings(const Invocation& invocation) {
    const SettingsCatalog catalog = LoadSettingsCatalog(SettingsCatalogPath());
    if (catalog.empty())
        return invocation.End(CtlExit::Refused,
                              u"The catalog of settings that ships with the program is missing."_s);
    const std::vector<Column> columns{{"name"_L1, "NAME"_L1},
                                      {"group"_L1, "GROUP"_L1},
                                      {"type"_L1, "TYPE"_L1},
                                      {"default"_L1, "DEFAULT"_L1},
                                      {"value"_L1, "VALUE"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        for (const SettingGroup& group : catalog) {
            for (const CatalogSetting& setting : group.settings) {
                const ServiceAnswer answer = ServiceClient().GetSetting(setting.name, invocation.stop);
                if (SettingStateOf(answer) == SettingState::NotRead)
                    return answer ? invocation.EndBrokenOff() : invocation.End(answer);
                const bool secret = Secrets.contains(setting.name, Qt::CaseInsensitive);
                const QString value = secret && !answer.body.isEmpty() ? Hidden : SettingText(answer.body);
                rows.Add({setting.name, group.title, WordOf(setting.type), setting.fallback,
                          answer ? value : QString()});
            }
        }
        return CtlExit::Done;
    });
}

std::optional<bool> ParseBool(const QString& text) {
    if (text.compare("true"_L1, Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare("false"_L1, Qt::CaseInsensitive) == 0)
        return false;
    return {};
}

CtlExit Send(const Invocation& invocation, const QString& name, const QString& value) {
    const ServiceClient service;
    const QString type = invocation.Option("--type"_L1).value_or(u"string"_s);
    if (type == "bool"_L1) {
        const auto flag = ParseBool(value);
        return flag ? invocation.End(service.SetBoolSetting(name, *flag, invocation.stop))
                    : invocation.End(CtlExit::Usage, u"A bool is true or false."_s);
    }
    if (type == "int"_L1) {
        bool isNumber = false;
        const int number = value.toInt(&isNumber);
        return isNumber ? invocation.End(service.SetIntSetting(name, number, invocation.stop))
                        : invocation.End(CtlExit::Usage, u"An int is a whole number of 32 bits."_s);
    }
    const CtlExit exit = invocation.End(service.SetStringSetting(name, value, invocation.stop));
    const QString remark = QueryRemark(value);
    return exit != CtlExit::Done || remark.isEmpty() ? exit : invocation.End(CtlExit::Done, remark);
}

/// Reads back what was written, since a secret that is kept changed locks its owner out.
CtlExit EndSecret(const Invocation& invocation, const QString& name, const QString& typed) {
    switch (
        CheckSecret(ServiceClient(), {name, ServiceClient::ValueType::String, {}}, typed, invocation.stop)) {
    case KeptSecret::AsTyped:
        return CtlExit::Done;
    case KeptSecret::Otherwise:
        return invocation.End(CtlExit::Refused, u"The password was not stored as typed."_s);
    case KeptSecret::NotTold:
        break;
    }
    return invocation.End(CtlExit::Refused,
                          u"\"%1\" was written, but the service did not tell what it keeps."_s.arg(name));
}

/// The value of the command line or of its file; none when it cannot be had, which is told.
std::optional<QString> ReadValue(const Invocation& invocation) {
    const auto file = invocation.Option("--from"_L1);
    if (!file)
        return invocation.operands[1];
    const auto content = invocation.ReadInput(*file);
    if (!content)
        return {};
    const QString text = QString::fromUtf8(*content);
    if (text.toUtf8() == *content)
        return text;
    invocation.End(CtlExit::Usage, u"The value is no text in UTF-8."_s);
    return {};
}

CtlExit SetSetting(const Invocation& invocation) {
    const QString& name = invocation.operands[0];
    if (!CanBeNamed(invocation, name))
        return CtlExit::Usage;
    const bool secret = Secrets.contains(name, Qt::CaseInsensitive);
    if (secret && !invocation.Has("--from"_L1))
        return invocation.End(CtlExit::Usage,
                              u"\"%1\" is a secret: it is given by --from, not as an argument."_s.arg(name));
    const auto value = ReadValue(invocation);
    if (!value)
        return CtlExit::Usage;
    const QStringList lost = LostInQuery(*value);
    if (!lost.isEmpty() && (secret || Lists.contains(name, Qt::CaseInsensitive)))
        return invocation.End(CtlExit::Usage, u"A request cannot carry %1 in the value of \"%2\"."_s.arg(
                                                  lost.join(u", "_s), name));
    if (const QString refusal = LengthRefusal(name, *value); !refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    const CtlExit exit = Send(invocation, name, *value);
    return exit == CtlExit::Done && secret ? EndSecret(invocation, name, *value) : exit;
}

} // namespace

std::vector<Command> SettingsCommands() {
    const Operand name{"NAME"_L1};
    return {
        {"settings get"_L1,
         {name},
         {},
         "The value of a setting. One that is not set ends with 1, and its default is told\n"
         "on standard error. A secret is not shown."_L1,
         GetSetting},
        {"settings list"_L1,
         {},
         {JsonOption},
         "The settings of the catalog; the value of one that is not set is empty or null."_L1,
         ListSettings},
        {"settings set"_L1,
         {name, {"VALUE"_L1, Times::MaybeOnce}},
         {{"--from"_L1, "FILE"_L1, "the value is what the file holds, without its last line end"_L1},
          {"--type"_L1, "int|string|bool"_L1, "what the value is; a string when not given"_L1}},
         "Changes a setting. The value goes into a query as it stands: write %26 for an\n"
         "ampersand. A list or secret that a query does not carry exactly is refused."_L1,
         SetSetting,
         {{{"VALUE"_L1, "--from"_L1}, true}}},
    };
}
