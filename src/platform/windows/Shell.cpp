#include "platform/Shell.h"
#include "platform/windows/Com.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WideText.h"

#include <initguid.h>

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr DWORD ShellApartment = COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE;

ComOwned<IPersistFile> FileOf(IShellLinkW& link) {
    void* file = nullptr;
    link.QueryInterface(IID_IPersistFile, &file);
    return ComOwned<IPersistFile>(static_cast<IPersistFile*>(file));
}

fs::path ShortcutPath(const fs::path& folder, const std::string& name) {
    const bool isName = !name.empty() && name.find_first_of("/\\:*?\"<>|") == std::string::npos;
    return isName ? folder / Wide(name + ".lnk") : fs::path();
}

} // namespace

bool OpenInShell(const std::string& target) {
    const ComUse com(ShellApartment);
    const std::wstring file = Wide(target);
    SHELLEXECUTEINFOW launch = {};
    launch.cbSize = sizeof launch;
    launch.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    launch.lpVerb = L"open";
    launch.lpFile = file.c_str();
    launch.nShow = SW_SHOWNORMAL;
    return !file.empty() && ::ShellExecuteExW(&launch) != 0;
}

bool StartProgram(const fs::path& executable, const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {Narrow(executable.native())};
    command.insert(command.end(), arguments.begin(), arguments.end());
    std::wstring line = CommandLine(command);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    if (!::CreateProcessW(executable.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &startup, &started))
        return false;
    const Handle process(started.hProcess);
    const Handle thread(started.hThread);
    return true;
}

bool MakeShortcut(const fs::path& folder, const std::string& name, const fs::path& target,
                  const std::string& description) {
    const fs::path path = ShortcutPath(folder, name);
    std::error_code error;
    fs::create_directories(folder, error);
    const ComUse com(ShellApartment);
    const ComOwned<IShellLinkW> link =
        path.empty() ? nullptr : MakeComObject<IShellLinkW>(CLSID_ShellLink, IID_IShellLinkW);
    const ComOwned<IPersistFile> file = link ? FileOf(*link) : nullptr;
    return file && SUCCEEDED(link->SetPath(target.c_str())) &&
           SUCCEEDED(link->SetDescription(Wide(description).c_str())) &&
           SUCCEEDED(file->Save(path.c_str(), TRUE));
}

bool RemoveShortcut(const fs::path& folder, const std::string& name) {
    const fs::path path = ShortcutPath(folder, name);
    std::error_code error;
    if (!path.empty())
        fs::remove(path, error);
    return !path.empty() && !error;
}

} // namespace platform
