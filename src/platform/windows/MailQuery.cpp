#include "platform/MailQuery.h"
#include "platform/windows/Sockets.h"
#include "platform/windows/WideText.h"

#include <ws2tcpip.h>

#include <windns.h>

#include <memory>
#include <sstream>

namespace platform {
namespace {

constexpr WORD QueryId = 0x4D58;

struct RecordsFree {
    void operator()(DNS_RECORDW* records) const { ::DnsFree(records, DnsFreeRecordList); }
};

using Records = std::unique_ptr<DNS_RECORDW, RecordsFree>;

std::vector<std::string> ExchangesOf(const DNS_RECORDW* record) {
    std::vector<std::string> hosts;
    for (; record; record = record->pNext) {
        if (record->wType != DNS_TYPE_MX || !record->Data.MX.pNameExchange)
            continue;
        std::string host = Narrow(record->Data.MX.pNameExchange);
        if (!host.empty() && host != ".") // a dot alone says that the domain takes no mail
            hosts.push_back(std::move(host));
    }
    return hosts;
}

/// A UDP socket.
class QuestionSocket {
public:
    QuestionSocket() {
        if (SocketsReady())
            m_socket = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
        const DWORD patience = 5000;
        ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&patience),
                     sizeof patience);
    }
    QuestionSocket(const QuestionSocket&) = delete;
    QuestionSocket& operator=(const QuestionSocket&) = delete;
    ~QuestionSocket() {
        if (m_socket != INVALID_SOCKET)
            ::closesocket(m_socket);
    }

    bool Connect(const NameServer& server) const {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(server.port);
        return ::InetPtonA(AF_INET, server.address.c_str(), &address.sin_addr) == 1 &&
               ::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

    /// The length of the answer in `buffer`; 0 when none comes.
    int Exchange(const std::string& question, char* buffer, int size) const {
        for (int attempt = 0; attempt < 2; ++attempt) {
            if (::send(m_socket, question.data(), static_cast<int>(question.size()), 0) <= 0)
                return 0;
            const int received = ::recv(m_socket, buffer, size, 0);
            if (received > 0)
                return received;
        }
        return 0;
    }

private:
    SOCKET m_socket = INVALID_SOCKET;
};

std::string Word(WORD value) {
    return {static_cast<char>(value >> 8), static_cast<char>(value & 255)};
}

/// The octets that ask for the domain's mail exchangers; none when it is no name of a domain.
std::string Question(const std::string& domain) {
    constexpr WORD recursionDesired = 0x0100;
    constexpr size_t longestLabel = 63;
    std::string question = Word(QueryId) + Word(recursionDesired) + Word(1) + Word(0) + Word(0) + Word(0);
    std::istringstream labels(domain);
    for (std::string label; std::getline(labels, label, '.');) {
        if (label.empty() || label.size() > longestLabel)
            return {};
        question += static_cast<char>(label.size()) + label;
    }
    return question + std::string(1, '\0') + Word(DNS_TYPE_MX) + Word(DNS_CLASS_INTERNET);
}

/// The system's query asks only the system's servers: this one is asked by hand.
Records AskServer(const std::string& domain, const NameServer& server) {
    const std::string question = Question(domain);
    const QuestionSocket socket;
    if (question.empty() || !socket.Connect(server))
        return {};
    constexpr int largest = 65536;
    std::vector<DWORD> answer(largest / sizeof(DWORD));
    auto* const answered = reinterpret_cast<DNS_MESSAGE_BUFFER*>(answer.data());
    const int size = socket.Exchange(question, reinterpret_cast<char*>(answered), largest);
    if (size < static_cast<int>(sizeof(DNS_HEADER)))
        return {};
    DNS_BYTE_FLIP_HEADER_COUNTS(&answered->MessageHead);
    if (answered->MessageHead.Xid != QueryId || answered->MessageHead.ResponseCode != DNS_RCODE_NOERROR)
        return {};
    DNS_RECORDW* records = nullptr;
    ::DnsExtractRecordsFromMessage_W(answered, static_cast<WORD>(size), &records);
    return Records(records);
}

Records AskSystem(const std::wstring& domain) {
    DNS_RECORDW* records = nullptr;
    ::DnsQuery_W(domain.c_str(), DNS_TYPE_MX, DNS_QUERY_STANDARD, nullptr,
                 reinterpret_cast<DNS_RECORD**>(&records), nullptr);
    return Records(records);
}

} // namespace

MailExchangers QueryMailExchangers(const std::string& domain, const std::optional<NameServer>& server) {
    const Records records = server ? AskServer(domain, *server) : AskSystem(Wide(domain));
    return records ? MailExchangers(ExchangesOf(records.get())) : std::nullopt;
}

} // namespace platform
