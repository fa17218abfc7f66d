#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <string>

/// The longest reply of a mail server that is waited for to its end, in octets.
constexpr std::size_t LongestReply = 64 * 1024;

/// Takes the first whole reply off what a mail server has sent: its lines, of which each but the last has a
/// hyphen behind its code, with their line ends. None while the last line is not there.
std::optional<std::string> TakeReply(std::string& received);

/// A reply to be shown: its lines without their ends, at most so much as a person reads.
QString ReplyText(const std::string& reply);
