#include "platform/MailQuery.h"
#include "platform/posix/MailAnswer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <resolv.h>

#include <array>
#include <vector>

namespace platform {
namespace {

/// The resolver's state for one query.
class Resolver {
public:
    Resolver() : m_ready(::res_ninit(&m_state) == 0) {}
    Resolver(const Resolver&) = delete;
    Resolver& operator=(const Resolver&) = delete;
    ~Resolver() {
        if (m_ready)
            ::res_nclose(&m_state);
    }

    bool Use(const NameServer& server) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(server.port);
        if (!m_ready || ::inet_pton(AF_INET, server.address.c_str(), &address.sin_addr) != 1)
            return false;
        m_state.nscount = 1;
        m_state.nsaddr_list[0] = address;
        return true;
    }

    /// The answer's octets; empty when there is none.
    std::vector<unsigned char> Query(const std::string& domain) {
        std::vector<unsigned char> answer(NS_MAXMSG);
        const int size = m_ready ? ::res_nquery(&m_state, domain.c_str(), ns_c_in, ns_t_mx, answer.data(),
                                                static_cast<int>(answer.size()))
                                 : -1;
        answer.resize(size > 0 ? static_cast<size_t>(size) : 0);
        return answer;
    }

private:
    struct __res_state m_state = {};
    bool m_ready;
};

/// The host of an MX record; empty when it is of another type, malformed, or says that there is no host.
std::string ExchangeOf(const ns_msg& message, const ns_rr& record) {
    constexpr size_t preferenceSize = 2;
    if (ns_rr_type(record) != ns_t_mx || ns_rr_rdlen(record) <= preferenceSize)
        return {};
    std::array<char, NS_MAXDNAME> name{};
    const int size =
        ::dn_expand(ns_msg_base(message), ns_msg_end(message), ns_rr_rdata(record) + preferenceSize,
                    name.data(), static_cast<int>(name.size()));
    return size < 0 ? std::string() : std::string(name.data());
}

} // namespace

MailExchangers ExchangersIn(std::span<const unsigned char> answer) {
    ns_msg message;
    if (answer.empty() || ::ns_initparse(answer.data(), static_cast<int>(answer.size()), &message) != 0)
        return {};
    std::vector<std::string> hosts;
    for (int index = 0; index < ns_msg_count(message, ns_s_an); ++index) {
        ns_rr record;
        if (::ns_parserr(&message, ns_s_an, index, &record) != 0)
            break;
        if (std::string host = ExchangeOf(message, record); !host.empty())
            hosts.push_back(std::move(host));
    }
    return hosts;
}

MailExchangers QueryMailExchangers(const std::string& domain, const std::optional<NameServer>& server) {
    Resolver resolver;
    if (server && !resolver.Use(*server))
        return {};
    return ExchangersIn(resolver.Query(domain));
}

} // namespace platform
