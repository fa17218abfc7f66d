#pragma once

#include "platform/Owned.h"

#include <windows.h>

namespace platform {

inline void CloseKernelHandle(HANDLE handle) {
    ::CloseHandle(handle);
}

/// A handle of the kernel.
using Handle = Owned<HANDLE, CloseKernelHandle>;

/// A file as `CreateFileW` gives it, which says in its own way that there is none.
inline Handle FileHandle(HANDLE file) {
    return Handle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

} // namespace platform
