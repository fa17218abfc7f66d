#pragma once

#include "service/ServiceClient.h"

#include <chrono>
#include <functional>

enum class LoginEnd {
    UnderWay,
    LoggedIn,
    Failed,    ///< the words are the service's own
    NoPlugin,  ///< the storage provider is not installed
    GaveUp,    ///< asked as often as is asked at all; the service goes on by itself
    Cancelled, ///< asking was; the service goes on by itself
    Silent     ///< the service does not tell any more
};

/// How a login stands, and the words for people; none of one that is under way or went well.
struct LoginOutcome {
    LoginEnd end = LoginEnd::UnderWay;
    QString words = {};

    bool HasEnded() const { return end != LoginEnd::UnderWay; }
};

/// What the login status code means; of a failed login the service's last words are read.
LoginOutcome OutcomeOfLogin(const ServiceClient& service, const VDirRecord& record, int code,
                            std::stop_token stop = {});

/// How often and how long a login is waited for.
struct LoginPace {
    int polls = 120;
    int silences = 10; ///< so many polls in a row without an answer end it
    std::chrono::milliseconds pause{1000};
};

/// Asks how a login stands, one poll at a time. Any thread, one after the other.
class LoginPolls {
public:
    explicit LoginPolls(VDirRecord record, LoginPace pace = {}) : m_record(std::move(record)), m_pace(pace) {}

    LoginOutcome Poll(const ServiceClient& service, const std::stop_token& stop);
    int Count() const { return m_polls; }

private:
    LoginOutcome Ask(const ServiceClient& service, const std::stop_token& stop);

    VDirRecord m_record;
    LoginPace m_pace;
    int m_polls = 0;
    int m_silences = 0;
};

/// Waits for the end of the login; `note` is called after each poll that has not brought it. Blocks the
/// calling thread, so it is not for a lane.
LoginOutcome WaitForLogin(const ServiceClient& service, const VDirRecord& record,
                          const std::function<void(int polls)>& note, const std::stop_token& stop,
                          LoginPace pace = {});
