#pragma once

#include "platform/HttpTransport.h"
#include "service/VDirRecord.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <stop_token>
#include <vector>

enum class ServiceOutcome { Answered, OtherStatus, Unreachable, TimedOut, Cancelled };

/// How a request went. Only the expected status is an answer.
struct ServiceAnswer {
    ServiceOutcome outcome = ServiceOutcome::Unreachable;
    int status = 0;                ///< also of an answer that was not expected
    QByteArray body;               ///< empty but for an answer
    std::optional<quint32> length; ///< none when reading broke off; the body then holds what was read
    bool sent = false;             ///< also without an answer the service may have carried the request out

    explicit operator bool() const { return outcome == ServiceOutcome::Answered; }
};

/// What an answer tells of a setting: its value, that it has none, so that its default holds, or nothing.
enum class SettingState { Set, NotSet, NotRead };

/// A refusal (4xx) says that the setting is not set. Any other status, a value that was cut short, and no
/// answer at all say nothing.
SettingState SettingStateOf(const ServiceAnswer& answer);

/// The console's only way to command the background service: one synchronous exchange over loopback HTTP a
/// call. Free of state, usable from any thread; shows nothing and traces nothing, the caller speaks.
class ServiceClient {
public:
    enum class ValueType { Integer = 1, String = 2, Boolean = 4 };

    /// Octets that an answer may hold; past them it counts as broken off. Listings of folders, and whatever a
    /// person asks for by hand, may be long.
    static constexpr std::size_t MaxAnswer = std::size_t{16} << 20;
    static constexpr std::size_t MaxListing = std::size_t{256} << 20;

    /// The path goes out as it stands but for octets that no request line can hold; a body is followed by
    /// a zero octet on the wire. The client stops within a second of the token.
    ServiceAnswer SendRequest(const QString& path, const QString& verb, int expectedStatus,
                              const std::optional<QByteArray>& body = {}, std::stop_token stop = {},
                              std::size_t maxAnswer = MaxAnswer) const;

    ServiceAnswer GetSetting(const QString& name, std::stop_token stop = {}) const;
    // The fallback, or none, unless the setting was read and is set.
    int GetIntSetting(const QString& name, int fallback, std::stop_token stop = {}) const;
    bool GetBoolSetting(const QString& name, bool fallback, std::stop_token stop = {}) const;
    std::optional<QString> GetStringSetting(const QString& name, std::stop_token stop = {}) const;

    /// The value goes into the query as it stands: an ampersand or a hash sign in it is the caller's concern.
    ServiceAnswer SetSetting(const QString& name, const QString& value, ValueType type,
                             std::stop_token stop = {}) const;
    /// The path and query that write a setting.
    static QString SettingTarget(const QString& name, const QString& value, ValueType type);
    ServiceAnswer SetIntSetting(const QString& name, int value, std::stop_token stop = {}) const;
    ServiceAnswer SetBoolSetting(const QString& name, bool value, std::stop_token stop = {}) const;
    ServiceAnswer SetStringSetting(const QString& name, const QString& text, std::stop_token stop = {}) const;

    ServiceAnswer StartTaskNow(const QString& taskId, std::stop_token stop = {}) const;
    ServiceAnswer ResumeTask(const QString& taskId, std::stop_token stop = {}) const;
    ServiceAnswer PauseTask(const QString& taskId, std::stop_token stop = {}) const;
    ServiceAnswer DeleteTask(const QString& taskId, std::stop_token stop = {}) const;
    ServiceAnswer DeleteSubTask(const QString& taskId, int subTaskNumber, std::stop_token stop = {}) const;

    /// The answer that ParseVdirList reads, for a caller that tells no answer from no list.
    ServiceAnswer RequestVdirList(std::stop_token stop = {}) const;
    /// None when there was no answer (the caller says so); an answer that is no list holds no records.
    std::optional<std::vector<VDirRecord>> GetVdirList(std::stop_token stop = {}) const;
    ServiceAnswer CallProfileMethod(const QString& method, const QString& text,
                                    std::stop_token stop = {}) const;
    ServiceAnswer AddNewCard(const QString& cardXml, std::stop_token stop = {}) const;
    /// The login status code of the virtual directory; 0 when there was no answer.
    int GetVDirStatus(const QByteArray& utf8Name, std::stop_token stop = {}) const;
};

/// How long each stage of a request for this path may take: the system's usual, but for the list of writers.
platform::HttpTimeouts TimeoutsOf(const QString& path);

/// The text of a setting's body, which ends at the first zero octet.
QString SettingText(const QByteArray& body);

/// Whether the text of a setting's body is "true", in any case.
bool SettingFlag(const QByteArray& body);

/// The decimal number a text begins with (blanks, a sign, digits); 0 when it begins with none. One that does
/// not fit becomes the nearest that does.
int LeadingNumber(QByteArrayView text);

/// The port of this mode's service: 9898 in server mode, 9678 otherwise, or `BREN_SERVICE_PORT`. 0 when that
/// is set to what is no port: nothing is sent then.
quint16 ServicePort();

/// What is wrong with `BREN_SERVICE_PORT`, in a sentence; empty when nothing is. Asked before anything is
/// commanded, because the usual port would be another service's.
QString ServicePortMistake();
