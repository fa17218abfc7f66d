#include "platform/MailQuery.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace platform {
namespace {

/// What the caller and the thread that asks share; the last of them takes it away.
struct Answer {
    std::mutex mutex;
    std::condition_variable_any arrived;
    bool done = false;
    MailExchangers hosts;
};

} // namespace

MailExchangers FindMailExchangers(const std::string& domain, const std::optional<NameServer>& server,
                                  std::stop_token stop) {
    // The system's query cannot be broken off: after a stop it is left to end by itself.
    const auto answer = std::make_shared<Answer>();
    std::thread([answer, domain, server] {
        MailExchangers hosts = QueryMailExchangers(domain, server);
        const std::lock_guard lock(answer->mutex);
        answer->hosts = std::move(hosts);
        answer->done = true;
        answer->arrived.notify_all();
    }).detach();
    std::unique_lock lock(answer->mutex);
    answer->arrived.wait(lock, std::move(stop), [&] { return answer->done; });
    return answer->done ? std::move(answer->hosts) : std::nullopt;
}

} // namespace platform
