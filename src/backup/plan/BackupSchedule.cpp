#include "plan/BackupSchedule.h"

#include "service/KnownSettings.h"
#include "zep/SysInfo.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t Modes = 3;

/// All that one form has of its own. In its texts %1 is the date and %2 the time, as numbers without zeros.
struct FormPlan {
    const char* choices[Modes];
    const char* descriptions[Modes];
    const char* links[Modes];
    const char* summaries[Modes];
    const char* box;
    const char* thursday;
    bool continuous; ///< is offered
    bool boxAtFirst;
};

// The links and summaries are odd on purpose: a blank that lacks before a parenthesis, two blanks after
// "after", a link for weekdays that says daily, two spellings of Thursday.
constexpr const char* NowChoice =
    QT_TRANSLATE_NOOP("BackupSchedule", "Automatic Backup (changes are immediate)");
constexpr const char* DailyChoice =
    QT_TRANSLATE_NOOP("BackupSchedule", "Daily Backup (changes are scheduled)");
constexpr const char* WeekdaysChoice =
    QT_TRANSLATE_NOOP("BackupSchedule", "Custom Backup Schedule (changes are scheduled)");
constexpr const char* PlainDailyChoice = QT_TRANSLATE_NOOP("BackupSchedule", "Daily Backup");
constexpr const char* PlainWeekdaysChoice = QT_TRANSLATE_NOOP("BackupSchedule", "Custom Backup Schedule");

constexpr const char* NowText = QT_TRANSLATE_NOOP(
    "BackupSchedule",
    "The initial backup will start immediately and then the source folders will be monitored for "
    "changes. These incremental changes will be backed up when they occur.");
constexpr const char* DailyText = QT_TRANSLATE_NOOP(
    "BackupSchedule",
    "The backup will start at the specified time every day. The source folders will be monitored "
    "constantly but changes will be scheduled for backup at the specified times.");
constexpr const char* WeekdaysText = QT_TRANSLATE_NOOP(
    "BackupSchedule",
    "The backup will start at the specified time on specified day. The source folders will be "
    "monitored constantly but changes will be scheduled for backup at the specified times.");
constexpr const char* PageNowText = QT_TRANSLATE_NOOP(
    "BackupSchedule",
    "The initial backup will start immediately and then the source folders will be monitored for "
    "changes. These incremental changes will be uploaded to cloud storage when they occur.");
constexpr const char* PageDailyText =
    QT_TRANSLATE_NOOP("BackupSchedule", "The backup will be executed at the specified time each day.");
constexpr const char* PageWeekdaysText = QT_TRANSLATE_NOOP(
    "BackupSchedule", "The backup will be executed at the specified time on the specified days.");

constexpr const char* NowLink =
    QT_TRANSLATE_NOOP("BackupSchedule", "<a>Backup Task Will Start Immediately (Click To Change)</a>");
constexpr const char* NowSummary = QT_TRANSLATE_NOOP("BackupSchedule", "Backup Task Will Start Immediately ");
constexpr const char* DailySummary =
    QT_TRANSLATE_NOOP("BackupSchedule", "Backup task will start at %2 every day after  %1");
constexpr const char* WeekdaysSummary =
    QT_TRANSLATE_NOOP("BackupSchedule", "Backup Task Will Start on Selected Weekdays at %2 after %1 ");
constexpr const char* PageWeekdaysSummary =
    QT_TRANSLATE_NOOP("BackupSchedule", "Backup Task Will Start at %2 after %1, On ");

constexpr const char* ServerDefaultLink = QT_TRANSLATE_NOOP(
    "BackupSchedule", "<a>Backup Task Will Start daily at %2 From %1 (Click To Change)</a>");
constexpr const char* ServerDefaultSummary =
    QT_TRANSLATE_NOOP("BackupSchedule", "Backup Task Will Start daily at %2 From %1 ");

constexpr FormPlan Forms[] = {
    {{NowChoice, DailyChoice, WeekdaysChoice},
     {NowText, DailyText, WeekdaysText},
     {NowLink,
      QT_TRANSLATE_NOOP("BackupSchedule", "<a>Backup Task Will Start at %1 %2 (Click To Change)</a>"),
      QT_TRANSLATE_NOOP("BackupSchedule", "<a>Backup Task Will Start Daily at %1 %2 (Click To Change)</a>")},
     {NowSummary, DailySummary, WeekdaysSummary},
     nullptr,
     nullptr,
     true,
     false},
    {{NowChoice, PlainDailyChoice, PlainWeekdaysChoice},
     {NowText, DailyText, WeekdaysText},
     {NowLink,
      QT_TRANSLATE_NOOP("BackupSchedule", "<a>Backup Task Will Start Daily at %1 %2(Click To Change)</a>"),
      QT_TRANSLATE_NOOP("BackupSchedule",
                        "<a>Backup Task Will Start on Selected Weekdays at %1 %2 (Click To Change)</a>")},
     {NowSummary, DailySummary, WeekdaysSummary},
     nullptr,
     nullptr,
     false,
     false},
    {{NowChoice, DailyChoice, WeekdaysChoice},
     {PageNowText, PageDailyText, PageWeekdaysText},
     {},
     {QT_TRANSLATE_NOOP("BackupSchedule", "Backup Task Will Start When Changes Are Detected"), DailySummary,
      PageWeekdaysSummary},
     QT_TRANSLATE_NOOP("BackupSchedule",
                       "Skip Initial Upload (Check this option if the files have already been uploaded)"),
     QT_TRANSLATE_NOOP("BackupSchedule", " Thur"),
     true,
     false},
    {{NowChoice, PlainDailyChoice, PlainWeekdaysChoice},
     {PageNowText, PageDailyText, PageWeekdaysText},
     {},
     {nullptr, DailySummary, PageWeekdaysSummary},
     QT_TRANSLATE_NOOP("BackupSchedule", "Run initial backup immediately after the task is created."),
     QT_TRANSLATE_NOOP("BackupSchedule", " Thurs"),
     false,
     true},
};

