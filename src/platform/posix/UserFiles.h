#pragma once

#include "platform/posix/FileDescriptor.h"

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace platform {

/// Files in folders that may belong to a user, while this process may have raised rights: no link leads it to
/// what another owns, and what it makes belongs to the owner of the folder it stands in.

/// Holds a folder for the "...at" calls; none, with errno, when it cannot be reached. With raised rights a
/// link in a user's folder counts only when it leads to a folder of that user.
FileDescriptor OpenFolder(const std::filesystem::path& folder);
/// The same; makes what is missing of it.
FileDescriptor OpenOrMakeFolder(const std::filesystem::path& folder);

/// Opens a plain file for reading. The link rule is that of folders.
FileDescriptor OpenFile(const std::filesystem::path& path);
/// Opens a plain file with the flags of open(2) and makes it when missing; never through a link.
FileDescriptor OpenOrMakeFile(const std::filesystem::path& path, int flags);

/// Makes `text` the file's content in one step: a reader sees the old content or the new one. What stood
/// there, a link too, is replaced.
bool ReplaceFile(const std::filesystem::path& path, const std::string& text, mode_t mode = 0644);

} // namespace platform
