#pragma once

#include "platform/Folders.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace platform {

/// A local disk or network drive: a drive with its letter, or the folder that a volume is mounted on.
struct Volume {
    std::filesystem::path path;
    bool isRemote = false;
};

/// Those that hold a person's files. Asks none of them, so a drive that is gone holds nothing up.
std::vector<Volume> Volumes();

/// A link is anything that stands for another place: a symbolic link, a junction, a mounted volume. What only
/// has its content elsewhere is the file or folder that it looks like.
enum class EntryKind { File, Folder, Link, Other };

struct FolderEntry {
    std::filesystem::path::string_type name;
    EntryKind kind = EntryKind::Other;
    std::uint64_t size = 0; ///< of a file in octets, where sizes were asked for
    bool isHidden = false;
    bool isSystem = false;
};

/// How reading a folder ended. Unready: its drive holds no medium, or its server is gone. TooLong: the path.
enum class FolderOutcome { Whole, Left, Missing, NoFolder, Denied, Unready, TooLong, Broken };

enum class FolderDetail { Names, Sizes };

/// Calls `each`, in the system's order, until it returns false. The entry is good for the call. Follows no
/// link in the folder. Nothing breaks this off where a server does not answer: it is for AwaitOrLeave.
FolderOutcome ReadFolder(const std::filesystem::path& folder, FolderDetail detail,
                         const std::function<bool(const FolderEntry&)>& each);

/// Whether there is a folder, a link followed, without reading it: Whole when there is. It may wait like
/// ReadFolder.
FolderOutcome ProbeFolder(const std::filesystem::path& folder);

/// The path with all links resolved; empty when it leads nowhere. It may wait like ReadFolder.
std::filesystem::path RealPath(const std::filesystem::path& path);

} // namespace platform