const FormPlan& PlanOf(ScheduleForm form) {
    return Forms[static_cast<std::size_t>(form)];
}

QString Translated(const char* text) {
    return text == nullptr ? QString() : QCoreApplication::translate("BackupSchedule", text);
}

QString Of(const char* const (&texts)[Modes], ScheduleMode mode) {
    return Translated(texts[static_cast<std::size_t>(mode)]);
}

QString Joined(std::initializer_list<int> numbers, QChar separator) {
    QStringList parts;
    parts.reserve(qsizetype(numbers.size()));
    for (const int number : numbers)
        parts.append(QString::number(number));
    return parts.join(separator);
}

QString WithStart(const QString& text, const BackupSchedule& schedule) {
    const QDate& date = schedule.date;
    const QTime& time = schedule.time;
    return text.contains(u'%') ? text.arg(Joined({date.year(), date.month(), date.day()}, u'-'),
                                          Joined({time.hour(), time.minute(), time.second()}, u':'))
                               : text;
}

/// A word for each ticked weekday.
QString WeekdayWords(const BackupSchedule& schedule, const FormPlan& plan) {
    const char* const words[] = {QT_TRANSLATE_NOOP("BackupSchedule", " Sun"),
                                 QT_TRANSLATE_NOOP("BackupSchedule", " Mon"),
                                 QT_TRANSLATE_NOOP("BackupSchedule", " Tues"),
                                 QT_TRANSLATE_NOOP("BackupSchedule", " Wed"),
                                 plan.thursday,
                                 QT_TRANSLATE_NOOP("BackupSchedule", " Fri"),
                                 QT_TRANSLATE_NOOP("BackupSchedule", " Sat")};
    QString all;
    for (std::size_t day = 0; day < schedule.weekdays.size(); ++day)
        if (schedule.weekdays[day])
            all += Translated(words[day]);
    return all;
}

bool HasWeekday(const BackupSchedule& schedule) {
    return std::find(schedule.weekdays.begin(), schedule.weekdays.end(), true) != schedule.weekdays.end();
}

} // namespace

ScheduleForm DialogForm(const ServiceClient& service, std::stop_token stop) {
    const bool server =
        ZEPSysInfoIsServer() && ReadSetting(service, Settings::BSInitConfig, std::move(stop)).value;
    return server ? ScheduleForm::Server : ScheduleForm::Dialog;
}

BackupSchedule DefaultSchedule(ScheduleForm form, const QDateTime& now) {
    BackupSchedule schedule;
    schedule.mode = ModesOf(form).front();
    schedule.date = now.date();
    schedule.time = QTime(now.time().hour(), now.time().minute(), now.time().second());
    schedule.box = PlanOf(form).boxAtFirst;
    return schedule;
}

std::optional<BackupSchedule> ScheduleOf(const ScheduleBlob& blob) {
    if (!blob.weekdaysInUse)
        return {};
    BackupSchedule schedule;
    schedule.mode = ScheduleMode::Weekdays;
    schedule.weekdays = blob.weekdays;
    return schedule;
}

std::vector<ScheduleMode> ModesOf(ScheduleForm form) {
    using enum ScheduleMode;
    return PlanOf(form).continuous ? std::vector{Continuous, Daily, Weekdays} : std::vector{Daily, Weekdays};
}

QString ModeChoice(ScheduleForm form, ScheduleMode mode) {
    return Of(PlanOf(form).choices, mode);
}

QString ModeDescription(ScheduleForm form, ScheduleMode mode) {
    return Of(PlanOf(form).descriptions, mode);
}

QString BoxText(ScheduleForm form) {
    return Translated(PlanOf(form).box);
}

bool HasLink(ScheduleForm form) {
    return PlanOf(form).box == nullptr;
}

QString ScheduleRefusal(const BackupSchedule& schedule, ScheduleForm form) {
    const bool without = schedule.mode == ScheduleMode::Weekdays && !HasWeekday(schedule);
    return HasLink(form) && without
               ? QCoreApplication::translate("BackupSchedule", "At least one weekday needs to be selected!")
               : QString();
}

QString ScheduleString(const BackupSchedule& schedule, bool withBox) {
    const auto& [mode, date, time, weekdays, box] = schedule;
    QString string = Joined({static_cast<int>(mode), date.year(), date.month(), date.day(), time.hour(),
                             time.minute(), time.second()},
                            u' ');
    for (const bool ticked : weekdays)
        string += ticked ? " 1"_L1 : " 0"_L1;
    if (withBox)
        string += box ? " 1"_L1 : " 0"_L1;
    return string + u'\n';
}

ScheduleTexts ConfirmedTexts(const BackupSchedule& schedule, ScheduleForm form) {
    const FormPlan& plan = PlanOf(form);
    QString summary = WithStart(Of(plan.summaries, schedule.mode), schedule);
    if (!HasLink(form) && schedule.mode == ScheduleMode::Weekdays)
        summary += WeekdayWords(schedule, plan);
    return {ScheduleString(schedule, !HasLink(form)), WithStart(Of(plan.links, schedule.mode), schedule),
            summary};
}

ScheduleTexts UntouchedTexts(const BackupSchedule& schedule, ScheduleForm form) {
    ScheduleTexts texts = ConfirmedTexts(schedule, form);
    texts.string.chop(1);
    if (form == ScheduleForm::Server) {
        texts.link = WithStart(Translated(ServerDefaultLink), schedule);
        texts.summary = WithStart(Translated(ServerDefaultSummary), schedule);
    }
    return texts;
}
