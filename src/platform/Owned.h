#pragma once

#include <utility>

namespace platform {

/// Owns what the system has handed out. `Give` gives it back; `None` stands for nothing.
template <typename T, auto Give, T None = T{}>
class Owned {
public:
    explicit Owned(T handle = None) : m_handle(handle) {}
    Owned(Owned&& other) noexcept : m_handle(std::exchange(other.m_handle, None)) {}
    Owned& operator=(Owned&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~Owned() { Close(); }

    explicit operator bool() const { return m_handle != None; }
    T Get() const { return m_handle; }
    void Close() {
        if (m_handle != None)
            Give(std::exchange(m_handle, None));
    }

private:
    T m_handle;
};

} // namespace platform
