#include "devservice/HttpServer.h"

#include "devservice/Operations.h"

#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <thread>

namespace devservice {

namespace http = boost::beast::http;

namespace {

constexpr uint32_t HeaderLimit = 1024 * 1024; // a setting's value of 64 KB travels in the request line
constexpr uint64_t BodyLimit = 256 * 1024 * 1024;

std::string_view View(boost::beast::string_view text) {
    return {text.data(), text.size()};
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

std::string HeaderText(const Answer& answer) {
    http::response<http::empty_body> response(static_cast<http::status>(answer.status), 11);
    return "HTTP/1.1 " + std::to_string(answer.status) + ' ' + std::string(View(response.reason())) +
           "\r\nContent-Type: " + answer.contentType +
           "\r\nContent-Length: " + std::to_string(answer.body.size()) + "\r\nConnection: close\r\n\r\n";
}

/// One connection: reads a request and answers it, badly where a fault says so.
class Session {
public:
    explicit Session(std::stop_token stop)
        : m_operations(std::move(stop)), m_socket(m_operations.Context()) {}

    tcp::socket& Socket() { return m_socket; }

    std::optional<ReceivedRequest> Read() {
        http::request_parser<http::string_body> parser;
        parser.header_limit(HeaderLimit);
        parser.body_limit(BodyLimit);
        boost::beast::flat_buffer buffer;
        if (!m_operations.Await([&](auto done) { http::async_read(m_socket, buffer, parser, done); }))
            return {};
        ReceivedRequest request;
        request.verb = View(parser.get().method_string());
        request.target = View(parser.get().target());
        for (const auto& field : parser.get())
            request.headers.emplace_back(View(field.name_string()), View(field.value()));
        request.body = std::move(parser.get().body());
        return request;
    }

    void Send(Answer answer, const HttpFaultSwitch& fault) {
        if (fault.fault == HttpFault::Delay && !m_operations.Sleep(fault.time))
            return;
        if (fault.fault == HttpFault::WrongStatus)
            answer.status = fault.status;
        const std::string half = answer.body.substr(0, answer.body.size() / 2);
        switch (fault.fault) {
        case HttpFault::Hang:
            m_operations.Sleep(std::chrono::milliseconds(-1));
            return;
        case HttpFault::Drip:
            Drip(answer, fault.time);
            return;
        case HttpFault::GarbageHeaders:
            Finish("\x01\xFF nothing that HTTP knows\r\n:::\r\n\r\n");
            return;
        case HttpFault::CutByFin:
            Finish(HeaderText(answer) + half);
            return;
        case HttpFault::CutByRst:
            Write(HeaderText(answer) + half);
            Reset();
            return;
        default:
            Finish(HeaderText(answer) + answer.body);
        }
    }

private:
    bool Write(const std::string& octets) {
        return m_operations.Await(
            [&](auto done) { asio::async_write(m_socket, asio::buffer(octets), done); });
    }

    void Finish(const std::string& octets) {
        if (!Write(octets))
            return;
        error_code ignored;
        m_socket.shutdown(tcp::socket::shutdown_send, ignored);
        char rest[512]; // what still comes must be read, or closing would reset the connection
        while (m_operations.Await([&](auto done) { m_socket.async_read_some(asio::buffer(rest), done); })) {
        }
    }

    void Drip(const Answer& answer, std::chrono::milliseconds time) {
        m_socket.set_option(tcp::no_delay(true));
        if (!Write(HeaderText(answer)))
            return;
        for (const char octet : answer.body)
            if (!m_operations.Sleep(time) || !Write(std::string(1, octet)))
                return;
        Finish({});
    }

    void Reset() {
        error_code ignored;
        m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
        m_socket.close(ignored);
    }

    Operations m_operations;
    tcp::socket m_socket;
};

/// Whether this thread is answering a request: it cannot wait for the end of all requests then.
thread_local bool answering = false;

struct Worker {
    std::stop_source stop;
    Session session{stop.get_token()};
    std::atomic<bool> steering = false; ///< answers a request of ControlPrefix
    std::atomic<bool> ended = false;
    std::thread thread;
};

} // namespace

std::string ReceivedRequest::Header(const std::string& name) const {
    for (const auto& [key, value] : headers)
        if (EqualIgnoringCase(key, name))
            return value;
    return {};
}

struct HttpServer::State {
    Handler handler;
    uint16_t port = 0;

