#include "platform/Folders.h"
#include "platform/windows/WideText.h"

#include <windows.h>

#include <initguid.h>

#include <knownfolders.h>
#include <shlobj.h>

namespace platform {
namespace {

namespace fs = std::filesystem;

fs::path KnownFolder(const KNOWNFOLDERID& id) {
    wchar_t* text = nullptr;
    const bool known = ::SHGetKnownFolderPath(id, KF_FLAG_DONT_VERIFY, nullptr, &text) == S_OK;
    fs::path folder = known ? fs::path(text) : fs::path();
    ::CoTaskMemFree(text);
    return folder;
}

} // namespace

fs::path DataFolder(bool) {
    if (const auto home = GivenHome())
        return *home;
    return OwnFolder(KnownFolder(FOLDERID_ProgramData), "the programs' data");
}

bool MakeFolders(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    return fs::is_directory(folder, error);
}

fs::path ExecutableFile() {
    std::wstring path(MAX_PATH, L'\0');
    DWORD size = 0;
    while ((size = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()))) ==
           path.size())
        path.resize(path.size() * 2);
    path.resize(size);
    return path;
}

fs::path ExecutableFolder() {
    return ExecutableFile().parent_path();
}

fs::path ConsoleStateFile() {
    const fs::path local = KnownFolder(FOLDERID_LocalAppData);
    if (local.empty() || !MakeFolders(local / "brenvia"))
        return {};
    return local / "brenvia" / "console.ini";
}

fs::path SpecialFolderPath(SpecialFolder folder) {
    switch (folder) {
    case SpecialFolder::Home:
        return KnownFolder(FOLDERID_Profile);
    case SpecialFolder::Desktop:
        return KnownFolder(FOLDERID_Desktop);
    case SpecialFolder::Downloads:
        return KnownFolder(FOLDERID_Downloads);
    case SpecialFolder::Music:
        return KnownFolder(FOLDERID_Music);
    case SpecialFolder::Pictures:
        return KnownFolder(FOLDERID_Pictures);
    case SpecialFolder::Videos:
        return KnownFolder(FOLDERID_Videos);
    case SpecialFolder::StartMenu:
        return KnownFolder(FOLDERID_StartMenu);
    case SpecialFolder::Documents:
        return KnownFolder(FOLDERID_Documents);
    case SpecialFolder::ProgramFilesCommon:
        return GivenHome() ? DataFolder(true) / "common" : KnownFolder(FOLDERID_ProgramFilesCommon);
    }
    return {};
}

fs::path PathFromUtf8(const std::string& text) {
    return Wide(text);
}

std::string Utf8FromPath(const fs::path& path) {
    return Narrow(path.native());
}

} // namespace platform
