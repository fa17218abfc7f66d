#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace devservice {

// Texts as they come over the wire: octets of UTF-8, letters of ASCII ignoring case.

bool StartsWith(std::string_view text, std::string_view beginning);
std::string Lower(std::string text);
bool SameName(const std::string& a, const std::string& b);

/// A number in decimal digits, 0 or more, and nothing else.
std::optional<int> NumberOf(std::string_view text);

/// Decodes "%XX"; what is no escape stays as it stands, and so does a plus sign.
std::string PercentDecode(std::string_view text);
/// Octets that a path cannot hold as "%XX"; a slash stays.
std::string PercentEncodePath(std::string_view path);

/// The query's parameter of this name, case ignored, decoded.
std::optional<std::string> Parameter(const std::string& query, const std::string& name);

/// ` name="value"`, escaped.
std::string XmlAttribute(const std::string& name, const std::string& value);
/// What stands between the first `<tag>` and the next `</tag>`, as it stands.
std::optional<std::string> Element(std::string_view text, const std::string& tag);
/// The same of all elements of this tag, in their order.
std::vector<std::string> Elements(std::string_view text, const std::string& tag);

bool IsBase64(const std::string& text);
std::string Base64Encode(const std::string& text);

} // namespace devservice
