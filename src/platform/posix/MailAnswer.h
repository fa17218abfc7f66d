#pragma once

#include "platform/MailExchange.h"

#include <span>

namespace platform {

/// The mail exchangers that an answer of a name server names; none when it is no answer. What stands behind
/// a malformed record is not read.
MailExchangers ExchangersIn(std::span<const unsigned char> answer);

} // namespace platform
