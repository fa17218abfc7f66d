#pragma once

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace platform {

/// A name server to ask in place of the system's: a numeric IPv4 address and a port.
struct NameServer {
    std::string address;
    uint16_t port = 53;
};

using MailExchangers = std::optional<std::vector<std::string>>;

/// The hosts that take the domain's mail, in the order of the answer, whatever their preference. None when
/// the query fails or is stopped. Blocks, for up to half a minute when no server answers; ends at once with
/// the stop token.
MailExchangers FindMailExchangers(const std::string& domain, const std::optional<NameServer>& server = {},
                                  std::stop_token stop = {});

} // namespace platform
