#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace platform {

/// Whether another process, or another part of this one, holds the mutex of this name. Where the system has
/// no named mutexes they are locked files of the user, `<name>.mutex` below `$BREN_HOME/run` or, when that is
/// unset, `$XDG_RUNTIME_DIR/brenvia`.
bool IsMutexHeld(const std::string& name);

/// The locked file of a mutex of this name; empty when there is no folder for it, none where the system has
/// named mutexes.
std::optional<std::filesystem::path> MutexFile(const std::string& name);

/// A named mutex, held for as long as the object lives: the sign that a program runs.
class NamedMutex {
public:
    static std::optional<NamedMutex> Hold(const std::string& name); ///< none when another holds it

    NamedMutex(NamedMutex&&) noexcept;
    NamedMutex& operator=(NamedMutex&&) noexcept;
    ~NamedMutex();

private:
    struct State;
    explicit NamedMutex(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

/// A named event of the whole machine, as in "Global\\BrenviaFileMon": set until it is reset. Where the
/// system has no events it is a semaphore named after the last part, "/BrenviaFileMon", which is above zero
/// while the event is set; with `BREN_HOME` its name ends in a mark of that folder, so that each development
/// folder has events of its own.
class NamedEvent {
public:
    static std::optional<NamedEvent> Open(const std::string& name); ///< none when nobody has made it
    /// Makes the event, not set, or opens it as it stands. It goes with the object that has made it.
    static std::optional<NamedEvent> Make(const std::string& name);

    NamedEvent(NamedEvent&&) noexcept;
    NamedEvent& operator=(NamedEvent&&) noexcept;
    ~NamedEvent();

    bool Set();
    bool Reset();
    bool IsSet() const;

private:
    struct State;
    explicit NamedEvent(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

} // namespace platform
