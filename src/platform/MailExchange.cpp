#include "platform/AwaitOrLeave.h"
#include "platform/MailQuery.h"

namespace platform {

MailExchangers FindMailExchangers(const std::string& domain, const std::optional<NameServer>& server,
                                  std::stop_token stop) {
    return AwaitOrLeave([domain, server] { return QueryMailExchangers(domain, server); }, std::move(stop))
        .value_or(std::nullopt);
}

} // namespace platform
