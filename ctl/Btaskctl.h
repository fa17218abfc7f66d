#pragma once

#include <QIODevice>
#include <QStringList>

#include <chrono>
#include <functional>
#include <stop_token>

/// How a command ended; the program's exit code.
enum class CtlExit {
    Done = 0,
    Refused = 1,     ///< the service refused, there is no such thing, or it went wrong
    Usage = 2,       ///< the command line is none of ours
    Unreachable = 3, ///< the service does not answer
    NoDatabase = 4   ///< a database cannot be read
};

/// Waits that long, or until it is told to stop; false then.
using CtlSleep = std::function<bool(const std::stop_token& stop, std::chrono::milliseconds time)>;

/// Runs one command line, without the program's name. Data goes to `out`, sentences for people to `error`;
/// `in` is what "-" in place of a file's name stands for. The token ends a command that goes on by itself;
/// such a command waits by `sleep` where one is given.
CtlExit RunBtaskctl(const QStringList& arguments, QIODevice& in, QIODevice& out, QIODevice& error,
                    std::stop_token stop = {}, CtlSleep sleep = {});
