#include "platform/posix/UserFiles.h"
#include "platform/Folders.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <random>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr int Always = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

bool HasRaisedRights() {
    return ::geteuid() == 0;
}

struct stat StatusOf(const FileDescriptor& file) {
    struct stat status = {};
    if (::fstat(file.Get(), &status) != 0)
        status.st_uid = static_cast<uid_t>(-1);
    return status;
}

/// Gives what this process has just made to the owner of the folder.
bool HandOver(const FileDescriptor& made, const FileDescriptor& folder) {
    const struct stat owner = StatusOf(folder);
    return !HasRaisedRights() || ::fchownat(made.Get(), "", owner.st_uid, owner.st_gid, AT_EMPTY_PATH) == 0;
}

/// Whether a link in the folder may lead to this: where others can put links, only to what is theirs anyway.
bool MayLeadTo(const FileDescriptor& target, const FileDescriptor& folder) {
    const struct stat holder = StatusOf(folder);
    if (holder.st_uid == 0)
        return !HasRaisedRights() || (holder.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    return !HasRaisedRights() || StatusOf(target).st_uid == holder.st_uid;
}

/// Opens an entry of the folder, through a link only where that may be.
FileDescriptor OpenEntry(const FileDescriptor& folder, const char* name, int flags) {
    FileDescriptor entry(::openat(folder.Get(), name, flags | Always | O_NOFOLLOW));
    if (entry || (errno != ELOOP && errno != ENOTDIR))
        return entry;
    entry = FileDescriptor(::openat(folder.Get(), name, flags | Always));
    if (!entry || MayLeadTo(entry, folder))
        return entry;
    errno = EACCES;
    return FileDescriptor();
}

FileDescriptor MakeFolder(const FileDescriptor& above, const char* name) {
    const bool isMade = ::mkdirat(above.Get(), name, 0755) == 0;
    if (!isMade && errno != EEXIST)
        return FileDescriptor();
    FileDescriptor folder = OpenEntry(above, name, O_PATH | O_DIRECTORY);
    if (folder && isMade && StatusOf(folder).st_uid == ::geteuid() && !HandOver(folder, above))
        folder.Close();
    return folder;
}

FileDescriptor Walk(const fs::path& path, bool makes) {
    FileDescriptor folder(::open(path.is_absolute() ? "/" : ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    for (const fs::path& name : path.relative_path()) {
        if (!folder || name.empty())
            break;
        FileDescriptor next = OpenEntry(folder, name.c_str(), O_PATH | O_DIRECTORY);
        if (!next && errno == ENOENT && makes)
            next = MakeFolder(folder, name.c_str());
        folder = std::move(next);
    }
    return folder;
}

/// A plain file; with raised rights also none that another owner knows by another name.
bool IsOwnFile(const FileDescriptor& file, const FileDescriptor& folder) {
    const struct stat found = StatusOf(file);
    return S_ISREG(found.st_mode) &&
           (!HasRaisedRights() || found.st_nlink == 1 || found.st_uid == StatusOf(folder).st_uid);
}

FileDescriptor OwnFileOrNone(FileDescriptor file, const FileDescriptor& folder) {
    if (!file || IsOwnFile(file, folder))
        return file;
    errno = EACCES;
    return FileDescriptor();
}

FileDescriptor MakeFile(const FileDescriptor& folder, const std::string& name, int flags) {
    FileDescriptor file(
        ::openat(folder.Get(), name.c_str(), flags | Always | O_NOFOLLOW | O_CREAT | O_EXCL, 0644));
    if (file && !HandOver(file, folder))
        file.Close();
    return file;
}

/// A name that nobody can have guessed.
std::string TemporaryName(const std::string& name) {
    std::random_device random;
    std::array<char, 17> mark{};
    std::snprintf(mark.data(), mark.size(), "%08x%08x", random(), random());
    return '.' + name + '.' + mark.data();
}

bool WriteAll(const FileDescriptor& file, const std::string& text) {
    return ::write(file.Get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
           ::fsync(file.Get()) == 0;
}

} // namespace

FileDescriptor OpenFolder(const fs::path& folder) {
    return Walk(folder, false);
}

FileDescriptor OpenOrMakeFolder(const fs::path& folder) {
    return Walk(folder, true);
}

bool MakeFolders(const fs::path& folder) {
    return !folder.empty() && OpenOrMakeFolder(folder);
}

FileDescriptor OpenFile(const fs::path& path) {
    const FileDescriptor folder = OpenFolder(path.parent_path());
    if (!folder)
        return FileDescriptor();
    return OwnFileOrNone(OpenEntry(folder, path.filename().c_str(), O_RDONLY), folder);
}

FileDescriptor OpenOrMakeFile(const fs::path& path, int flags) {
    const FileDescriptor folder = OpenFolder(path.parent_path());
    const std::string name = path.filename();
    while (folder) {
        FileDescriptor file(::openat(folder.Get(), name.c_str(), flags | Always | O_NOFOLLOW));
        if (!file && errno == ENOENT)
            file = MakeFile(folder, name, flags);
        if (file || errno != EEXIST) // else another has just made it
            return OwnFileOrNone(std::move(file), folder);
    }
    return FileDescriptor();
}

bool ReplaceFile(const fs::path& path, const std::string& text, mode_t mode) {
    const FileDescriptor folder = OpenFolder(path.parent_path());
    const std::string fresh = TemporaryName(path.filename());
    const FileDescriptor file = folder ? MakeFile(folder, fresh, O_WRONLY) : FileDescriptor();
    if (!file)
        return false;
    if (WriteAll(file, text) && ::fchmod(file.Get(), mode) == 0 &&
        ::renameat(folder.Get(), fresh.c_str(), folder.Get(), path.filename().c_str()) == 0)
        return true;
    ::unlinkat(folder.Get(), fresh.c_str(), 0);
    return false;
}

} // namespace platform
