#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace devservice {

/// A mail server on the loopback address that takes every mail, for people and tests. One connection at a
/// time. Any thread.
class MailServer {
public:
    enum class After { GoOn, Close };

    /// Puts each mail as a file of a number into the folder, if one is given. Port 0 is a free one.
    explicit MailServer(std::filesystem::path folder = {}, uint16_t port = 0);
    ~MailServer();
    MailServer(const MailServer&) = delete;
    MailServer& operator=(const MailServer&) = delete;

    uint16_t Port() const;

    /// What it answers to a step from now on, octet for octet: "greeting", the first word of a command, or
    /// "." of a whole message.
    void SetAnswer(const std::string& step, const std::string& octets, After after = After::GoOn);

    std::vector<std::string> Commands() const; ///< received so far
    std::vector<std::string> Mails() const;    ///< as they came, without the dot behind them

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace devservice
