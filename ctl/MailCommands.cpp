#include "ctl/Rows.h"

#include "service/KnownSettings.h"
#include "service/RequestText.h"
#include "smtp/MailAddress.h"
#include "smtp/TestMail.h"

using namespace Qt::Literals::StringLiterals;

namespace {

CtlExit ShowMail(const Invocation& invocation) {
    const std::vector<Column> columns{
        {"address"_L1, "ADDRESS"_L1}, {"success"_L1, "SUCCESS"_L1}, {"failure"_L1, "FAILURE"_L1}};
    return WriteRows(invocation, columns, [&invocation](RowWriter& rows) {
        QStringList texts; // a null one for a setting that is not set
        for (const TextSetting& setting :
             {Settings::EmailNotification.AsText(), Settings::SuccNotification.AsText(),
              Settings::FailNotification.AsText()}) {
            const ServiceAnswer answer = ServiceClient().GetSetting(setting.name, invocation.stop);
            if (SettingStateOf(answer) == SettingState::NotRead)
                return answer ? invocation.EndBrokenOff() : invocation.End(answer);
            texts += answer ? SettingText(answer.body) : QString();
        }
        rows.Add({texts[0], SettingFlag(texts[1].toUtf8()), SettingFlag(texts[2].toUtf8())});
        return CtlExit::Done;
    });
}

CtlExit SetMail(const Invocation& invocation) {
    const QString& address = invocation.operands[0];
    QString refusal = AddressRefusal(address);
    if (refusal.isEmpty())
        refusal = LengthRefusal(QLatin1String(Settings::EmailNotification.name), address);
    if (!refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    const ServiceClient service;
    for (const auto& [option, setting] : {std::pair("--success"_L1, Settings::SuccNotification),
                                          {"--failure"_L1, Settings::FailNotification}}) {
        const auto given = invocation.Option(option);
        if (!given)
            continue;
        const CtlExit exit =
            invocation.End(WriteSetting(service, setting, *given == "on"_L1, invocation.stop));
        if (exit != CtlExit::Done)
            return exit;
    }
    const CtlExit exit =
        invocation.End(WriteSetting(service, Settings::EmailNotification, address, invocation.stop));
    const QString remark = QueryRemark(address);
    return exit != CtlExit::Done || remark.isEmpty() ? exit : invocation.End(CtlExit::Done, remark);
}

CtlExit TestMail(const Invocation& invocation) {
    const auto tell = [&invocation](const QString& step) { invocation.Write(step.toUtf8() + '\n'); };
    const TestMailResult result = SendTestMail(invocation.operands[0], tell, invocation.stop);
    if (result.end == TestMailResult::End::Sent)
        return invocation.Write(result.Words().toUtf8() + '\n');
    const bool misused = result.end == TestMailResult::End::Refused;
    return invocation.End(misused ? CtlExit::Usage : CtlExit::Refused, result.Words());
}

} // namespace

std::vector<Command> MailCommands() {
    const Operand address{"ADDRESS"_L1};
    return {
        {"mail show"_L1,
         {},
         {JsonOption},
         "Whom the service mails about backup tasks, and whether it does when one succeeds or fails."_L1,
         ShowMail},
        {"mail set"_L1,
         {address},
         {{"--success"_L1, "on|off"_L1, "whether a task that succeeds is mailed about"_L1},
          {"--failure"_L1, "on|off"_L1, "whether a task that fails is mailed about"_L1}},
         "Changes them. What is not given stays."_L1,
         SetMail},
        {"mail test"_L1,
         {address},
         {},
         "Sends a mail to the address, straight to a mail exchanger of its domain, and prints each\n"
         "step; a failure ends with the server's last reply. Nothing is saved."_L1,
         TestMail},
    };
}
