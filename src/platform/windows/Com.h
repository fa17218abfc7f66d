#pragma once

#include <objbase.h>

#include <memory>

namespace platform {

/// COM for the calling thread, in whichever way it has been prepared already.
class ComUse {
public:
    /// `apartment` counts where the thread has none yet: COINIT_...
    explicit ComUse(DWORD apartment) : m_begun(SUCCEEDED(::CoInitializeEx(nullptr, apartment))) {}
    ComUse(const ComUse&) = delete;
    ComUse& operator=(const ComUse&) = delete;
    ~ComUse() {
        if (m_begun)
            ::CoUninitialize();
    }

private:
    bool m_begun;
};

struct ComRelease {
    void operator()(IUnknown* object) const { object->Release(); }
};

template <typename Interface>
using ComOwned = std::unique_ptr<Interface, ComRelease>;

/// None when the system cannot make one.
template <typename Interface>
ComOwned<Interface> MakeComObject(const CLSID& classId, const IID& interfaceId) {
    void* made = nullptr;
    ::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, interfaceId, &made);
    return ComOwned<Interface>(static_cast<Interface*>(made));
}

} // namespace platform
