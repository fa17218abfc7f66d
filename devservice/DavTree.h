#pragma once

#include "devservice/HttpServer.h"
#include "devservice/Schedule.h"

#include <filesystem>
#include <optional>
#include <string>

namespace devservice {

// Folders of the service itself, which listings mark as hidden.
inline constexpr char VersionStore[] = "43811DCD-8C5A-4EF9-B903-2EEA9CE88487"; ///< of sync folders' files
inline constexpr char BackupSets[] = "091306a3-3cb9-4778-b990-6efd84ed4bb5";   ///< of snapshots, in a target

/// A real folder as a WebDAV tree. Its first level are the mounted virtual directories; what of one is kept
/// while it is not mounted stands in a second folder. Paths are UTF-8, begin with a slash and never lead out:
/// a name that would and a link are as if there were no such thing.
class DavTree {
public:
    /// `prefix` stands before the elements of listings, none when empty.
    DavTree(std::filesystem::path mounted, std::filesystem::path kept, const std::string& prefix);

    /// PROPFIND, MKCOL, MOVE, DELETE and GET. The path is decoded and without "/resources"; `destination` is
    /// where MOVE shall move to.
    Answer Handle(const std::string& verb, const std::string& path, const std::string& destination) const;

    /// Makes the first-level folder, from what is kept of it or with a few things in it.
    void Mount(const std::string& name);
    void Dismount(const std::string& name);
    void Rename(const std::string& name, const std::string& newName);

    /// Makes a file of so many octets, or a folder when the path ends in a slash, and all above it.
    void Put(const std::string& path, size_t octets, SimTime modified);
    /// Makes a file of this content and all above it.
    void Write(const std::string& path, const std::string& content, SimTime modified);
    /// The path of a file of this name below a folder, links not followed; none when there is none.
    std::optional<std::string> Find(const std::string& folder, const std::string& name) const;
    /// Octets of all files of a first-level folder.
    uint64_t Used(const std::string& name) const;

    /// Where a path's file or folder stands, if it is there; none for a path that cannot be.
    std::optional<std::filesystem::path> Place(const std::string& path) const;

    /// Whether a file can be named so, in this system and below a folder of it.
    static bool IsPlainName(const std::string& name);

private:
    Answer List(const std::string& path, const std::filesystem::path& folder) const;
    std::string Element(const std::string& href, const std::string& name,
                        const std::filesystem::directory_entry& entry) const;

    std::filesystem::path m_mounted;
    std::filesystem::path m_kept;
    std::string m_tag;       ///< "D:", or nothing
    std::string m_namespace; ///< the attribute that declares it
};

} // namespace devservice
