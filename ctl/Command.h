#pragma once

#include "ctl/Btaskctl.h"

#include "service/ServiceClient.h"
#include "stores/ReadResult.h"

#include <QMap>

#include <optional>
#include <span>
#include <vector>

/// One command line, taken apart, and where its command speaks to.
struct Invocation {
    QStringList operands;
    QMap<QString, QString> options; ///< by name, as in "--states"
    QIODevice& out;
    QIODevice& error;
    std::stop_token stop;

    bool Has(QLatin1String option) const { return options.contains(option); }
    std::optional<QString> Option(QLatin1String option) const;

    /// Says the sentence and returns the exit code.
    CtlExit End(CtlExit exit, const QString& sentence) const;
    /// The exit code of a request, with a sentence when it is not Done.
    CtlExit End(const ServiceAnswer& answer) const;
    /// Writes the data; a short write is told, and no success.
    CtlExit Write(const QByteArray& data) const;
    /// Writes an answer's body, and tells when reading it broke off.
    CtlExit WriteBody(const ServiceAnswer& answer, const QByteArray& ending = {}) const;
    /// The exit code of a read, with a sentence when it is not Done.
    CtlExit End(const ReadResult& result) const;
};

struct CommandOption {
    QLatin1String name;
    QLatin1String value; ///< what stands behind it, as in "N"; empty for a switch
};

struct Command {
    QLatin1String words;                 ///< one or two, as in "task delete-subtask"
    std::vector<QLatin1String> operands; ///< their names, as in "ID"
    std::vector<CommandOption> options;
    QLatin1String help; ///< what it does; line feeds as they stand
    CtlExit (*run)(const Invocation&);
};

std::vector<Command> DatabaseCommands();
std::vector<Command> LiveCommands();
std::vector<Command> ServiceCommands();
