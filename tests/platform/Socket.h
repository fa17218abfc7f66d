#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// A plain socket on the loopback address, blocking.
class Socket {
public:
    static Socket Listening(int backlog = 16); ///< on a free port
    static Socket Connected(uint16_t port);
    static Socket Datagrams(); ///< UDP on a free port; waits ten seconds for a datagram, not longer

    Socket(Socket&& other) noexcept;
    Socket& operator=(Socket&& other) noexcept;
    ~Socket();

    uint16_t Port() const;
    Socket Accept() const;
    /// What comes next; empty at the end and on a broken connection.
    std::string Receive() const;
    bool Send(std::string_view octets) const;
    void EndSending() const; ///< FIN
    void Reset();            ///< RST

    /// Answers the next datagram by `answer` of it; an empty answer sends none. False when none has come.
    template <typename Answer>
    bool AnswerDatagram(Answer answer) const {
        Sender sender;
        const std::string question = ReceiveFrom(sender);
        const std::string reply = question.empty() ? question : answer(question);
        if (!reply.empty())
            SendTo(sender, reply);
        return !question.empty();
    }

private:
    struct Sender {
        uint32_t address = 0;
        uint16_t port = 0;
    };

    explicit Socket(intptr_t handle) : m_handle(handle) {}
    std::string ReceiveFrom(Sender& sender) const;
    void SendTo(const Sender& sender, std::string_view octets) const;

    intptr_t m_handle;
};
