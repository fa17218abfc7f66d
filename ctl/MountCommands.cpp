#include "ctl/Rows.h"

#include "service/MountRun.h"
#include "service/ServiceExtensions.h"
#include "service/VirtualDirectories.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A value of the command line for a login field.
struct GivenField {
    QString name;
    QString value; ///< of a secret the file that holds it
    bool secret = false;
};

/// What a command goes on with, or how it ends.
template <typename Value>
struct Found {
    std::optional<Value> value;
    CtlExit exit = CtlExit::Done;
};

Found<std::vector<StorageProvider>> ReadProviders(const Invocation& invocation) {
    const ServiceAnswer answer = RequestProviders(ServiceClient(), invocation.stop);
    if (!answer)
        return {{}, invocation.End(answer)};
    auto providers = ParseProviders(answer.body);
    if (!providers)
        return {{}, invocation.End(CtlExit::Refused, u"The answer is no list of storage providers."_s)};
    return {std::move(providers)};
}

CtlExit ListProviders(const Invocation& invocation) {
    return WriteRows(
        invocation, {{"displayName"_L1, "NAME"_L1}, {"spId"_L1, "SPID"_L1}}, [&](RowWriter& rows) {
            const auto providers = ReadProviders(invocation);
            for (const StorageProvider& provider : providers.value.value_or(std::vector<StorageProvider>()))
                rows.Add({provider.displayName, provider.spId});
            return providers.exit;
        });
}

Found<StorageProvider> FindProvider(const Invocation& invocation, const QString& spId) {
    const auto providers = ReadProviders(invocation);
    if (!providers.value)
        return {{}, providers.exit};
    std::vector<StorageProvider> named;
    std::copy_if(
        providers.value->begin(), providers.value->end(), std::back_inserter(named),
        [&spId](const StorageProvider& each) { return each.spId.compare(spId, Qt::CaseInsensitive) == 0; });
    if (named.size() == 1)
        return {named.front()};
    return {{},
            invocation.End(CtlExit::Refused,
                           named.empty()
                               ? u"There is no storage provider \"%1\"."_s.arg(spId)
                               : u"Several storage providers have the identifier \"%1\"."_s.arg(spId))};
}

std::vector<GivenField> GivenFields(const Invocation& invocation) {
    std::vector<GivenField> given;
    for (const auto& [option, secret] : {std::pair("--field"_L1, false), {"--secret"_L1, true}})
        for (const QString& value : invocation.Values(option)) {
            const qsizetype at = value.indexOf(u'=');
            given.push_back({value.first(at), value.sliced(at + 1), secret});
        }
    return given;
}

/// What a file of a secret holds, as text; none when it cannot be had, which is told.
std::optional<QString> ReadSecret(const Invocation& invocation, const GivenField& field) {
    const auto content = invocation.ReadInput(field.value);
    if (!content)
        return {};
    const QString text = QString::fromUtf8(*content);
    if (text.toUtf8() == *content)
        return text;
    invocation.End(CtlExit::Usage, u"The value of \"%1\" is no text in UTF-8."_s.arg(field.name));
    return {};
}

/// The place of the field that a name means the n-th time it is given, for templates with several of one
/// name. Not a place of the template: there is none.
std::size_t PlaceOf(const std::vector<LoginField>& fields, const QString& name, int nth) {
    std::size_t place = 0;
    while (place < fields.size() && (fields[place].name != name || --nth > 0))
        ++place;
    return place;
}

