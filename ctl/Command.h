#pragma once

#include "ctl/Btaskctl.h"

#include "service/ServiceClient.h"
#include "stores/ReadResult.h"

#include <QMap>

#include <chrono>
#include <optional>
#include <vector>

/// One command line, taken apart, and where its command speaks to.
struct Invocation {
    QStringList operands;
    QMap<QString, QStringList> options; ///< by name, as in "--states"; their values in the order given
    QIODevice& in;
    QIODevice& out;
    QIODevice& error;
    std::stop_token stop;
    CtlSleep sleep = {}; ///< none: as the system sleeps

    bool Has(QLatin1String option) const { return options.contains(option); }
    std::optional<QString> Option(QLatin1String option) const;
    QStringList Values(QLatin1String option) const { return options.value(option); }

    /// Says the sentence and returns the exit code.
    CtlExit End(CtlExit exit, const QString& sentence) const;
    /// The exit code of a request, with a sentence when it is not Done.
    CtlExit End(const ServiceAnswer& answer) const;
    /// Writes the data; a short write is told, and no success.
    CtlExit Write(const QByteArray& data) const;
    /// Writes an answer's body, and tells when reading it broke off.
    CtlExit WriteBody(const ServiceAnswer& answer, const QByteArray& ending = {}) const;
    /// Says that an answer broke off in the middle.
    CtlExit EndBrokenOff() const;
    /// The exit code of a read, with a sentence when it is not Done.
    CtlExit End(const ReadResult& result) const;

    /// What a file holds, or standard input for "-", without one line end at its end; none when it cannot be
    /// read, which is told.
    std::optional<QByteArray> ReadInput(const QString& file) const;
    /// False when the command was stopped meanwhile.
    bool Pause(std::chrono::milliseconds time) const;
    /// The same, which an interrupt stops from now on instead of ending the program.
    Invocation StoppedByInterrupt() const;
};

/// How often an operand or an option is given.
enum class Times { MaybeOnce, Once, Any, OneOrMore };

/// An operand's name. One in capitals takes any text, words between bars are the words that it takes. Those
/// that may be missing or repeat stand last.
struct Operand {
    QLatin1String name;
    Times times = Times::Once;
};

/// `value` says what stands behind the option, in the manner of an operand's name; it is empty for a switch.
/// "FILE" at its end takes "-" for standard input, "NAME=" at its beginning wants an equals sign.
struct CommandOption {
    QLatin1String name;
    QLatin1String value = {};
    QLatin1String help = {};
    Times times = Times::MaybeOnce;
};

/// Options and operands of which one at most is given, or exactly one.
struct Alternatives {
    std::vector<QLatin1String> names;
    bool needed = false;
};

struct Command {
    QLatin1String words; ///< one or two, as in "task delete-subtask"
    std::vector<Operand> operands;
    std::vector<CommandOption> options;
    QLatin1String help; ///< what it does; line feeds as they stand
    CtlExit (*run)(const Invocation&);
    std::vector<Alternatives> alternatives = {};
};

inline constexpr CommandOption JsonOption{
    QLatin1String("--json"), {}, QLatin1String("a JSON array in place of a table")};

/// The output has no end, so JSON comes as an object a line.
inline constexpr CommandOption FollowOption{
    QLatin1String("--follow"),
    {},
    QLatin1String("oldest first, then what comes until Ctrl+C; with --json an object a line")};

std::vector<Command> DatabaseCommands();
std::vector<Command> LiveCommands();
std::vector<Command> TaskCommands();
std::vector<Command> SettingsCommands();
std::vector<Command> DirectoryCommands();
std::vector<Command> MountCommands();
std::vector<Command> FolderCommands();
std::vector<Command> MailCommands();
std::vector<Command> DavCommands();
std::vector<Command> BackupCommands();
std::vector<Command> SnapshotCommands();
std::vector<Command> CreateCommands();
std::vector<Command> ApplicationCommands();
std::vector<Command> SyncFolderCommands();
std::vector<Command> RequestCommands();
std::vector<Command> HelpCommands();

/// All of them, in the order of the help.
const std::vector<Command>& AllCommands();
