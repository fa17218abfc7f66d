#include "ctl/Rows.h"

#include "service/AccountQuota.h"
#include "service/LoginCard.h"
#include "service/RequestText.h"
#include "service/VDirLogin.h"
#include "service/VirtualDirectories.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// The records of the list, or the exit code after a sentence.
struct DirectoryList {
    std::vector<VDirRecord> records;
    CtlExit exit = CtlExit::Done;
};

DirectoryList ReadDirectories(const Invocation& invocation) {
    const ServiceAnswer answer = ServiceClient().RequestVdirList(invocation.stop);
    if (!answer)
        return {{}, invocation.End(invocation.End(answer), NoVdirListText())};
    if (!answer.length)
        return {{}, invocation.EndBrokenOff()};
    auto records = ParseVdirList(answer.body);
    if (!records)
        return {
            {},
            invocation.End(CtlExit::Refused, u"The service's answer is no list of virtual directories."_s)};
    return {std::move(*records)};
}

/// Runs with the directory that the first operand names, ignoring case.
CtlExit WithDirectory(const Invocation& invocation,
                      CtlExit (*run)(const Invocation&, const VDirRecord&, const DirectoryList&)) {
    const QString& name = invocation.operands[0];
    const DirectoryList list = ReadDirectories(invocation);
    if (list.exit != CtlExit::Done)
        return list.exit;
    const VDirRecord* record = FindVDir(list.records, name);
    if (!record)
        return invocation.End(CtlExit::Refused, u"There is no virtual directory \"%1\"."_s.arg(name));
    return run(invocation, *record, list);
}

CtlExit ListDirectories(const Invocation& invocation) {
    const std::vector<Column> columns{{"name"_L1, "NAME"_L1},
                                      {"status"_L1},
                                      {"statusText"_L1, "STATUS"_L1},
                                      {"spId"_L1, "PROVIDER"_L1},
                                      {"safeCardId"_L1, "CARD"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        const DirectoryList list = ReadDirectories(invocation);
        for (const VDirRecord& record : list.records) {
            const QString text = QString::fromLatin1(MeaningOfStatus(record.status).text).toLower();
            if (!rows.Add({record.name, record.status, text, record.spId, record.safeCardId}))
                break;
        }
        return list.exit;
    });
}

CtlExit Login(const Invocation& invocation, const VDirRecord& record, const DirectoryList&) {
    if (const QString refusal = ReloginRefusal(record.name); !refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    const ServiceClient service;
    const std::stop_token stop = invocation.StoppedByInterrupt().stop;
    if (const ServiceAnswer answer = ForceRelogin(service, record.name, stop); !answer)
        return invocation.End(answer);
    const LoginOutcome outcome = WaitForLogin(service, record, {}, stop);
    if (outcome.end == LoginEnd::LoggedIn)
        return CtlExit::Done;
    const bool unanswered = outcome.end == LoginEnd::Silent || outcome.end == LoginEnd::Cancelled;
    return invocation.End(unanswered ? CtlExit::Unreachable : CtlExit::Refused, outcome.words);
}

CtlExit Dismount(const Invocation& invocation, const VDirRecord& record, const DirectoryList&) {
    if (const QString question = DocumentQuestion(u"The name"_s, record.name); !question.isEmpty())
        return invocation.End(CtlExit::Usage, question);
    return invocation.End(DismountVDir(ServiceClient(), record.name, invocation.stop));
}

CtlExit Rename(const Invocation& invocation, const VDirRecord& record, const DirectoryList& list) {
    const QString& newName = invocation.operands[1];
    if (const QString refusal = RenameRefusal(record.name, newName, {}); !refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    if (const QString taken = RenameRefusal(record.name, newName, list.records); !taken.isEmpty())
        return invocation.End(CtlExit::Refused, taken);
    if (newName == record.name)
        return CtlExit::Done;
    return invocation.End(RenameVDir(ServiceClient(), record.name, newName, invocation.stop));
}

CtlExit ShowCard(const Invocation& invocation, const VDirRecord& record, const DirectoryList&) {
    if (const QString refusal = QueryRefusal(record.safeCardId); !refusal.isEmpty())
        return invocation.End(CtlExit::Refused, refusal);
    const std::vector<Column> columns{{"fieldName"_L1, "FIELD"_L1}, {"value"_L1, "VALUE"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        const ServiceAnswer answer = RequestLoginCard(ServiceClient(), record.safeCardId, invocation.stop);
        if (!answer)
            return invocation.End(answer);
        if (!answer.length)
            return invocation.EndBrokenOff();
        const auto fields = ParseLoginCard(answer.body);
        if (!fields)
            return invocation.End(CtlExit::Refused, u"The service's answer is no login card."_s);
        for (const CardField& field : *fields)
            if (!rows.Add({field.name, field.value}))
                break;
        return CtlExit::Done;
    });
}

template <CtlExit (*run)(const Invocation&, const VDirRecord&, const DirectoryList&)>
CtlExit OnDirectory(const Invocation& invocation) {
    return WithDirectory(invocation, run);
}

CtlExit ShowQuota(const Invocation& invocation) {
    const std::vector<Column> columns{
        {"used"_L1, "USED"_L1}, {"allocated"_L1, "ALLOCATED"_L1}, {"available"_L1, "AVAILABLE"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        const ServiceAnswer answer = RequestQuota(ServiceClient(), invocation.stop);
        if (!answer)
            return invocation.End(answer);
        const auto quota = ParseQuota(answer.body);
        if (!quota)
            return invocation.End(CtlExit::Refused, u"The service does not tell the account's quota."_s);
        rows.Add({quota->used, quota->allocated, quota->Available()});
        return CtlExit::Done;
    });
}

} // namespace

std::vector<Command> DirectoryCommands() {
    const Operand name{"NAME"_L1};
    return {
        {"vdirs"_L1, {}, {JsonOption}, "The virtual directories and how they stand."_L1, ListDirectories},
        {"vdir login"_L1,
         {name},
         {},
         "Logs the virtual directory in anew, and ends when it is logged in or has failed.\n"
         "Interrupted, it waits no longer; the service goes on."_L1,
         OnDirectory<Login>},
        {"vdir dismount"_L1, {name}, {}, "Dismounts the virtual directory."_L1, OnDirectory<Dismount>},
        {"vdir rename"_L1,
         {name, {"NEW"_L1}},
         {},
         "Gives the virtual directory another name."_L1,
         OnDirectory<Rename>},
        {"card"_L1,
         {{"VDIR"_L1}},
         {JsonOption},
         "The fields of the virtual directory's login card; the value of an encrypted one is\n"
         "not shown."_L1,
         OnDirectory<ShowCard>},
        {"quota"_L1, {}, {JsonOption}, "The quota of the home storage, in octets."_L1, ShowQuota},
    };
}
