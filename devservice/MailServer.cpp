#include "devservice/MailServer.h"

#include "devservice/Operations.h"

#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>

#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

namespace devservice {

namespace {

constexpr char EndOfMail[] = "\r\n.\r\n";
constexpr char EndOfLine[] = "\r\n";

struct Scripted {
    std::string octets;
    MailServer::After after = MailServer::After::GoOn;
};

std::map<std::string, Scripted> UsualAnswers() {
    const Scripted done{"250 OK\r\n"};
    return {{"greeting", {"220 brengroupsvc-dev takes every mail\r\n"}},
            {"HELO", done},
            {"MAIL", done},
            {"RCPT", done},
            {"RSET", done},
            {"DATA", {"354 End the mail with a line of one dot\r\n"}},
            {".", {"250 OK, kept\r\n"}},
            {"QUIT", {"221 Bye\r\n", MailServer::After::Close}}};
}

} // namespace

struct MailServer::State {
    State(std::filesystem::path where, uint16_t wanted)
        : folder(std::move(where)),
          acceptor(operations.Context(), {asio::ip::address_v4::loopback(), wanted}) {}

    void Serve() {
        while (!stop.stop_requested()) {
            tcp::socket socket(operations.Context());
            if (operations.Await([&](auto done) { acceptor.async_accept(socket, done); }))
                Talk(socket);
        }
    }

    void Talk(tcp::socket& socket) {
        std::string received;
        bool goesOn = Answer(socket, "greeting");
        while (goesOn) {
            const auto line = Read(socket, received, EndOfLine);
            if (!line)
                return;
            {
                const std::lock_guard lock(mutex);
                commands.push_back(*line);
            }
            const std::string step = line->substr(0, line->find(' '));
            goesOn = Answer(socket, step);
            if (step != "DATA" || !goesOn || !TakesMail())
                continue;
            const auto mail = Read(socket, received, EndOfMail);
            if (!mail)
                return;
            Keep(*mail);
            goesOn = Answer(socket, ".");
        }
    }

    /// What comes before the end.
    std::optional<std::string> Read(tcp::socket& socket, std::string& received, const char* end) {
        const auto begin = [&](auto done) {
            asio::async_read_until(socket, asio::dynamic_buffer(received), end, done);
        };
        if (!operations.Await(begin))
            return {};
        const size_t size = received.find(end);
        std::string text = received.substr(0, size);
        received.erase(0, size + std::char_traits<char>::length(end));
        return text;
    }

    /// False when the connection ends with it.
    bool Answer(tcp::socket& socket, const std::string& step) {
        const Scripted answer = AnswerTo(step);
        const bool sent = operations.Await(
            [&](auto done) { asio::async_write(socket, asio::buffer(answer.octets), done); });
        return sent && answer.after == After::GoOn;
    }

    Scripted AnswerTo(const std::string& step) {
        const std::lock_guard lock(mutex);
        const auto known = answers.find(step);
        return known == answers.end() ? Scripted{"502 Not known\r\n"} : known->second;
    }

    bool TakesMail() { return AnswerTo("DATA").octets.rfind("354", 0) == 0; }

    void Keep(const std::string& mail) {
        const std::lock_guard lock(mutex);
        mails.push_back(mail);
        if (folder.empty())
            return;
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        std::ofstream(folder / (std::to_string(mails.size()) + ".eml"), std::ios::binary) << mail;
    }

    const std::filesystem::path folder;
    std::stop_source stop;
    Operations operations{stop.get_token()}; ///< the thread's
    tcp::acceptor acceptor;
    const uint16_t port = acceptor.local_endpoint().port();

    std::mutex mutex; ///< guards what follows
    std::map<std::string, Scripted> answers = UsualAnswers();
    std::vector<std::string> commands;
    std::vector<std::string> mails;

    std::thread thread;
};

MailServer::MailServer(std::filesystem::path folder, uint16_t port)
    : m_state(std::make_unique<State>(std::move(folder), port)) {
    m_state->thread = std::thread([state = m_state.get()] { state->Serve(); });
}

MailServer::~MailServer() {
    m_state->stop.request_stop();
    m_state->thread.join();
}

uint16_t MailServer::Port() const {
    return m_state->port;
}

void MailServer::SetAnswer(const std::string& step, const std::string& octets, After after) {
    const std::lock_guard lock(m_state->mutex);
    m_state->answers[step] = {octets, after};
}

std::vector<std::string> MailServer::Commands() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->commands;
}

std::vector<std::string> MailServer::Mails() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->mails;
}

} // namespace devservice
