#pragma once

#include "platform/HttpTransport.h"

namespace platform {

/// The escaped target of the request line; a leading slash is added where it lacks one.
std::string RequestTarget(const HttpRequest& request);

/// Whether verb, agent and headers keep to one line of valid HTTP each.
bool CanBeSent(const HttpRequest& request);

/// Makes room for the body that an answer announces: as much as costs nothing where the announcement lies.
void ReserveAnnounced(std::string& body, uint64_t octets);

/// Adds the octets as far as the request's bound lets it; false when it does not take them all.
bool AppendBounded(std::string& body, std::string_view octets, const HttpRequest& request);

/// Whether the request states its body's length: when it has a body, and for PUT and POST also without one.
bool SendsLength(const HttpRequest& request);

} // namespace platform
