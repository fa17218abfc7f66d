#pragma once

#include <windows.h>

#include <utility>

namespace platform {

/// Owns a handle of the kernel.
class Handle {
public:
    explicit Handle(HANDLE handle = nullptr) : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~Handle() {
        if (m_handle)
            ::CloseHandle(m_handle);
    }

    explicit operator bool() const { return m_handle != nullptr; }
    HANDLE Get() const { return m_handle; }

private:
    HANDLE m_handle;
};

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

} // namespace platform
