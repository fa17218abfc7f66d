#pragma once

#include "platform/MailExchange.h"

namespace platform {

/// The system's own query, which blocks until it has an answer or gives up.
MailExchangers QueryMailExchangers(const std::string& domain, const std::optional<NameServer>& server);

} // namespace platform
