#pragma once

#include "devservice/Faults.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace devservice {

/// Targets that steer the development service itself: no fault touches them.
inline constexpr char ControlPrefix[] = "/dev/";

/// A request as it came over the wire, nothing decoded.
struct ReceivedRequest {
    std::string verb;
    std::string target;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body; ///< with the closing zero octet that the console sends

    std::string Header(const std::string& name) const; ///< the first of that name, case ignored; or empty
};

struct Answer {
    int status = 200;
    std::string body;
    std::string contentType = "text/plain; charset=utf-8";
};

/// HTTP/1.1 on the loopback address, a thread a connection, one request a connection. Takes any verb and a
/// body on any of them. The port stays bound, though closed, while it refuses.
class HttpServer {
public:
    /// Answers a request; one that does not act is only to be noted, its answer is not used.
    using Handler = std::function<Answer(const ReceivedRequest&, bool acts)>;

    /// Binds the port (0: a free one); throws std::runtime_error that names a port which is taken.
    HttpServer(uint16_t port, Handler handler);
    ~HttpServer();

    uint16_t Port() const;
    void Open();  ///< starts to listen
    void Close(); ///< refuses from now on and ends all connections

    void SetFault(const HttpFaultSwitch& fault);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace devservice
