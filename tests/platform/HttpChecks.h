#pragma once

#include "RawServer.h"
#include "platform/HttpTransport.h"

#include <span>

platform::HttpRequest Get(uint16_t port, const std::string& target = "/");

const std::string Ok = "HTTP/1.1 200 OK\r\n";

enum class End { Fin, Reset, Open };

/// Answers every request with these octets, drips the others one by one with pauses, and then ends the
/// connection in this way.
RawServer::Script Answering(const std::string& octets, End end = End::Fin, const std::string& dripping = {});

/// What becomes of an answer.
struct AnswerCase {
    std::string name;
    std::string answer;
    End end;
    platform::HttpOutcome outcome;
    int status;
    bool complete;
    std::string body;
    std::string dripping = {}; ///< follows the answer octet by octet
};

void CheckAnswers(std::span<const AnswerCase> cases,
                  std::chrono::milliseconds receive = std::chrono::seconds(30));
