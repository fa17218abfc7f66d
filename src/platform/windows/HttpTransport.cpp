#include "platform/HttpRules.h"
#include "platform/windows/WideText.h"

#include <windows.h>

#include <winhttp.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <condition_variable>
#include <limits>
#include <memory>
#include <mutex>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// The library's own time-outs are put off: silence is measured here, by its signs of life.
constexpr DWORD Never = std::numeric_limits<int>::max();

struct InternetCloser {
    void operator()(void* handle) const { ::WinHttpCloseHandle(handle); }
};

using Internet = std::unique_ptr<void, InternetCloser>;

/// What the library's threads tell about a request, and the memory that they use. Both they and the caller
/// own it: a caller that gives up does not wait for them.
struct Progress {
    std::mutex mutex;
    std::condition_variable_any changed;
    Clock::time_point lastSign = Clock::now();
    bool connected = false;
    size_t sent = 0; ///< octets, the head's among them
    bool failed = false;
    DWORD reached = 0; ///< the last step that was completed
    DWORD count = 0;   ///< octets that the step has to tell
    std::string requestBody;
    std::array<char, 65536> chunk;
};

void Note(Progress& progress, DWORD status, const void* information, DWORD size) {
    const std::lock_guard lock(progress.mutex);
    progress.lastSign = Clock::now();
    switch (status) {
    case WINHTTP_CALLBACK_STATUS_CONNECTED_TO_SERVER:
    case WINHTTP_CALLBACK_STATUS_SENDING_REQUEST:
        progress.connected = true;
        break;
    case WINHTTP_CALLBACK_STATUS_REQUEST_SENT:
        progress.sent += *static_cast<const DWORD*>(information);
        break;
    case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
        progress.reached = status;
        progress.count = *static_cast<const DWORD*>(information);
        break;
    case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
    case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
        progress.reached = status;
        progress.count = size;
        break;
    case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
        progress.failed = true;
        break;
    default:
        break;
    }
    progress.changed.notify_all();
}

void CALLBACK OnStatus(HINTERNET, DWORD_PTR context, DWORD status, void* information, DWORD size) {
    auto* const shared = reinterpret_cast<std::shared_ptr<Progress>*>(context);
    if (!shared)
        return;
    if (status == WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING)
        delete shared;
    else
        Note(**shared, status, information, size);
}

milliseconds Limit(milliseconds limit) {
    return limit.count() > 0 ? limit : milliseconds(Never);
}

/// One request on its way.
class Exchange {
public:
    Exchange(const HttpRequest& request, std::stop_token stop)
        : m_request(request), m_stop(std::move(stop)) {}
    HttpResponse Run();

private:
    enum class Step { Done, Failed, TimedOut, Stopped };

    bool Open();
    bool AddHeaders() const;
    Step Send();
    Step ReadBody();
    bool ReadHead();
    std::optional<uint64_t> StatedLength() const;
    Step Await(BOOL started, DWORD step);
    milliseconds LimitNow() const;

    const HttpRequest& m_request;
    const std::stop_token m_stop;
    const std::shared_ptr<Progress> m_progress = std::make_shared<Progress>();
    Internet m_session;
    Internet m_connection;
    Internet m_handle;
    HttpResponse m_response;
};

HttpResponse Exchange::Run() {
    Step step = Open() ? Send() : Step::Failed;
    if (step == Step::Done && !ReadHead())
        step = Step::Failed;
    if (step == Step::Done) {
        step = ReadBody();
        m_response.complete = step == Step::Done;
        step = step == Step::Stopped ? step : Step::Done;
    }
    constexpr std::array outcomes = {HttpOutcome::Answered, HttpOutcome::Unreachable, HttpOutcome::TimedOut,
                                     HttpOutcome::Cancelled};
    m_response.outcome = outcomes[static_cast<size_t>(step)];
    const std::lock_guard lock(m_progress->mutex);
    m_response.sent = m_progress->connected;
    return std::move(m_response);
}

bool Exchange::Open() {
    const std::wstring agent = Wide(m_request.userAgent);
    m_session.reset(::WinHttpOpen(agent.empty() ? nullptr : agent.c_str(), WINHTTP_ACCESS_TYPE_NO_PROXY,
                                  WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC));
    if (!m_session || !::WinHttpSetTimeouts(m_session.get(), Never, Never, Never, Never))
        return false;
    m_connection.reset(::WinHttpConnect(m_session.get(), Wide(m_request.host).c_str(), m_request.port, 0));
    if (!m_connection)
        return false;
    const DWORD flags = WINHTTP_FLAG_ESCAPE_DISABLE | (m_request.refresh ? WINHTTP_FLAG_REFRESH : 0);
    m_handle.reset(::WinHttpOpenRequest(m_connection.get(), Wide(m_request.verb).c_str(),
                                        Wide(RequestTarget(m_request)).c_str(), nullptr, WINHTTP_NO_REFERER,
                                        WINHTTP_DEFAULT_ACCEPT_TYPES, flags));
    if (!m_handle)
        return false;
    DWORD wait = Never;
    ::WinHttpSetOption(m_handle.get(), WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, &wait, sizeof wait);
    DWORD unwanted = WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_AUTHENTICATION;
    return ::WinHttpSetOption(m_handle.get(), WINHTTP_OPTION_DISABLE_FEATURE, &unwanted, sizeof unwanted) &&
           AddHeaders();
}

