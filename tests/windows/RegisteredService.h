#pragma once

#include <string>

struct SC_HANDLE__;

/// A service in the real service control manager, for as long as the object lives; its program is the probe
/// that stands beside the test. The destructor stops and removes it.
class RegisteredService {
public:
    enum class Kind { Runs, FailsToStart, HasNoProgram };

    explicit RegisteredService(const std::wstring& name, Kind kind = Kind::Runs);
    RegisteredService(const RegisteredService&) = delete;
    RegisteredService& operator=(const RegisteredService&) = delete;
    ~RegisteredService();

    bool IsRegistered() const { return m_service != nullptr; }
    bool IsRunning() const;
    bool Start() const; ///< waits until it runs; false when it does not within ten seconds
    bool Stop() const;  ///< waits until it has stopped

private:
    unsigned long State() const;
    bool Reaches(unsigned long state) const;

    SC_HANDLE__* m_manager = nullptr;
    SC_HANDLE__* m_service = nullptr;
};
