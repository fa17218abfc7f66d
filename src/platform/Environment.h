#pragma once

#include <optional>
#include <string>

namespace platform {

/// The variable in UTF-8; none when it is missing or empty.
std::optional<std::string> EnvironmentVariable(const std::string& name);

/// Whether the variable is set, be it to nothing.
bool HasEnvironmentVariable(const std::string& name);

/// Sets the variable to the text in UTF-8, or takes it away. Before any other thread starts: readers of the
/// environment are not kept apart from this.
void PutEnvironmentVariable(const std::string& name, const std::optional<std::string>& value);

} // namespace platform
