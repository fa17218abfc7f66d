#include "platform/Shell.h"
#include "platform/Folders.h"
#include "platform/posix/Process.h"
#include "platform/posix/UserFiles.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

bool StartDetached(const std::vector<std::string>& command) {
    pid_t process = 0;
    if (Spawn(command, {.keepsErrors = false, .ownSession = true}, process) != 0)
        return false;
    ReapLater(process);
    return true;
}

std::string Escaped(const std::string& text, const std::string& octets, char mark) {
    std::string escaped;
    for (const char c : text) {
        if (octets.find(c) != std::string::npos)
            escaped += mark;
        escaped += c;
    }
    return escaped;
}

/// A value of a desktop entry, which is one line.
std::string EntryText(const std::string& text) {
    std::string value;
    for (const char c : text)
        value += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\\' ? "\\\\" : std::string(1, c);
    return value;
}

/// An argument of a desktop entry's command, quoted, and with no field code in it.
std::string EntryArgument(const std::string& text) {
    return EntryText('"' + Escaped(Escaped(text, "\"`$\\", '\\'), "%", '%') + '"');
}

fs::path ShortcutPath(const fs::path& folder, const std::string& name) {
    const bool isName = !name.empty() && name.find('/') == std::string::npos;
    return isName ? folder / (name + ".desktop") : fs::path();
}

} // namespace

bool OpenInShell(const std::string& target) {
    if (target.empty())
        return false;
    return StartDetached({"xdg-open", target.front() == '-' ? "./" + target : target});
}

bool StartProgram(const fs::path& executable, const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {executable.string()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return StartDetached(command);
}

bool MakeShortcut(const fs::path& folder, const std::string& name, const fs::path& target,
                  const std::string& description) {
    const fs::path path = ShortcutPath(folder, name);
    // Desktops trust only executable ones.
    return !path.empty() && MakeFolders(folder) &&
           ReplaceFile(path,
                       "[Desktop Entry]\nType=Application\nIcon=folder\nTerminal=false\nName=" +
                           EntryText(name) + "\nComment=" + EntryText(description) + "\nExec=xdg-open " +
                           EntryArgument(target.string()) + '\n',
                       0755);
}

bool RemoveShortcut(const fs::path& folder, const std::string& name) {
    const fs::path path = ShortcutPath(folder, name);
    std::error_code error;
    if (!path.empty())
        fs::remove(path, error);
    return !path.empty() && !error;
}

} // namespace platform
