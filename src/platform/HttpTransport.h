#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// How long each stage of a request may take; 0 is without limit. `send` and `receive` are the longest
/// silence of the stage, not its whole; waiting for the answer's headers counts as receiving.
struct HttpTimeouts {
    std::chrono::milliseconds resolve{0};
    std::chrono::milliseconds connect{60'000};
    std::chrono::milliseconds send{30'000};
    std::chrono::milliseconds receive{30'000};
};

struct HttpRequest {
    std::string host;
    uint16_t port = 0;
    std::string verb;
    std::string target; ///< path and query in UTF-8 as they stand; the transport escapes by EscapeTarget and
                        ///< puts a slash before a target that has none
    std::string userAgent;
    std::vector<std::pair<std::string, std::string>> headers;
    bool refresh = false;            ///< adds "Pragma: no-cache" and "Cache-Control: no-cache"
    std::optional<std::string> body; ///< sent exactly as it stands; none or an empty one sends no body
    HttpTimeouts timeouts;
    size_t maxBody = size_t{16} << 20; ///< octets of the answer; past them reading breaks off
};

enum class HttpOutcome { Answered, Unreachable, TimedOut, Cancelled };

struct HttpResponse {
    HttpOutcome outcome = HttpOutcome::Unreachable;
    int status = 0;        ///< of an answered request
    std::string body;      ///< all that was read, also when reading broke off; never more than the bound
    bool complete = false; ///< of an answered request: false when reading broke off in the body
    bool sent = false;     ///< some of the request is on its way, so that it may have been carried out
};

/// One exchange on a connection of its own. Blocks the calling thread; any thread may call. Proxies of the
/// environment are ignored, redirects are not followed, nothing is added to the headers given but Host and
/// the length of a body (a PUT or POST without one says 0). Ends with Cancelled within a second of a stop
/// request. A request that is no valid HTTP (a verb or header with a line feed in it) is not sent:
/// Unreachable.
HttpResponse SendHttp(const HttpRequest& request, std::stop_token stop = {});

/// Percent-encodes the octets that cannot stand in a request line (0 to 32, 127 and above, and
/// " # < > [ \ ] ^ { | } `) and leaves all others, the percent sign among them, as they are.
std::string EscapeTarget(std::string_view target);

} // namespace platform
