#include "platform/HttpRules.h"

#include <algorithm>

namespace platform {
namespace {

bool NeedsEscape(unsigned char octet) {
    static constexpr std::string_view unsafe = "\"#<>[\\]^{|}`";
    return octet <= 32 || octet >= 127 || unsafe.find(static_cast<char>(octet)) != std::string_view::npos;
}

bool IsTokenOctet(unsigned char octet) {
    static constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    const bool alphanumeric =
        (octet >= '0' && octet <= '9') || (octet >= 'A' && octet <= 'Z') || (octet >= 'a' && octet <= 'z');
    return alphanumeric || marks.find(static_cast<char>(octet)) != std::string_view::npos;
}

bool IsToken(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsTokenOctet);
}

bool IsFieldValue(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

constexpr uint64_t MaxReserve = uint64_t{1} << 20;

} // namespace

std::string EscapeTarget(std::string_view target) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string escaped;
    escaped.reserve(target.size());
    for (const char c : target) {
        const auto octet = static_cast<unsigned char>(c);
        if (NeedsEscape(octet))
            escaped.append({'%', digits[octet >> 4], digits[octet & 15]});
        else
            escaped.push_back(c);
    }
    return escaped;
}

std::string RequestTarget(const HttpRequest& request) {
    const std::string escaped = EscapeTarget(request.target);
    return escaped.starts_with('/') ? escaped : '/' + escaped;
}

bool CanBeSent(const HttpRequest& request) {
    return IsToken(request.verb) && IsFieldValue(request.userAgent) &&
           std::all_of(request.headers.begin(), request.headers.end(), [](const auto& header) {
               return IsToken(header.first) && IsFieldValue(header.second);
           });
}

bool SendsLength(const HttpRequest& request) {
    return (request.body && !request.body->empty()) || request.verb == "PUT" || request.verb == "POST";
}

void ReserveAnnounced(std::string& body, uint64_t octets) {
    body.reserve(static_cast<size_t>(std::min(octets, MaxReserve)));
}

bool AppendBounded(std::string& body, std::string_view octets, const HttpRequest& request) {
    const size_t room = request.maxBody - body.size();
    body.append(octets.substr(0, room));
    return octets.size() <= room;
}

} // namespace platform
