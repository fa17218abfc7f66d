#include "devservice/WireText.h"

#include <QByteArray>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace devservice {

namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

bool StartsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

bool SameName(const std::string& a, const std::string& b) {
    return Lower(a) == Lower(b);
}

std::optional<int> NumberOf(std::string_view text) {
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0)
        return {};
    return number;
}

std::string PercentDecode(std::string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool escape =
            text[i] == '%' && i + 2 < text.size() && HexDigit(text[i + 1]) >= 0 && HexDigit(text[i + 2]) >= 0;
        result += escape ? static_cast<char>(HexDigit(text[i + 1]) * 16 + HexDigit(text[i + 2])) : text[i];
        i += escape ? 2 : 0;
    }
    return result;
}

std::string PercentEncodePath(std::string_view path) {
    std::string result;
    for (const char c : path) {
        const auto octet = static_cast<unsigned char>(c);
        if (std::isalnum(octet) || std::strchr("/-._~", c)) {
            result += c;
            continue;
        }
        char escaped[4];
        std::snprintf(escaped, sizeof escaped, "%%%02X", octet);
        result += escaped;
    }
    return result;
}

std::optional<std::string> Parameter(const std::string& query, const std::string& name) {
    for (size_t begin = 0; begin <= query.size();) {
        const size_t end = std::min(query.find('&', begin), query.size());
        const std::string part = query.substr(begin, end - begin);
        const size_t equals = part.find('=');
        if (equals != std::string::npos && SameName(part.substr(0, equals), name))
            return PercentDecode(part.substr(equals + 1));
        begin = end + 1;
    }
    return {};
}

std::string XmlAttribute(const std::string& name, const std::string& value) {
    std::string escaped;
    for (const char c : value) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return ' ' + name + "=\"" + escaped + '"';
}

std::optional<std::string> Element(std::string_view text, const std::string& tag) {
    const std::string opening = '<' + tag + '>';
    const size_t begin = text.find(opening);
    const size_t end = begin == std::string_view::npos ? begin : text.find("</" + tag + '>', begin);
    if (end == std::string_view::npos)
        return {};
    return std::string(text.substr(begin + opening.size(), end - begin - opening.size()));
}

std::vector<std::string> Elements(std::string_view text, const std::string& tag) {
    std::vector<std::string> found;
    while (const auto next = Element(text, tag)) {
        const std::string closing = "</" + tag + '>';
        text.remove_prefix(text.find(closing, text.find('<' + tag + '>')) + closing.size());
        found.push_back(*next);
    }
    return found;
}

bool IsBase64(const std::string& text) {
    return bool(QByteArray::fromBase64Encoding(QByteArray::fromStdString(text),
                                               QByteArray::AbortOnBase64DecodingErrors));
}

std::string Base64Encode(const std::string& text) {
    return QByteArray::fromStdString(text).toBase64().toStdString();
}

} // namespace devservice
