#include "platform/HttpRules.h"

#include <curl/curl.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <stdexcept>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

template <auto Free>
struct Freed {
    template <typename T>
    void operator()(T* handle) const {
        Free(handle);
    }
};

using Multi = std::unique_ptr<CURLM, Freed<curl_multi_cleanup>>;
using Easy = std::unique_ptr<CURL, Freed<curl_easy_cleanup>>;
using HeaderList = std::unique_ptr<curl_slist, Freed<curl_slist_free_all>>;

/// Plain HTTP needs nothing of the library's global state. It sets TLS up all the same, whatever is asked
/// for.
bool IsLibraryReady() {
    static const bool ready = curl_global_init(CURL_GLOBAL_NOTHING) == CURLE_OK;
    return ready;
}

/// A limit of zero is none.
milliseconds Limit(milliseconds limit) {
    return limit.count() > 0 ? limit : milliseconds(std::numeric_limits<int>::max());
}

void Append(HeaderList& list, const std::string& line) {
    if (curl_slist* longer = curl_slist_append(list.get(), line.c_str())) {
        static_cast<void>(list.release());
        list.reset(longer);
    }
}

HeaderList HeadersOf(const HttpRequest& request) {
    HeaderList list;
    for (const char* unwanted : {"Accept:", "Expect:", "Content-Type:"})
        Append(list, unwanted);
    for (const auto& [name, value] : request.headers) {
        std::string line = name;
        line += value.empty() ? ";" : ": "; // the first stands for a header without a value
        Append(list, line += value);
    }
    if (request.refresh) {
        Append(list, "Pragma: no-cache");
        Append(list, "Cache-Control: no-cache");
    }
    return list;
}

/// One request on its way. Time is taken from the socket's events: as long as some come, nothing is silent.
class Exchange {
public:
    explicit Exchange(const HttpRequest& request);
    HttpResponse Run(const std::stop_token& stop);

private:
    void SetUpConnection();
    void SetUpRequest();
    HttpOutcome Drive(const std::stop_token& stop);
    HttpOutcome Finish();
    HttpOutcome BrokenOff(HttpOutcome otherwise) const;
    bool WasSent() const;
    milliseconds SilenceLimit() const;
    static size_t TakeHeader(char* octets, size_t size, size_t count, void* self);
    static size_t TakeBody(char* octets, size_t size, size_t count, void* self);

    const HttpRequest& m_request;
    const std::string m_target;
    HeaderList m_headers;
    Multi m_multi;
    Easy m_easy;
    HttpResponse m_response;
    bool m_headersRead = false;
};

Exchange::Exchange(const HttpRequest& request)
    : m_request(request), m_target(RequestTarget(request)), m_headers(HeadersOf(request)),
      m_multi(curl_multi_init()), m_easy(curl_easy_init()) {
    if (!m_easy)
        return;
    SetUpConnection();
    SetUpRequest();
}

void Exchange::SetUpConnection() {
    CURL* easy = m_easy.get();
    const HttpTimeouts& timeouts = m_request.timeouts;
    const milliseconds resolve = timeouts.resolve.count() > 0 ? timeouts.resolve : milliseconds(0);
    const milliseconds connect = std::min(Limit(timeouts.connect) + resolve, Limit(milliseconds(0)));
    const std::string url = "http://" + m_request.host + ':' + std::to_string(m_request.port) + '/';
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_HTTP09_ALLOWED, 0L);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_HTTP_CONTENT_DECODING, 0L);
    curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(connect.count()));
}

void Exchange::SetUpRequest() {
    CURL* easy = m_easy.get();
    if (SendsLength(m_request)) {
        const bool hasBody = m_request.body.has_value();
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE,
                         static_cast<curl_off_t>(hasBody ? m_request.body->size() : 0));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, hasBody ? m_request.body->data() : "");
    } else if (m_request.verb == "HEAD") {
        curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    }
    curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, m_request.verb.c_str());
    curl_easy_setopt(easy, CURLOPT_REQUEST_TARGET, m_target.c_str());
    curl_easy_setopt(easy, CURLOPT_USERAGENT, m_request.userAgent.c_str());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers.get());
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Exchange::TakeHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Exchange::TakeBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
}