bool Exchange::AddHeaders() const {
    std::wstring lines;
    for (const auto& [name, value] : m_request.headers)
        lines.append(Wide(name)).append(L": ").append(Wide(value)).append(L"\r\n");
    return lines.empty() || ::WinHttpAddRequestHeaders(m_handle.get(), lines.c_str(), static_cast<DWORD>(-1),
                                                       WINHTTP_ADDREQ_FLAG_ADD | WINHTTP_ADDREQ_FLAG_REPLACE);
}

Exchange::Step Exchange::Send() {
    std::string& body = m_progress->requestBody;
    body = m_request.body.value_or("");
    auto context = std::make_unique<std::shared_ptr<Progress>>(m_progress);
    auto* value = context.get();
    if (body.size() > std::numeric_limits<DWORD>::max() ||
        !::WinHttpSetOption(m_handle.get(), WINHTTP_OPTION_CONTEXT_VALUE, &value, sizeof(DWORD_PTR)) ||
        ::WinHttpSetStatusCallback(m_handle.get(), OnStatus, WINHTTP_CALLBACK_FLAG_ALL_NOTIFICATIONS, 0) ==
            WINHTTP_INVALID_STATUS_CALLBACK)
        return Step::Failed;
    static_cast<void>(context.release()); // goes when the handle's closing is told
    const DWORD size = static_cast<DWORD>(body.size());
    const BOOL sending = ::WinHttpSendRequest(m_handle.get(), WINHTTP_NO_ADDITIONAL_HEADERS, 0,
                                              size ? body.data() : WINHTTP_NO_REQUEST_DATA, size, size,
                                              reinterpret_cast<DWORD_PTR>(value));
    const Step sent = Await(sending, WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE);
    if (sent != Step::Done)
        return sent;
    return Await(::WinHttpReceiveResponse(m_handle.get(), nullptr),
                 WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE);
}

bool Exchange::ReadHead() {
    DWORD status = 0;
    DWORD size = sizeof status;
    const bool read =
        ::WinHttpQueryHeaders(m_handle.get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                              WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX);
    m_response.status = static_cast<int>(status);
    return read && status >= 200; // less where the answer is no HTTP at all
}

std::optional<uint64_t> Exchange::StatedLength() const {
    std::array<wchar_t, 32> text{};
    DWORD size = sizeof text;
    if (!::WinHttpQueryHeaders(m_handle.get(), WINHTTP_QUERY_CONTENT_LENGTH, WINHTTP_HEADER_NAME_BY_INDEX,
                               text.data(), &size, WINHTTP_NO_HEADER_INDEX))
        return {};
    const std::string digits = Narrow(text.data());
    uint64_t length = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
    return error == std::errc() ? std::optional(length) : std::nullopt;
}

Exchange::Step Exchange::ReadBody() {
    std::string& body = m_response.body;
    const bool hasNone = m_request.verb == "HEAD" || m_response.status == 204 || m_response.status == 304;
    const std::optional<uint64_t> length = hasNone ? std::nullopt : StatedLength();
    if (length)
        ReserveAnnounced(body, *length);
    while (true) {
        const Step asked = Await(::WinHttpQueryDataAvailable(m_handle.get(), nullptr),
                                 WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE);
        if (asked != Step::Done)
            return asked;
        const DWORD available = std::min(m_progress->count, static_cast<DWORD>(m_progress->chunk.size()));
        if (available == 0)
            break;
        const Step read =
            Await(::WinHttpReadData(m_handle.get(), m_progress->chunk.data(), available, nullptr),
                  WINHTTP_CALLBACK_STATUS_READ_COMPLETE);
        if (read != Step::Done)
            return read;
        if (m_progress->count == 0)
            break;
        if (!AppendBounded(body, {m_progress->chunk.data(), m_progress->count}, m_request))
            return Step::Failed;
    }
    return !length || body.size() >= *length ? Step::Done : Step::Failed;
}

/// Waits until the step that was `started` is complete.
Exchange::Step Exchange::Await(BOOL started, DWORD step) {
    if (!started)
        return Step::Failed;
    Progress& progress = *m_progress;
    std::unique_lock lock(progress.mutex);
    while (!progress.failed && progress.reached != step) {
        if (m_stop.stop_requested())
            return Step::Stopped;
        const Clock::time_point seen = progress.lastSign;
        const Clock::time_point deadline = seen + LimitNow();
        if (Clock::now() >= deadline)
            return Step::TimedOut;
        progress.changed.wait_until(lock, m_stop, deadline, [&] {
            return progress.failed || progress.reached == step || progress.lastSign != seen;
        });
    }
    if (progress.failed)
        return Step::Failed;
    progress.reached = 0;
    return Step::Done;
}

/// The longest silence of the present stage.
milliseconds Exchange::LimitNow() const {
    const HttpTimeouts& timeouts = m_request.timeouts;
    if (!m_progress->connected)
        return Limit(timeouts.connect) + std::max(timeouts.resolve, milliseconds(0));
    // The head is counted too, so more octets than the body's mean that nearly all are on their way.
    const bool sent = m_progress->sent > m_progress->requestBody.size();
    return Limit(sent ? timeouts.receive : timeouts.send);
}

} // namespace

HttpResponse SendHttp(const HttpRequest& request, std::stop_token stop) {
    if (stop.stop_requested())
        return {HttpOutcome::Cancelled, 0, {}, false};
    if (!CanBeSent(request))
        return {};
    return Exchange(request, std::move(stop)).Run();
}

} // namespace platform
