#include "platform/LocalFolders.h"
#include "platform/windows/Handle.h"

#include <string_view>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr std::wstring_view Verbatim = L"\\\\?\\";
constexpr std::wstring_view VerbatimShare = L"\\\\?\\UNC\\";

void CloseSearch(HANDLE search) {
    ::FindClose(search);
}

using Search = Owned<HANDLE, CloseSearch>;

/// In the form that has no limit of 260 characters and takes names as they are.
std::wstring Unlimited(const fs::path& path) {
    std::wstring text = path.native();
    for (wchar_t& c : text)
        if (c == L'/')
            c = L'\\';
    if (text.starts_with(Verbatim))
        return text;
    if (text.starts_with(L"\\\\"))
        return std::wstring(VerbatimShare) + text.substr(2);
    return std::wstring(Verbatim) + text;
}

std::wstring Usual(const std::wstring& unlimited) {
    if (unlimited.starts_with(VerbatimShare))
        return L"\\\\" + unlimited.substr(VerbatimShare.size());
    return unlimited.starts_with(Verbatim) ? unlimited.substr(Verbatim.size()) : unlimited;
}

FolderOutcome OutcomeOf(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return FolderOutcome::Missing;
    case ERROR_DIRECTORY:
        return FolderOutcome::NoFolder;
    case ERROR_ACCESS_DENIED:
        return FolderOutcome::Denied;
    case ERROR_FILENAME_EXCED_RANGE:
        return FolderOutcome::TooLong;
    case ERROR_NOT_READY:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_NETNAME_DELETED:
    case ERROR_UNEXP_NET_ERR:
    case ERROR_NETWORK_UNREACHABLE:
    case ERROR_HOST_UNREACHABLE:
    case ERROR_SEM_TIMEOUT:
    case ERROR_DEV_NOT_EXIST:
        return FolderOutcome::Unready;
    default:
        return FolderOutcome::Broken;
    }
}

/// Only what stands for another name is a link; a file whose content is kept elsewhere is a file.
EntryKind KindOf(const WIN32_FIND_DATAW& found) {
    const bool isReparse = found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT;
    if (isReparse && IsReparseTagNameSurrogate(found.dwReserved0))
        return EntryKind::Link;
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        return EntryKind::Folder;
    return found.dwFileAttributes & FILE_ATTRIBUTE_DEVICE ? EntryKind::Other : EntryKind::File;
}

} // namespace

std::vector<Volume> Volumes() {
    std::vector<Volume> volumes;
    const DWORD drives = ::GetLogicalDrives();
    for (int number = 0; number < 26; ++number) {
        if (!(drives >> number & 1))
            continue;
        const std::wstring root{static_cast<wchar_t>(L'A' + number), L':', L'\\'};
        const UINT type = ::GetDriveTypeW(root.c_str());
        if (type != DRIVE_NO_ROOT_DIR && type != DRIVE_UNKNOWN)
            volumes.push_back({root, type == DRIVE_REMOTE});
    }
    return volumes;
}

FolderOutcome ReadFolder(const fs::path& folder, FolderDetail, // sizes come with the names
                         const std::function<bool(const FolderEntry&)>& each) {
    WIN32_FIND_DATAW found = {};
    const std::wstring pattern = Unlimited(folder / L"*");
    const HANDLE first = ::FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch,
                                            nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (first == INVALID_HANDLE_VALUE) {
        // The root of a drive has no entry for itself, so that an empty one holds no file at all.
        const DWORD error = ::GetLastError();
        return error == ERROR_FILE_NOT_FOUND ? ProbeFolder(folder) : OutcomeOf(error);
    }
    const Search search(first);
    FolderEntry entry;
    do {
        entry.name = found.cFileName;
        if (entry.name == L"." || entry.name == L"..")
            continue;
        entry.kind = KindOf(found);
        const bool isFile = entry.kind == EntryKind::File;
        entry.size = isFile ? std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow : 0;
        entry.isHidden = found.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN;
        entry.isSystem = found.dwFileAttributes & FILE_ATTRIBUTE_SYSTEM;
        if (!each(entry))
            return FolderOutcome::Left;
    } while (::FindNextFileW(search.Get(), &found));
    const DWORD error = ::GetLastError();
    return error == ERROR_NO_MORE_FILES ? FolderOutcome::Whole : OutcomeOf(error);
}

FolderOutcome ProbeFolder(const fs::path& folder) {
    const Handle opened =
        FileHandle(::CreateFileW(Unlimited(folder).c_str(), FILE_READ_ATTRIBUTES, ShareAll, nullptr,
                                 OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!opened)
        return OutcomeOf(::GetLastError());
    BY_HANDLE_FILE_INFORMATION found = {};
    if (!::GetFileInformationByHandle(opened.Get(), &found))
        return OutcomeOf(::GetLastError());
    return found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY ? FolderOutcome::Whole : FolderOutcome::NoFolder;
}

fs::path RealPath(const fs::path& path) {
    const Handle opened = FileHandle(::CreateFileW(Unlimited(path).c_str(), 0, ShareAll, nullptr,
                                                   OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!opened)
        return {};
    std::wstring text(32768, L'\0');
    const DWORD size = ::GetFinalPathNameByHandleW(opened.Get(), text.data(), static_cast<DWORD>(text.size()),
                                                   FILE_NAME_NORMALIZED);
    if (size == 0 || size >= text.size())
        return {};
    text.resize(size);
    return Usual(text);
}

} // namespace platform
