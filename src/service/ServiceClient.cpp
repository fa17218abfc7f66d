#include "service/ServiceClient.h"

#include "platform/Environment.h"
#include "platform/HttpTransport.h"
#include "zep/SysInfo.h"
#include "zep/Text.h"

#include <QCoreApplication>

#include <algorithm>
#include <charconv>
#include <limits>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint16 ServerPort = 9898;
constexpr quint16 DesktopPort = 9678;
constexpr char PortVariable[] = "BREN_SERVICE_PORT";
constexpr int Ok = 200;

/// The writers of a machine take their time to gather.
constexpr platform::HttpTimeouts WritersTimeouts{120s, 160s, 160s, 130s};

ServiceOutcome OutcomeOf(const platform::HttpResponse& response, int expectedStatus) {
    switch (response.outcome) {
    case platform::HttpOutcome::Answered:
        return response.status == expectedStatus ? ServiceOutcome::Answered : ServiceOutcome::OtherStatus;
    case platform::HttpOutcome::TimedOut:
        return ServiceOutcome::TimedOut;
    case platform::HttpOutcome::Cancelled:
        return ServiceOutcome::Cancelled;
    case platform::HttpOutcome::Unreachable:
        break;
    }
    return ServiceOutcome::Unreachable;
}

ServiceAnswer AnswerOf(const platform::HttpResponse& response, int expectedStatus) {
    ServiceAnswer answer;
    answer.outcome = OutcomeOf(response, expectedStatus);
    answer.status = response.status;
    answer.sent = response.sent;
    if (!answer)
        return answer;
    answer.body = QByteArray::fromStdString(response.body);
    if (response.complete)
        answer.length = static_cast<quint32>(response.body.size());
    return answer;
}

ServiceAnswer Get(const ServiceClient& client, const QString& path, std::stop_token stop,
                  const std::optional<QByteArray>& body = {}) {
    return client.SendRequest(path, u"GET"_s, Ok, body, std::move(stop));
}

} // namespace

SettingState SettingStateOf(const ServiceAnswer& answer) {
    if (answer && answer.length)
        return SettingState::Set;
    const bool refused =
        answer.outcome == ServiceOutcome::OtherStatus && answer.status >= 400 && answer.status < 500;
    return refused ? SettingState::NotSet : SettingState::NotRead;
}

ServiceAnswer ServiceClient::SendRequest(const QString& path, const QString& verb, int expectedStatus,
                                         const std::optional<QByteArray>& body, std::stop_token stop,
                                         std::size_t maxAnswer) const {
    if (ServicePort() == 0)
        return {}; // better no service than another one
    platform::HttpRequest request;
    request.host = "127.0.0.1";
    request.port = ServicePort();
    request.verb = verb.toStdString();
    request.target = ZEPUnicodeToUTF8(path).toStdString();
    request.userAgent = "NextZEP Shell Extension";
    request.headers = {{"Depth", "1"}};
    request.refresh = true;
    request.timeouts = TimeoutsOf(path);
    request.maxBody = maxAnswer;
    if (body) {
        request.body = body->toStdString();
        request.body->push_back('\0'); // the service reads its text up to a terminator
    }
    return AnswerOf(platform::SendHttp(request, std::move(stop)), expectedStatus);
}

ServiceAnswer ServiceClient::GetSetting(const QString& name, std::stop_token stop) const {
    return Get(*this, u"/settings/"_s + name, std::move(stop));
}

int ServiceClient::GetIntSetting(const QString& name, int fallback, std::stop_token stop) const {
    const ServiceAnswer answer = GetSetting(name, std::move(stop));
    return SettingStateOf(answer) == SettingState::Set ? LeadingNumber(answer.body) : fallback;
}

bool ServiceClient::GetBoolSetting(const QString& name, bool fallback, std::stop_token stop) const {
    const ServiceAnswer answer = GetSetting(name, std::move(stop));
    return SettingStateOf(answer) == SettingState::Set ? SettingFlag(answer.body) : fallback;
}

std::optional<QString> ServiceClient::GetStringSetting(const QString& name, std::stop_token stop) const {
    const ServiceAnswer answer = GetSetting(name, std::move(stop));
    return SettingStateOf(answer) == SettingState::Set ? std::optional(SettingText(answer.body))
                                                       : std::nullopt;
}

ServiceAnswer ServiceClient::SetSetting(const QString& name, const QString& value, ValueType type,
                                        std::stop_token stop) const {
    return SendRequest(SettingTarget(name, value, type), u"PUT"_s, Ok, {}, std::move(stop));
}

QString ServiceClient::SettingTarget(const QString& name, const QString& value, ValueType type) {
    return u"/settings/"_s + name + u"?ValueType="_s + QString::number(static_cast<int>(type)) +
           u"&Value="_s + value;
}

ServiceAnswer ServiceClient::SetIntSetting(const QString& name, int value, std::stop_token stop) const {
    return SetSetting(name, QString::number(value), ValueType::Integer, std::move(stop));
}

