#include "ctl/Command.h"

using namespace Qt::Literals::StringLiterals;

namespace {

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

std::vector<Command> RequestCommands() {
    return {
        {"request"_L1,
         {{"VERB"_L1}, {"PATH"_L1}},
         {{"--body"_L1, "TEXT"_L1, "the request's body"_L1},
          {"--expect"_L1, "N"_L1, "the status that is no refusal (200)"_L1}},
         "Sends any request and writes the answer's octets as they came."_L1,
         Request},
    };
}
