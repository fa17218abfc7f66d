#include "Require.h"
#include "platform/posix/MailAnswer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto hosts = platform::ExchangersIn({data, size});
    for (const std::string& host : hosts.value_or(std::vector<std::string>()))
        Require(!host.empty() && host.size() < 1025);
    return 0;
}
