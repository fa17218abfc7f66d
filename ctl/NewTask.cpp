#include "ctl/NewTask.h"

#include "plan/DraftRefusal.h"
#include "service/CloudFolders.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Numbers of at most four digits between separators, as in "2025-1-31"; fewer when it is none.
std::vector<int> Numbers(const QString& text, QChar separator) {
    std::vector<int> numbers;
    for (const QString& part : text.split(separator)) {
        const bool digits = std::all_of(part.begin(), part.end(),
                                        [](QChar letter) { return letter >= u'0' && letter <= u'9'; });
        if (!digits || part.isEmpty() || part.size() > 4)
            return {};
        numbers.push_back(part.toInt());
    }
    return numbers;
}

QString TakeDate(const QString& value, BackupSchedule& schedule) {
    const std::vector<int> numbers = Numbers(value, u'-');
    schedule.date = numbers.size() == 3 ? QDate(numbers[0], numbers[1], numbers[2]) : QDate();
    const bool taken = schedule.date >= FirstScheduleDate && schedule.date <= LastScheduleDate;
    return taken ? QString() : u"--date takes a day with a year of four digits, as in 2025-1-31."_s;
}

QString TakeTime(const QString& value, BackupSchedule& schedule) {
    const std::vector<int> numbers = Numbers(value, u':');
    schedule.time = numbers.size() == 3 ? QTime(numbers[0], numbers[1], numbers[2]) : QTime();
    return schedule.time.isValid() ? QString() : u"--time takes hour, minute and second, as in 22:30:0."_s;
}

QString TakeDays(const QString& value, QLatin1String option, BackupSchedule& schedule) {
    const QStringList names{u"sun"_s, u"mon"_s, u"tue"_s, u"wed"_s, u"thu"_s, u"fri"_s, u"sat"_s};
    schedule.weekdays.fill(false);
    if (value.isEmpty())
        return {};
    for (const QString& day : value.split(u',')) {
        const qsizetype at = names.indexOf(day.toLower());
        if (at < 0)
            return u"\"%1\": %2 takes words of %3 with commas between them."_s.arg(day, option,
                                                                                   names.join(u", "_s));
        schedule.weekdays[static_cast<std::size_t>(at)] = true;
    }
    return {};
}

QString TakeNumber(const Invocation& invocation, QLatin1String option, int& number) {
    const auto value = invocation.Option(option);
    if (!value)
        return {};
    const bool digits = std::all_of(value->begin(), value->end(),
                                    [](QChar letter) { return letter >= u'0' && letter <= u'9'; });
    bool fits = false;
    number = digits ? value->toInt(&fits) : 0;
    return fits ? QString() : u"\"%1\": %2 takes a number."_s.arg(*value, option);
}

CtlExit EndCreation(const Invocation& invocation, const CreationEnd& created) {
    switch (created.end) {
    case Creation::Created:
        return CtlExit::Done;
    case Creation::Unknown:
        invocation.End(CtlExit::Refused,
                       created.why + u" See \"btaskctl backups\" before you send it again."_s);
        break;
    case Creation::Refused:
        invocation.End(CtlExit::Refused, created.why);
        break;
    }
    return created.silent ? CtlExit::Unreachable : CtlExit::Refused;
}

/// Done when a password is stored.
CtlExit CheckPassword(const Invocation& invocation) {
    const ServiceAnswer answer =
        ServiceClient().GetSetting(QString::fromLatin1(EncryptionPassword), invocation.stop);
    switch (PasswordStateOf(answer)) {
    case PasswordState::Set:
        return CtlExit::Done;
    case PasswordState::Missing:
        return invocation.End(CtlExit::Refused,
                              u"Encryption requires a password, and none is set. Nothing was sent."_s);
    case PasswordState::NotRead:
        break;
    }
    return answer ? invocation.EndBrokenOff() : invocation.End(answer);
}

} // namespace

QString TakeStart(const Invocation& invocation, QLatin1String daysOption, BackupSchedule& schedule) {
    const auto date = invocation.Option("--date"_L1);
    const auto time = invocation.Option("--time"_L1);
    const auto days = invocation.Option(daysOption);
    if (QString mistake = date ? TakeDate(*date, schedule) : QString(); !mistake.isEmpty())
        return mistake;
    if (QString mistake = time ? TakeTime(*time, schedule) : QString(); !mistake.isEmpty())
        return mistake;
    if (const auto box = invocation.Option("--box"_L1))
        schedule.box = *box == "on"_L1;
    return days ? TakeDays(*days, daysOption, schedule) : QString();
}

std::vector<CommandOption> WithTaskOptions(std::vector<CommandOption> options) {
    const CommandOption terms[] = {
        {"--daily"_L1, {}, "run each day"_L1},
        {"--weekly"_L1, "DAYS"_L1, "run on weekdays, as in sun,mon; '' for none"_L1},
        {"--date"_L1, "Y-M-D"_L1, "the first day; today when it is not given"_L1},
        {"--time"_L1, "H:M:S"_L1, "the time of day; now when it is not given"_L1},
        {"--box"_L1, "on|off"_L1, "mirrored: skip the first upload (off); others: run at once (on)"_L1},
        {"--full-every"_L1, "N"_L1, "a full backup every N backups; 10 when it is not given"_L1},
        {"--keep"_L1, "N"_L1, "the last N are kept; 0, when it is not given: all"_L1},
        {"--encrypt"_L1, {}, "encrypt with the password that is stored"_L1},
        {"--dry-run"_L1, {}, "write the record that would be sent, and send nothing"_L1},
    };
    options.insert(options.end(), std::begin(terms), std::end(terms));
    return options;
}

Alternatives ModeAlternatives() {
    return {{"--daily"_L1, "--weekly"_L1}};
}

QString TakeTerms(const Invocation& invocation, ScheduleForm form, TaskTerms& terms) {
    terms.schedule = DefaultSchedule(form, QDateTime::currentDateTime());
    if (invocation.Has("--daily"_L1))
        terms.schedule.mode = ScheduleMode::Daily;
    if (invocation.Has("--weekly"_L1))
        terms.schedule.mode = ScheduleMode::Weekdays;
    terms.encrypted = invocation.Has("--encrypt"_L1);
    for (const QString& mistake : {TakeStart(invocation, "--weekly"_L1, terms.schedule),
                                   TakeNumber(invocation, "--full-every"_L1, terms.retention.fullEvery),
                                   TakeNumber(invocation, "--keep"_L1, terms.retention.keep)})
        if (!mistake.isEmpty())
            return mistake;
    return RetentionRefusal(terms.retention);
}

CtlExit MakeTask(const Invocation& invocation, const NewTask& task, bool encrypted) {
    if (invocation.Has("--dry-run"_L1))
        return invocation.Write(task.record);
    const CtlExit password = encrypted ? CheckPassword(invocation) : CtlExit::Done;
    if (password != CtlExit::Done)
        return password;
    return EndCreation(invocation, CreateTask(ServiceClient(), task, invocation.stop));
}
