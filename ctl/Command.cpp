#include "ctl/Command.h"

#include "platform/Console.h"
#include "platform/Sleep.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

std::optional<QString> Invocation::Option(QLatin1String option) const {
    const auto found = options.find(option);
    return found == options.end() || found->isEmpty() ? std::nullopt : std::optional(found->last());
}

CtlExit Invocation::End(CtlExit exit, const QString& sentence) const {
    error.write(sentence.toUtf8() + '\n');
    return exit;
}

CtlExit Invocation::End(const ServiceAnswer& answer) const {
    switch (answer.outcome) {
    case ServiceOutcome::Answered:
        return CtlExit::Done;
    case ServiceOutcome::OtherStatus:
        return End(CtlExit::Refused,
                   u"The service refused: it answered with status %1."_s.arg(answer.status));
    case ServiceOutcome::Unreachable:
        return End(CtlExit::Unreachable, u"The service is not reachable on port %1."_s.arg(ServicePort()));
    case ServiceOutcome::TimedOut:
        return End(CtlExit::Unreachable,
                   u"The service on port %1 does not answer in time."_s.arg(ServicePort()));
    case ServiceOutcome::Cancelled:
        break;
    }
    return End(CtlExit::Unreachable, u"Stopped before the service answered."_s);
}

CtlExit Invocation::Write(const QByteArray& data) const {
    const bool written = out.write(data) == data.size();
    return written ? CtlExit::Done : End(CtlExit::Refused, u"The output could not be written."_s);
}

CtlExit Invocation::WriteBody(const ServiceAnswer& answer, const QByteArray& ending) const {
    if (!answer)
        return End(answer);
    const CtlExit written = Write(answer.body + ending);
    return answer.length ? written : EndBrokenOff();
}

CtlExit Invocation::EndBrokenOff() const {
    return End(CtlExit::Refused, u"The answer broke off in the middle."_s);
}

CtlExit Invocation::End(const ReadResult& result) const {
    if (result)
        return CtlExit::Done;
    return End(CtlExit::NoDatabase, result.outcome == ReadOutcome::Stopped
                                        ? u"Stopped before all rows were read."_s
                                        : result.Sentence());
}

std::optional<QByteArray> Invocation::ReadInput(const QString& file) const {
    QFile named(file);
    QIODevice& input = file == "-"_L1 ? in : static_cast<QIODevice&>(named);
    if (&input == &named && !named.open(QIODevice::ReadOnly)) {
        End(CtlExit::Usage, u"\"%1\" cannot be read: %2."_s.arg(file, named.errorString()));
        return {};
    }
    QByteArray content = input.readAll();
    if (content.endsWith('\n'))
        content.chop(content.endsWith("\r\n") ? 2 : 1);
    return content;
}

bool Invocation::Pause(std::chrono::milliseconds time) const {
    return sleep ? sleep(stop, time) : platform::SleepUnlessStopped(stop, time);
}

Invocation Invocation::StoppedByInterrupt() const {
    Invocation copy = *this;
    if (!stop.stop_possible())
        copy.stop = platform::StopOnInterrupt();
    return copy;
}
