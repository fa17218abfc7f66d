#include "platform/LocalFolders.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Mounts.h"

#include <dirent.h>
#include <fcntl.h>
#include <mntent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view RemoteTypes[] = {"nfs", "nfs4",  "cifs",       "smb3",        "smbfs",   "9p",
                                            "afs", "ncpfs", "fuse.sshfs", "fuse.rclone", "fuse.dav"};
/// Images that programs come in.
constexpr std::string_view ImageTypes[] = {"squashfs", "erofs"};

template <typename Names>
bool Holds(const Names& names, std::string_view name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

FolderOutcome OutcomeOf(int error) {
    switch (error) {
    case ENOENT:
        return FolderOutcome::Missing;
    case ENOTDIR:
        return FolderOutcome::NoFolder;
    case EACCES:
    case EPERM:
        return FolderOutcome::Denied;
    case ENAMETOOLONG:
        return FolderOutcome::TooLong;
    case ENOTCONN:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ENETDOWN:
    case ENETUNREACH:
    case ETIMEDOUT:
    case ESTALE:
    case ENOMEDIUM:
        return FolderOutcome::Unready;
    default:
        return FolderOutcome::Broken;
    }
}

EntryKind KindOf(mode_t mode) {
    if (S_ISREG(mode))
        return EntryKind::File;
    if (S_ISDIR(mode))
        return EntryKind::Folder;
    return S_ISLNK(mode) ? EntryKind::Link : EntryKind::Other;
}

/// The kind that the folder tells, where it does and no size is wanted; otherwise the file's own word. False
/// for what has gone meanwhile.
bool Look(int folder, const dirent& found, FolderDetail detail, FolderEntry& entry) {
    entry.size = 0;
    const bool isTold = found.d_type != DT_UNKNOWN;
    if (isTold && (detail == FolderDetail::Names || found.d_type != DT_REG)) {
        entry.kind = KindOf(DTTOIF(found.d_type));
        return true;
    }
    struct stat state = {};
    if (::fstatat(folder, found.d_name, &state, AT_SYMLINK_NOFOLLOW) != 0) {
        entry.kind = isTold ? KindOf(DTTOIF(found.d_type)) : EntryKind::Other;
        return errno != ENOENT;
    }
    entry.kind = KindOf(state.st_mode);
    if (entry.kind == EntryKind::File)
        entry.size = static_cast<std::uint64_t>(state.st_size);
    return true;
}

void CloseMounts(FILE* table) {
    ::endmntent(table);
}

void CloseFolder(DIR* folder) {
    ::closedir(folder);
}

} // namespace

std::vector<Volume> VolumesOf(const fs::path& table) {
    std::vector<Volume> volumes{{"/", false}};
    const Owned<FILE*, CloseMounts> mounts(::setmntent(table.c_str(), "re"));
    if (!mounts)
        return volumes;
    mntent entry = {};
    std::string room(64 * 1024, '\0');
    while (::getmntent_r(mounts.Get(), &entry, room.data(), static_cast<int>(room.size()))) {
        const std::string_view type = entry.mnt_type;
        const bool isRemote = Holds(RemoteTypes, type);
        const bool isDisk = entry.mnt_fsname[0] == '/' || type == "zfs";
        if (!isRemote && (!isDisk || Holds(ImageTypes, type)))
            continue;
        const fs::path path = entry.mnt_dir;
        const auto known = std::find_if(volumes.begin(), volumes.end(),
                                        [&path](const Volume& volume) { return volume.path == path; });
        if (known != volumes.end())
            known->isRemote = isRemote; // what was mounted last is what is seen
        else
            volumes.push_back({path, isRemote});
    }
    // A disk may also be mounted on a single file. Servers are not asked.
    std::erase_if(volumes, [](const Volume& volume) {
        struct stat found = {};
        return !volume.isRemote && ::lstat(volume.path.c_str(), &found) == 0 && !S_ISDIR(found.st_mode);
    });
    return volumes;
}

std::vector<Volume> Volumes() {
    return VolumesOf("/proc/self/mounts");
}

FolderOutcome ReadFolder(const fs::path& folder, FolderDetail detail,
                         const std::function<bool(const FolderEntry&)>& each) {
    const Owned<DIR*, CloseFolder> opened(::opendir(folder.c_str()));
    if (!opened)
        return OutcomeOf(errno);
    const int descriptor = ::dirfd(opened.Get());
    FolderEntry entry;
    for (;;) {
        errno = 0;
        const dirent* const found = ::readdir(opened.Get());
        if (!found)
            return errno == 0 ? FolderOutcome::Whole : OutcomeOf(errno);
        const std::string_view name = found->d_name;
        if (name == "." || name == ".." || !Look(descriptor, *found, detail, entry))
            continue;
        entry.name = name;
        entry.isHidden = name.starts_with('.');
        if (!each(entry))
            return FolderOutcome::Left;
    }
}

FolderOutcome ProbeFolder(const fs::path& folder) {
    struct stat found = {};
    if (::stat(folder.c_str(), &found) != 0)
        return OutcomeOf(errno);
    return S_ISDIR(found.st_mode) ? FolderOutcome::Whole : FolderOutcome::NoFolder;
}

fs::path RealPath(const fs::path& path) {
    const std::unique_ptr<char, decltype(&::free)> real(::realpath(path.c_str(), nullptr), &::free);
    return real ? fs::path(real.get()) : fs::path();
}

} // namespace platform
