#include "platform/Shell.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WideText.h"

#include <initguid.h>

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

namespace platform {
namespace {

namespace fs = std::filesystem;

/// COM for the calling thread, in whichever way it has been prepared already.
class ComUse {
public:
    ComUse()
        : m_owned(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE))) {}
    ComUse(const ComUse&) = delete;
    ComUse& operator=(const ComUse&) = delete;
    ~ComUse() {
        if (m_owned)
            ::CoUninitialize();
    }

private:
    bool m_owned;
};

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};

template <typename Interface>
using ComOwned = std::unique_ptr<Interface, Releaser>;

ComOwned<IShellLinkW> MakeLink() {
    void* link = nullptr;
    ::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, &link);
    return ComOwned<IShellLinkW>(static_cast<IShellLinkW*>(link));
}

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
    const ComUse com;
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
    const ComUse com;
    const ComOwned<IShellLinkW> link = path.empty() ? nullptr : MakeLink();
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
