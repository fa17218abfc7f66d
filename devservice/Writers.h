#pragma once

#include <optional>
#include <string>

namespace devservice {

/// What the machine's applications have for backups: as on a server, with lines that are broken among them,
/// none at all, or 10 MB of them.
enum class Writers { Usual, Malformed, Empty, Large };

/// "usual", "malformed", "empty" or "large".
std::optional<Writers> ParseWriters(const std::string& text);

/// The list of writers: a line each of name, identifier, state and components, with tabs between.
std::string WriterList(Writers which);

} // namespace devservice