HttpResponse Exchange::Run(const std::stop_token& stop) {
    if (!m_multi || !m_easy || curl_multi_add_handle(m_multi.get(), m_easy.get()) != CURLM_OK)
        return {};
    m_response.complete = false;
    {
        const std::stop_callback wake(stop, [this] { curl_multi_wakeup(m_multi.get()); });
        m_response.outcome = Drive(stop);
    }
    m_response.sent = WasSent();
    curl_multi_remove_handle(m_multi.get(), m_easy.get());
    return std::move(m_response);
}

HttpOutcome Exchange::Drive(const std::stop_token& stop) {
    Clock::time_point lastEvent = Clock::now();
    while (!stop.stop_requested()) {
        int running = 0;
        if (curl_multi_perform(m_multi.get(), &running) != CURLM_OK)
            return BrokenOff(HttpOutcome::Unreachable);
        if (running == 0)
            return Finish();
        const auto silence = std::chrono::duration_cast<milliseconds>(Clock::now() - lastEvent);
        const milliseconds left = SilenceLimit() - silence;
        if (left.count() <= 0)
            return BrokenOff(HttpOutcome::TimedOut);
        int events = 0;
        if (curl_multi_poll(m_multi.get(), nullptr, 0, static_cast<int>(left.count()), &events) != CURLM_OK)
            return BrokenOff(HttpOutcome::Unreachable);
        if (events > 0)
            lastEvent = Clock::now();
    }
    return HttpOutcome::Cancelled;
}

HttpOutcome Exchange::Finish() {
    int left = 0;
    const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left);
    const CURLcode code = message ? message->data.result : CURLE_RECV_ERROR;
    m_response.complete = m_headersRead && code == CURLE_OK;
    return BrokenOff(code == CURLE_OPERATION_TIMEDOUT ? HttpOutcome::TimedOut : HttpOutcome::Unreachable);
}

/// Once the headers have come, whatever breaks off is still an answer.
HttpOutcome Exchange::BrokenOff(HttpOutcome otherwise) const {
    return m_headersRead ? HttpOutcome::Answered : otherwise;
}

bool Exchange::WasSent() const {
    long octets = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_REQUEST_SIZE, &octets);
    return octets > 0;
}

milliseconds Exchange::SilenceLimit() const {
    curl_off_t bodyOctets = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_SIZE_UPLOAD_T, &bodyOctets);
    if (!WasSent())
        return Limit(milliseconds(0)); // the library itself watches over connecting
    const bool sent = !m_request.body || bodyOctets >= static_cast<curl_off_t>(m_request.body->size());
    return Limit(sent || m_headersRead ? m_request.timeouts.receive : m_request.timeouts.send);
}

size_t Exchange::TakeHeader(char* octets, size_t size, size_t count, void* self) {
    auto& exchange = *static_cast<Exchange*>(self);
    const std::string_view line(octets, size * count);
    if (line == "\r\n" || line == "\n") {
        long status = 0;
        curl_easy_getinfo(exchange.m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
        exchange.m_headersRead = status >= 200;
        if (exchange.m_headersRead)
            exchange.m_response.status = static_cast<int>(status);
    }
    return line.size();
}

size_t Exchange::TakeBody(char* octets, size_t size, size_t count, void* self) {
    auto& exchange = *static_cast<Exchange*>(self);
    std::string& body = exchange.m_response.body;
    try {
        curl_off_t length = 0;
        curl_easy_getinfo(exchange.m_easy.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        if (body.empty() && length > 0)
            ReserveAnnounced(body, static_cast<uint64_t>(length));
        // Less than the library offered makes it break the transfer off.
        return AppendBounded(body, {octets, size * count}, exchange.m_request) ? size * count : 0;
    } catch (const std::exception&) {
        return 0; // too large for this process
    }
}

} // namespace

HttpResponse SendHttp(const HttpRequest& request, std::stop_token stop) {
    if (stop.stop_requested())
        return {HttpOutcome::Cancelled, 0, {}, false};
    if (!CanBeSent(request) || !IsLibraryReady())
        return {};
    return Exchange(request).Run(stop);
}

} // namespace platform
