#include "ctl/Command.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using TaskOperation = ServiceAnswer (ServiceClient::*)(const QString&, std::stop_token) const;

template <TaskOperation operation>
CtlExit CommandTask(const Invocation& invocation) {
    return invocation.End((ServiceClient().*operation)(invocation.operands[0], invocation.stop));
}

CtlExit DeleteSubTask(const Invocation& invocation) {
    bool isNumber = false;
    const int number = invocation.operands[1].toInt(&isNumber);
    if (!isNumber)
        return invocation.End(CtlExit::Usage, u"N is the number of a sub-task, as \"subtasks\" shows it."_s);
    return invocation.End(ServiceClient().DeleteSubTask(invocation.operands[0], number, invocation.stop));
}

CtlExit GetSetting(const Invocation& invocation) {
    const ServiceAnswer answer = ServiceClient().GetSetting(invocation.operands[0], invocation.stop);
    return invocation.WriteBody(answer, "\n");
}

std::optional<bool> ParseBool(const QString& text) {
    if (text.compare("true"_L1, Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare("false"_L1, Qt::CaseInsensitive) == 0)
        return false;
    return {};
}

CtlExit SetSetting(const Invocation& invocation) {
    const ServiceClient service;
    const QString& name = invocation.operands[0];
    const QString& value = invocation.operands[1];
    const QString type = invocation.Option("--type"_L1).value_or(u"string"_s);
    if (type == "string"_L1)
        return invocation.End(service.SetStringSetting(name, value, invocation.stop));
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
    return invocation.End(CtlExit::Usage, u"--type is int, string or bool."_s);
}

CtlExit Request(const Invocation& invocation) {
    bool isStatus = false;
    const int expected = invocation.Option("--expect"_L1).value_or(u"200"_s).toInt(&isStatus);
    if (!isStatus)
        return invocation.End(CtlExit::Usage, u"--expect takes the status of an answer, as in 207."_s);
    std::optional<QByteArray> body;
    if (const auto text = invocation.Option("--body"_L1))
        body = text->toUtf8();
    const ServiceAnswer answer =
        ServiceClient().SendRequest(invocation.operands[1], invocation.operands[0], expected, body,
                                    invocation.stop, ServiceClient::MaxListing);
    return invocation.WriteBody(answer);
}

} // namespace

std::vector<Command> ServiceCommands() {
    return {
        {"task start"_L1,
         {"ID"_L1},
         {},
         "Starts the task now."_L1,
         CommandTask<&ServiceClient::StartTaskNow>},
        {"task pause"_L1, {"ID"_L1}, {}, "Pauses the task."_L1, CommandTask<&ServiceClient::PauseTask>},
        {"task resume"_L1,
         {"ID"_L1},
         {},
         "Lets a paused task go on."_L1,
         CommandTask<&ServiceClient::ResumeTask>},
        {"task delete"_L1,
         {"ID"_L1},
         {},
         "Deletes the task. Like all commands it never asks."_L1,
         CommandTask<&ServiceClient::DeleteTask>},
        {"task delete-subtask"_L1,
         {"ID"_L1, "N"_L1},
         {},
         "Deletes one sub-task by its number."_L1,
         DeleteSubTask},
        {"settings get"_L1, {"NAME"_L1}, {}, "The value of a setting."_L1, GetSetting},
        {"settings set"_L1,
         {"NAME"_L1, "VALUE"_L1},
         {{"--type"_L1, "TYPE"_L1}},
         "Changes a setting; TYPE is int, string (the default) or bool. The value goes\n"
         "into a query as it stands: write %26 for an ampersand, %23 for a hash sign."_L1,
         SetSetting},
        {"request"_L1,
         {"VERB"_L1, "PATH"_L1},
         {{"--body"_L1, "TEXT"_L1}, {"--expect"_L1, "N"_L1}},
         "Sends any request and writes the answer's octets as they came; any status but\n"
         "N (200 by default) is a refusal."_L1,
         Request},
    };
}
