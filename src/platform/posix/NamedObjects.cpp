#include "platform/NamedObjects.h"
#include "platform/Folders.h"
#include "platform/posix/LockedFile.h"
#include "platform/posix/UserFolders.h"

#include <fcntl.h>
#include <semaphore.h>

#include <cstdio>

namespace platform {
namespace {

namespace fs = std::filesystem;

/// The name without the part that says for whom it holds; empty when it is no name of a file.
std::string PlainName(const std::string& name) {
    const std::string plain = name.substr(name.rfind('\\') + 1);
    return plain.find('/') == std::string::npos ? plain : std::string();
}

fs::path MutexPath(const std::string& name) {
    const auto home = GivenHome();
    const fs::path folder = home ? *home / "run" : UserRuntimeFolder();
    const std::string plain = PlainName(name);
    return folder.empty() || plain.empty() ? fs::path() : folder / (plain + ".mutex");
}

/// The same for the same folder in every process (FNV-1a).
std::string MarkOf(const std::string& folder) {
    uint64_t hash = 14695981039346656037U;
    for (const char c : folder)
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
    return text;
}

std::string SemaphoreName(const std::string& name) {
    const std::string plain = PlainName(name);
    if (plain.empty())
        return {};
    const auto home = GivenHome();
    return '/' + plain + (home ? '.' + MarkOf(home->string()) : std::string());
}

} // namespace

bool IsMutexHeld(const std::string& name) {
    const fs::path path = MutexPath(name);
    const FileDescriptor file(path.empty() ? -1 : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file && IsFileLocked(file.Get());
}

std::optional<fs::path> MutexFile(const std::string& name) {
    return MutexPath(name);
}

struct NamedMutex::State {
    FileDescriptor file;
};

NamedMutex::NamedMutex(std::unique_ptr<State> state) : m_state(std::move(state)) {}
NamedMutex::NamedMutex(NamedMutex&&) noexcept = default;
NamedMutex& NamedMutex::operator=(NamedMutex&&) noexcept = default;
NamedMutex::~NamedMutex() = default;

std::optional<NamedMutex> NamedMutex::Hold(const std::string& name) {
    const fs::path path = MutexPath(name);
    if (path.empty() || !MakeFolders(path.parent_path()))
        return {};
    std::optional<FileDescriptor> file = LockFile(path);
    if (!file)
        return {};
    return NamedMutex(std::make_unique<State>(State{std::move(*file)}));
}

struct NamedEvent::State {
    State(sem_t* opened, std::string madeName) : semaphore(opened), made(std::move(madeName)) {}
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        ::sem_close(semaphore);
        if (!made.empty())
            ::sem_unlink(made.c_str());
    }

    sem_t* semaphore;
    std::string made; ///< the name when this object has made the semaphore
};

NamedEvent::NamedEvent(std::unique_ptr<State> state) : m_state(std::move(state)) {}
NamedEvent::NamedEvent(NamedEvent&&) noexcept = default;
NamedEvent& NamedEvent::operator=(NamedEvent&&) noexcept = default;
NamedEvent::~NamedEvent() = default;

std::optional<NamedEvent> NamedEvent::Open(const std::string& name) {
    const std::string semaphoreName = SemaphoreName(name);
    sem_t* const semaphore = semaphoreName.empty() ? SEM_FAILED : ::sem_open(semaphoreName.c_str(), 0);
    if (semaphore == SEM_FAILED)
        return {};
    return NamedEvent(std::make_unique<State>(semaphore, std::string()));
}

std::optional<NamedEvent> NamedEvent::Make(const std::string& name) {
    const std::string semaphoreName = SemaphoreName(name);
    if (semaphoreName.empty())
        return {};
    sem_t* const semaphore = ::sem_open(semaphoreName.c_str(), O_CREAT | O_EXCL, 0666, 0);
    if (semaphore == SEM_FAILED)
        return Open(name);
    return NamedEvent(std::make_unique<State>(semaphore, semaphoreName));
}

bool NamedEvent::Set() {
    return IsSet() || ::sem_post(m_state->semaphore) == 0;
}

bool NamedEvent::Reset() {
    while (::sem_trywait(m_state->semaphore) == 0) {
    }
    return !IsSet();
}

bool NamedEvent::IsSet() const {
    int value = 0;
    return ::sem_getvalue(m_state->semaphore, &value) == 0 && value > 0;
}

} // namespace platform
