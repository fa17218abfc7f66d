#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

enum class RegistryRoot { LocalMachine, CurrentUser };

/// A key of the registry. A system without one keeps a file a key, `SOFTWARE/Brenvia.ini` for
/// "SOFTWARE\\Brenvia": machine values below `/etc/brenvia` (`$BREN_HOME/etc` when that is set), user values
/// below `$XDG_CONFIG_HOME/brenvia`. A line holds a value, `Name=...`: digits (decimal, or hexadecimal after
/// 0x) are a DWORD, all else is a text. One in double quotes stands as it is; in any other `${NAME}` is
/// replaced by the variable of the environment, where there is one of that name. Lines that begin with `;`,
/// `#` or `[` say nothing. Case counts in the key, not in the names of values.
struct RegistryKey {
    RegistryRoot root;
    std::string path; ///< with backslashes, as in "SOFTWARE\\Brenvia"
};

/// The value, or none when key or value is missing or of another type.
std::optional<uint32_t> ReadRegistryDword(const RegistryKey& key, const std::string& name);

/// The text in UTF-8, up to its terminator, or to the end of its data when that holds none; a text that is to
/// be expanded is. Its data, with the terminator and before it is expanded, is at most `maxUnits` long:
/// octets of UTF-8, in the registry units of UTF-16. None when key or value is missing, of another type, or
/// longer.
std::optional<std::string> ReadRegistryText(const RegistryKey& key, const std::string& name, size_t maxUnits);

/// Writes the value; a missing key is created volatile: it is gone after a restart of the system (its file
/// stands below `$XDG_RUNTIME_DIR/brenvia`, of the machine's keys below `/run/brenvia` or `$BREN_HOME/run`).
/// False when the key may not be written.
bool WriteRegistryDword(const RegistryKey& key, const std::string& name, uint32_t value);

} // namespace platform
