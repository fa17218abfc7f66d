#include "Require.h"
#include "smtp/SmtpReply.h"

/// Whatever a server sends falls into whole replies, octet for octet, in whatever pieces it comes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string sent(reinterpret_cast<const char*>(data), size);
    std::string received = sent;
    std::string taken;
    while (const auto reply = TakeReply(received)) {
        Require(reply->ends_with('\n'));
        Require(ReplyText(*reply).size() <= qsizetype(reply->size()) + 3);
        taken += *reply;
    }
    Require(taken + received == sent);
    std::string later = sent.substr(0, size / 2);
    const auto half = TakeReply(later);
    std::string whole = sent;
    Require(!half || half == TakeReply(whole));
    return 0;
}