    // Only the switcher opens and closes, so that nobody else waits for a worker which waits for him.
    asio::io_context holdContext;
    std::optional<tcp::acceptor> holder; ///< keeps the port while it is closed
    std::stop_source listenerStop;
    std::thread listener;
    std::list<Worker> workers; ///< the listener's while it runs, else the switcher's

    std::mutex mutex; ///< guards what follows
    std::condition_variable_any changed;
    bool wanted = false;
    bool listening = false; ///< connections are taken
    bool open = false;      ///< as `listening`, and false only when the connections have ended too
    std::string openError;
    HttpFaultSwitch fault;
    std::optional<std::chrono::steady_clock::time_point> refuseUntil;
    std::jthread switcher; ///< last: ends before what it uses

    bool ShallBeOpen() const { return wanted && fault.fault != HttpFault::Refuse; }
    tcp::acceptor Bind(asio::io_context& context, bool reuse) const;
    void Switch(std::stop_token stop);
    void Apply(bool shallBeOpen);
    void NoteListening(bool now);
    void Listen(Operations& operations, tcp::acceptor& acceptor);
    void EndConnections();
    void Serve(Worker& worker);
    HttpFaultSwitch TakeFault(const std::string& target);
    void WaitUntilApplied(std::unique_lock<std::mutex>& lock);
};

tcp::acceptor HttpServer::State::Bind(asio::io_context& context, bool reuse) const {
    // Elsewhere an address may be bound again at once, and taking it over from its owner must not be allowed.
    constexpr bool posix = std::filesystem::path::preferred_separator == '/';
    tcp::acceptor acceptor(context, tcp::v4());
    acceptor.set_option(asio::socket_base::reuse_address(posix && reuse));
    acceptor.bind(tcp::endpoint(asio::ip::address_v4::loopback(), port));
    return acceptor;
}

void HttpServer::State::Switch(std::stop_token stop) {
    std::unique_lock lock(mutex);
    while (!stop.stop_requested()) {
        if (refuseUntil && std::chrono::steady_clock::now() >= *refuseUntil) {
            refuseUntil.reset();
            fault = {};
            changed.notify_all();
        }
        if (const bool shall = ShallBeOpen(); shall != open) {
            lock.unlock();
            Apply(shall);
            lock.lock();
            open = shall && openError.empty();
            wanted = wanted && openError.empty();
            changed.notify_all();
        } else if (refuseUntil) {
            changed.wait_until(lock, stop, *refuseUntil, [this] { return ShallBeOpen() != open; });
        } else {
            changed.wait(lock, stop, [this] { return refuseUntil || ShallBeOpen() != open; });
        }
    }
    lock.unlock();
    Apply(false);
}

void HttpServer::State::Apply(bool shallBeOpen) {
    listenerStop.request_stop();
    if (listener.joinable())
        listener.join();
    NoteListening(false);
    EndConnections();
    holder.reset();
    try {
        if (shallBeOpen) {
            listenerStop = {};
            auto operations = std::make_shared<Operations>(listenerStop.get_token());
            auto acceptor = std::make_shared<tcp::acceptor>(Bind(operations->Context(), true));
            acceptor->listen();
            listener = std::thread([this, operations, acceptor] { Listen(*operations, *acceptor); });
            NoteListening(true);
        } else {
            holder.emplace(Bind(holdContext, true));
        }
    } catch (const boost::system::system_error& error) {
        const std::scoped_lock lock(mutex);
        openError = error.what();
    }
}

void HttpServer::State::NoteListening(bool now) {
    const std::scoped_lock lock(mutex);
    listening = now;
    changed.notify_all();
}

void HttpServer::State::Listen(Operations& operations, tcp::acceptor& acceptor) {
    for (;;) {
        Worker& next = workers.emplace_back();
        if (!operations.Await([&](auto done) { acceptor.async_accept(next.session.Socket(), done); })) {
            workers.pop_back();
            if (operations.Sleep(std::chrono::milliseconds(10))) // too many open files, for example
                continue;
            return;
        }
        next.thread = std::thread([this, &next] { Serve(next); });
        workers.remove_if([](Worker& worker) {
            const bool ended = worker.ended; // asked once: it may end at any moment
            if (ended)
                worker.thread.join();
            return ended;
        });
    }
}

void HttpServer::State::EndConnections() {
    for (Worker& worker : workers)
        if (!worker.steering) // who asked for this shall hear so
            worker.stop.request_stop();
    for (Worker& worker : workers)
        worker.thread.join();
    workers.clear();
}

void HttpServer::State::Serve(Worker& worker) {
    if (const auto request = worker.session.Read()) {
        answering = true;
        worker.steering = request->target.rfind(ControlPrefix, 0) == 0;
        const HttpFaultSwitch present = TakeFault(request->target);
        const bool denied = present.fault == HttpFault::Deny;
        Answer answer = handler(*request, !denied);
        if (denied)
            answer = {present.status, "This was refused before anything was done.\n"};
        worker.session.Send(std::move(answer), present);
    }
    worker.ended = true;
}

HttpFaultSwitch HttpServer::State::TakeFault(const std::string& target) {
    const std::scoped_lock lock(mutex);
    const bool meant = target.rfind(ControlPrefix, 0) != 0 && target.find(fault.target) != std::string::npos;
    if (fault.fault == HttpFault::None || fault.times == 0 || !meant)
        return {};
    if (fault.times > 0)
        --fault.times;
    return fault;
}

void HttpServer::State::WaitUntilApplied(std::unique_lock<std::mutex>& lock) {
    changed.notify_all();
    const auto applied = [this] { return ShallBeOpen() == open && open == listening; };
    // Who answers a request is among the connections whose end that waits for.
    changed.wait(lock, [&] { return answering ? ShallBeOpen() || !listening : applied(); });
    if (!openError.empty())
        throw std::runtime_error(std::exchange(openError, {}));
}

HttpServer::HttpServer(uint16_t port, Handler handler) : m_state(std::make_unique<State>()) {
    m_state->handler = std::move(handler);
    m_state->port = port;
    try {
        m_state->holder.emplace(m_state->Bind(m_state->holdContext, port != 0));
    } catch (const boost::system::system_error& error) {
        throw std::runtime_error("port " + std::to_string(port) +
                                 " of 127.0.0.1 cannot be used: " + error.code().message());
    }
    m_state->port = m_state->holder->local_endpoint().port();
    m_state->switcher = std::jthread([state = m_state.get()](std::stop_token stop) { state->Switch(stop); });
}

HttpServer::~HttpServer() = default;

uint16_t HttpServer::Port() const {
    return m_state->port;
}

void HttpServer::Open() {
    std::unique_lock lock(m_state->mutex);
    m_state->wanted = true;
    m_state->WaitUntilApplied(lock);
}

void HttpServer::Close() {
    std::unique_lock lock(m_state->mutex);
    m_state->wanted = false;
    m_state->WaitUntilApplied(lock);
}

void HttpServer::SetFault(const HttpFaultSwitch& fault) {
    std::unique_lock lock(m_state->mutex);
    m_state->fault = fault;
    m_state->refuseUntil.reset();
    if (fault.fault == HttpFault::Refuse && fault.time > fault.time.zero())
        m_state->refuseUntil = std::chrono::steady_clock::now() + fault.time;
    m_state->WaitUntilApplied(lock);
}

} // namespace devservice
