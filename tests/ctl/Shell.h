#pragma once

#include "ctl/Btaskctl.h"
#include "zep/SysInfo.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>

/// What a command line has brought.
struct Run {
    CtlExit exit = CtlExit::Done;
    QByteArray out;
    QByteArray error;
};

/// `input` stands on standard input; without a `sleep` it waits as the program does.
inline Run Btaskctl(const QStringList& arguments, std::stop_token stop = {}, QByteArray input = {},
                    const CtlSleep& sleep = {}) {
    Run run;
    QBuffer in(&input);
    QBuffer out(&run.out);
    QBuffer error(&run.error);
    in.open(QIODevice::ReadOnly);
    out.open(QIODevice::WriteOnly);
    error.open(QIODevice::WriteOnly);
    run.exit = RunBtaskctl(arguments, in, out, error, std::move(stop), sleep);
    ZEPSysInfoSetServerMode(false);
    return run;
}

/// What it writes as JSON.
inline QJsonArray Json(const QStringList& arguments) {
    return QJsonDocument::fromJson(Btaskctl(arguments + QStringList{QStringLiteral("--json")}).out).array();
}