/// The values of the login, one a field; those that are not given are the template's.
Found<QStringList> TakeValues(const Invocation& invocation, const StorageProvider& provider) {
    QStringList values = InitialValues(provider);
    QMap<QString, int> times;
    for (const GivenField& given : GivenFields(invocation)) {
        const int nth = ++times[given.name];
        const std::size_t place = PlaceOf(provider.fields, given.name, nth);
        if (place == provider.fields.size() && nth > 1)
            return {
                {},
                invocation.End(CtlExit::Usage, u"The field \"%1\" is given too often."_s.arg(given.name))};
        if (place == provider.fields.size())
            return {{},
                    invocation.End(CtlExit::Refused,
                                   u"\"%1\" has no field \"%2\"."_s.arg(provider.displayName, given.name))};
        if (provider.fields[place].encrypted && !given.secret)
            return {{},
                    invocation.End(CtlExit::Usage,
                                   u"\"%1\" is a secret: it is given by --secret, not as an argument."_s.arg(
                                       given.name))};
        const auto value = given.secret ? ReadSecret(invocation, given) : given.value;
        if (!value)
            return {{}, CtlExit::Usage};
        values[qsizetype(place)] = *value;
    }
    if (const auto refusal = CheckLogin(provider.fields, values))
        return {{},
                invocation.End(CtlExit::Usage,
                               u"%1 (%2)"_s.arg(refusal->why, provider.fields[refusal->field].name))};
    return {std::move(values)};
}

CtlExit CheckName(const Invocation& invocation, const QString& name) {
    const ServiceAnswer answer = ServiceClient().RequestVdirList(invocation.stop);
    if (!answer)
        return invocation.End(answer.outcome == ServiceOutcome::OtherStatus ? CtlExit::Refused
                                                                            : CtlExit::Unreachable,
                              NoVdirListText());
    const auto records = ParseVdirList(answer.body).value_or(std::vector<VDirRecord>());
    const QString refusal = VDirNameRefusal(name, records);
    return refusal.isEmpty() ? CtlExit::Done : invocation.End(CtlExit::Refused, refusal);
}

MountOutcome RunMount(const Invocation& invocation, const MountOrder& order) {
    const Invocation stopped = invocation.StoppedByInterrupt();
    MountRun run(ServiceClient(), order);
    while (const auto wait = run.Next(stopped.stop))
        if (!stopped.Pause(*wait))
            run.CallOff();
    return run.Outcome();
}

CtlExit EndMount(const Invocation& invocation, const MountOrder& order, const MountOutcome& outcome) {
    if (outcome.end != MountOutcome::End::Mounted)
        return invocation.End(CtlExit::Refused, outcome.Words());
    const CtlExit told =
        outcome.message.isEmpty() ? CtlExit::Done : invocation.Write(outcome.message.toUtf8() + '\n');
    const QString failure = FinishMount(ServiceClient(), order, invocation.stop);
    return failure.isEmpty() ? told : invocation.End(CtlExit::Refused, failure);
}

CtlExit Mount(const Invocation& invocation) {
    const QString& name = invocation.operands[1];
    if (const QString refusal = VDirNameRefusal(name, {}); !refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    const auto provider = FindProvider(invocation, invocation.operands[0]);
    if (!provider.value)
        return provider.exit;
    const auto values = TakeValues(invocation, *provider.value);
    if (!values.value)
        return values.exit;
    if (const CtlExit exit = CheckName(invocation, name); exit != CtlExit::Done)
        return exit;
    const QStringList questions = MountQuestions(*provider.value, name);
    if (!questions.isEmpty())
        return invocation.End(CtlExit::Refused, questions.first());
    const bool publish = invocation.Has("--publish"_L1);
    if (publish && !TakesConsoleRecords(ServiceClient(), invocation.stop).value_or(false))
        return invocation.End(CtlExit::Refused, u"This service offers no publishing."_s);
    const LoginCard card = MakeCard(name, provider.value->fields, *values.value);
    const MountOrder order{*provider.value, name, card, false, publish};
    return EndMount(invocation, order, RunMount(invocation, order));
}

} // namespace

std::vector<Command> MountCommands() {
    return {
        {"providers"_L1,
         {},
         {JsonOption},
         "The storage providers whose accounts can be mounted."_L1,
         ListProviders},
        {"mount"_L1,
         {{"SPID"_L1}, {"NAME"_L1}},
         {{"--field"_L1, "NAME=VALUE"_L1,
           "a field of the login; what is not given is as the provider has it"_L1, Times::Any},
          {"--secret"_L1, "NAME=FILE"_L1, "a field whose value is what the file holds"_L1, Times::Any},
          {"--publish"_L1, {}, "publish the folder once it is mounted"_L1}},
         "Mounts an account of a storage provider as a virtual directory and waits for its\n"
         "login. Interrupted, it removes the virtual directory again."_L1,
         Mount},
    };
}
