#include "platform/NamedObjects.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WideText.h"

namespace platform {
namespace {

/// The mutex when this call has made it; empty with the system's error when it stands already.
Handle MakeMutex(const std::string& name) {
    Handle mutex(name.empty() ? nullptr : ::CreateMutexW(nullptr, TRUE, Wide(name).c_str()));
    if (mutex && ::GetLastError() == ERROR_ALREADY_EXISTS) {
        mutex = Handle();
        ::SetLastError(ERROR_ALREADY_EXISTS);
    }
    return mutex;
}

} // namespace

bool IsMutexHeld(const std::string& name) {
    ::SetLastError(ERROR_SUCCESS);
    if (MakeMutex(name))
        return false;
    const DWORD error = ::GetLastError();
    // A mutex of a user with more rights cannot even be opened.
    return error == ERROR_ALREADY_EXISTS || error == ERROR_ACCESS_DENIED;
}

std::optional<std::filesystem::path> MutexFile(const std::string&) {
    return {};
}

struct NamedMutex::State {
    Handle mutex;
};

NamedMutex::NamedMutex(std::unique_ptr<State> state) : m_state(std::move(state)) {}
NamedMutex::NamedMutex(NamedMutex&&) noexcept = default;
NamedMutex& NamedMutex::operator=(NamedMutex&&) noexcept = default;
NamedMutex::~NamedMutex() = default;

std::optional<NamedMutex> NamedMutex::Hold(const std::string& name) {
    Handle mutex = MakeMutex(name);
    if (!mutex)
        return {};
    return NamedMutex(std::make_unique<State>(State{std::move(mutex)}));
}

struct NamedEvent::State {
    Handle event;
};

NamedEvent::NamedEvent(std::unique_ptr<State> state) : m_state(std::move(state)) {}
NamedEvent::NamedEvent(NamedEvent&&) noexcept = default;
NamedEvent& NamedEvent::operator=(NamedEvent&&) noexcept = default;
NamedEvent::~NamedEvent() = default;

std::optional<NamedEvent> NamedEvent::Open(const std::string& name) {
    Handle event(name.empty() ? nullptr
                              : ::OpenEventW(EVENT_MODIFY_STATE | SYNCHRONIZE, FALSE, Wide(name).c_str()));
    if (!event)
        return {};
    return NamedEvent(std::make_unique<State>(State{std::move(event)}));
}

std::optional<NamedEvent> NamedEvent::Make(const std::string& name) {
    Handle event(name.empty() ? nullptr : ::CreateEventW(nullptr, TRUE, FALSE, Wide(name).c_str()));
    if (!event)
        return {};
    return NamedEvent(std::make_unique<State>(State{std::move(event)}));
}

bool NamedEvent::Set() {
    return ::SetEvent(m_state->event.Get()) != 0;
}

bool NamedEvent::Reset() {
    return ::ResetEvent(m_state->event.Get()) != 0;
}

bool NamedEvent::IsSet() const {
    return ::WaitForSingleObject(m_state->event.Get(), 0) == WAIT_OBJECT_0;
}

} // namespace platform