ServiceAnswer ServiceClient::SetBoolSetting(const QString& name, bool value, std::stop_token stop) const {
    return SetSetting(name, value ? u"True"_s : u"False"_s, ValueType::Boolean, std::move(stop));
}

ServiceAnswer ServiceClient::SetStringSetting(const QString& name, const QString& text,
                                              std::stop_token stop) const {
    return SetSetting(name, text, ValueType::String, std::move(stop));
}

ServiceAnswer ServiceClient::StartTaskNow(const QString& taskId, std::stop_token stop) const {
    return Get(*this, u"/schedule/startnow?"_s + taskId, std::move(stop));
}

ServiceAnswer ServiceClient::ResumeTask(const QString& taskId, std::stop_token stop) const {
    return Get(*this, u"/schedule/resumetask?"_s + taskId, std::move(stop));
}

ServiceAnswer ServiceClient::PauseTask(const QString& taskId, std::stop_token stop) const {
    return Get(*this, u"/schedule/pausetask?"_s + taskId, std::move(stop));
}

ServiceAnswer ServiceClient::DeleteTask(const QString& taskId, std::stop_token stop) const {
    return Get(*this, u"/schedule/deletetask?"_s + taskId, std::move(stop));
}

ServiceAnswer ServiceClient::DeleteSubTask(const QString& taskId, int subTaskNumber,
                                           std::stop_token stop) const {
    const QString path = u"/schedule/delsub?"_s + taskId + u':' + QString::number(subTaskNumber);
    return Get(*this, path, std::move(stop));
}

ServiceAnswer ServiceClient::RequestVdirList(std::stop_token stop) const {
    // The "%d" goes out as these two characters: the service takes anything there.
    return Get(*this, u"/profile/%d?PMCMethod=GetVdirList"_s, std::move(stop));
}

std::optional<std::vector<VDirRecord>> ServiceClient::GetVdirList(std::stop_token stop) const {
    const ServiceAnswer answer = RequestVdirList(std::move(stop));
    if (!answer)
        return {};
    return ParseVdirList(answer.body).value_or(std::vector<VDirRecord>());
}

ServiceAnswer ServiceClient::CallProfileMethod(const QString& method, const QString& text,
                                               std::stop_token stop) const {
    return Get(*this, u"/profile/?PMCMethod="_s + method, std::move(stop), ZEPUnicodeToUTF8(text));
}

ServiceAnswer ServiceClient::AddNewCard(const QString& cardXml, std::stop_token stop) const {
    return Get(*this, u"/mysafe/?PMCMethod=addnewcard"_s, std::move(stop), ZEPUnicodeToUTF8(cardXml));
}

int ServiceClient::GetVDirStatus(const QByteArray& utf8Name, std::stop_token stop) const {
    const ServiceAnswer answer =
        Get(*this, u"/profile/?PMCMethod=GetVDirStatus"_s, std::move(stop), utf8Name);
    return answer ? LeadingNumber(answer.body) : 0;
}

platform::HttpTimeouts TimeoutsOf(const QString& path) {
    return path == "/backupsvr/writers"_L1 ? WritersTimeouts : platform::HttpTimeouts();
}

QString SettingText(const QByteArray& body) {
    const qsizetype end = body.indexOf('\0');
    return ZEPUTF8ToUnicode(QByteArrayView(body).first(end < 0 ? body.size() : end));
}

bool SettingFlag(const QByteArray& body) {
    return SettingText(body).compare("true"_L1, Qt::CaseInsensitive) == 0;
}

int LeadingNumber(QByteArrayView text) {
    const auto isBlank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto* at = std::find_if_not(text.begin(), text.end(), isBlank);
    const bool negative = at != text.end() && *at == '-';
    if (at != text.end() && (*at == '-' || *at == '+'))
        ++at;
    constexpr qint64 Beyond = qint64{std::numeric_limits<int>::max()} + 1;
    qint64 number = 0;
    for (; at != text.end() && isDigit(*at); ++at)
        number = std::min(number * 10 + (*at - '0'), Beyond);
    return static_cast<int>(std::clamp<qint64>(negative ? -number : number, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

quint16 ServicePort() {
    if (!platform::HasEnvironmentVariable(PortVariable))
        return ZEPSysInfoIsServer() ? ServerPort : DesktopPort;
    const std::string given = platform::EnvironmentVariable(PortVariable).value_or("");
    quint16 port = 0;
    const auto [end, error] = std::from_chars(given.data(), given.data() + given.size(), port);
    return error == std::errc() && end == given.data() + given.size() ? port : 0;
}

QString ServicePortMistake() {
    if (ServicePort() != 0)
        return {};
    const std::string given = platform::EnvironmentVariable(PortVariable).value_or("");
    return QCoreApplication::translate(
               "ServicePort",
               "The environment variable %1 is \"%2\", which is no port: it takes a number from 1 to "
               "65535, or has to be taken away.")
        .arg(QLatin1String(PortVariable), QString::fromStdString(given));
}
