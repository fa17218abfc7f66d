// Labels: threads
#include "plan/BackupSchedule.h"

#include "plan/NextRuns.h"
#include "service/ServiceClient.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "zep/SysInfo.h"

#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

namespace {

/// "MODE DATE TIME" and, where not all are ticked, the numbers of the weekdays from Sunday.
BackupSchedule Read(const QString& text) {
    BackupSchedule schedule;
    schedule.mode = static_cast<ScheduleMode>(text.section(u' ', 0, 0).toInt());
    schedule.date = QDate::fromString(text.section(u' ', 1, 1), Qt::ISODate);
    schedule.time = QTime::fromString(text.section(u' ', 2, 2), Qt::ISODate);
    if (text.count(u' ') == 3)
        for (int day = 0; day < 7; ++day)
            schedule.weekdays.at(static_cast<std::size_t>(day)) =
                text.section(u' ', 3).contains(QString::number(day));
    return schedule;
}

QString Said(const PlannedRun& run) {
    const char* const clocks[] = {"", " skipped", " doubled"};
    return run.at.toString(u"MM-dd HH:mm"_s) + QLatin1String(clocks[static_cast<int>(run.clock)]);
}

} // namespace

class BackupScheduleTest : public QObject {
    Q_OBJECT

private slots:
    void theDialogOfAServerWaitsForItsSetUp_data() {
        const Columns<bool, QByteArray, ScheduleForm> row("server", "setting", "form");
        row("desktop", false, "True", ScheduleForm::Dialog);
        row("server", true, "True", ScheduleForm::Server);
        row("not set up", true, "False", ScheduleForm::Dialog);
        row("never asked", true, "", ScheduleForm::Dialog);
    }

    void theDialogOfAServerWaitsForItsSetUp() {
        const auto [server, setting] = Fetched<bool, QByteArray>();
        ServiceFixture service;
        if (!setting.isEmpty())
            service->SetSetting("BSInitConfig", setting.toStdString());
        ZEPSysInfoSetServerMode(server);
        const auto back = qScopeGuard([] { ZEPSysInfoSetServerMode(false); });
        QTEST(DialogForm(ServiceClient()), "form");
    }

    void formsBeforeTheyAreConfirmed_data() {
        using enum ScheduleForm;
        const Columns<ScheduleForm, QString, QString, QString> row("form", "string", "link", "summary");
        row("dialog", Dialog, "0 2025 3 4 9 5 7 1 1 1 1 1 1 1",
            "<a>Backup Task Will Start Immediately (Click To Change)</a>",
            "Backup Task Will Start Immediately ");
        row("server", Server, "1 2025 3 4 9 5 7 1 1 1 1 1 1 1",
            "<a>Backup Task Will Start daily at 9:5:7 From 2025-3-4 (Click To Change)</a>",
            "Backup Task Will Start daily at 9:5:7 From 2025-3-4 ");
        row("mirrored", Mirrored, "0 2025 3 4 9 5 7 1 1 1 1 1 1 1 0", "",
            "Backup Task Will Start When Changes Are Detected");
        row("snapshot", Snapshot, "1 2025 3 4 9 5 7 1 1 1 1 1 1 1 1", "",
            "Backup task will start at 9:5:7 every day after  2025-3-4");
    }

    void formsBeforeTheyAreConfirmed() {
        QFETCH(ScheduleForm, form);
        const QDateTime now(QDate(2025, 3, 4), QTime(9, 5, 7, 999));
        const ScheduleTexts texts = UntouchedTexts(DefaultSchedule(form, now), form);
        QTEST(texts.string, "string");
        QTEST(texts.link, "link");
        QTEST(texts.summary, "summary");
    }

    void rowsTellTheirWeekdays_data() {
        const Columns<QByteArray, QString> row("blob", "string");
        QByteArray blob(308, '\0');
        blob[0] = 4;
        row("nothing told", blob, "");
        blob[43] = '\x80';
        row("no weekday", blob, "2 0 0 0");
        blob.replace(36, 7, QByteArray::fromHex("01000000ff0002"));
        row("some", blob, "2 0 0 0 046");
        row("short", blob.chopped(1), "");
        row("long", blob + '\0', "");
        row("none", {}, "");
    }

    void rowsTellTheirWeekdays() {
        const auto [blob, told] = Fetched<QByteArray, QString>();
        const auto parsed = ScheduleBlob::Parse(blob);
        const auto schedule = parsed ? ScheduleOf(*parsed) : std::nullopt;
        QCOMPARE(schedule.has_value(), !told.isEmpty());
        if (!schedule)
            return;
        QVERIFY(!schedule->date.isValid() && !schedule->time.isValid());
        QCOMPARE(schedule->mode, ScheduleMode::Weekdays);
        for (int day = 0; day < 7; ++day)
            QCOMPARE(schedule->weekdays.at(static_cast<std::size_t>(day)),
                     told.section(u' ', 4).contains(QString::number(day)));
    }

    void nextRuns_data() {
        // Instants are UTC.
        const Columns<QString, QString, QString, QString> row("schedule", "zone", "now", "runs");
        const QString berlin = u"Europe/Berlin"_s;
        row("later today", "1 2025-01-01 22:00:00", "UTC", "2025-06-01T21:59:59",
            "06-01 22:00, 06-02 22:00, 06-03 22:00");
        row("at this second", "1 2025-01-01 22:00:00", "UTC", "2025-06-01T22:00:00",
            "06-02 22:00, 06-03 22:00, 06-04 22:00");
        row("not before its first day", "1 2025-07-01 01:00:00", berlin, "2025-06-01T00:00:00",
            "06-30 23:00, 07-01 23:00, 07-02 23:00");
        row("it is tomorrow there", "1 2025-01-01 08:00:00", "Pacific/Kiritimati", "2025-06-01T17:00:00",
            "06-01 18:00, 06-02 18:00, 06-03 18:00");
        row("one weekday, a week from now", "2 2025-01-01 10:00:00 0", "UTC", "2025-06-01T10:00:00",
            "06-08 10:00, 06-15 10:00, 06-22 10:00");
        row("over the end of a week", "2 2025-01-01 10:00:00 06", "UTC", "2025-06-06T12:00:00",
            "06-07 10:00, 06-08 10:00, 06-14 10:00");
        row("no weekday", "2 2025-01-01 10:00:00 ", "UTC", "2025-06-06T12:00:00", "");
        row("by changes", "0 2025-01-01 10:00:00", "UTC", "2025-06-06T12:00:00", "");
        row("unknown start", "2 - -", "UTC", "2025-06-06T12:00:00", "");
        row("skipped", "1 2025-01-01 02:30:00", berlin, "2025-03-29T12:00:00",
            "03-30 01:30 skipped, 03-31 00:30, 04-01 00:30");
        row("before the gap", "1 2025-01-01 01:59:59", berlin, "2025-03-29T12:00:00",
            "03-30 00:59, 03-30 23:59, 03-31 23:59");
        row("behind the gap", "1 2025-01-01 03:00:00", berlin, "2025-03-29T12:00:00",
            "03-30 01:00, 03-31 01:00, 04-01 01:00");
        row("doubled", "1 2025-01-01 02:30:00", berlin, "2025-10-25T12:00:00",
            "10-26 00:30 doubled, 10-27 01:30, 10-28 01:30");
        row("behind the doubled hour", "1 2025-01-01 03:00:00", berlin, "2025-10-25T12:00:00",
            "10-26 02:00, 10-27 02:00, 10-28 02:00");
        row("the doubled hour of the other side", "1 2025-01-01 01:30:00", "America/New_York",
            "2025-11-01T12:00:00", "11-02 05:30 doubled, 11-03 06:30, 11-04 06:30");
        row("half an hour is skipped", "1 2025-01-01 02:15:00", "Australia/Lord_Howe", "2025-10-03T16:00:00",
            "10-04 15:45 skipped, 10-05 15:15, 10-06 15:15");
        row("midnight is skipped", "1 2018-01-01 00:00:00", "America/Sao_Paulo", "2018-11-03T12:00:00",
            "11-04 03:00 skipped, 11-05 02:00, 11-06 02:00");
        row("the end of the calendar", "1 2025-01-01 12:00:00", "UTC", "9999-12-30T00:00:00",
            "12-30 12:00, 12-31 12:00");
        row("its beginning", "1 1000-01-01 00:00:00", "UTC", "2025-12-30T00:00:00",
            "12-31 00:00, 01-01 00:00, 01-02 00:00");
    }

    void nextRuns() {
        const auto [schedule, zone, now, runs] = Fetched<QString, QString, QString, QString>();
        QStringList said;
        for (const PlannedRun& run : NextRuns(Read(schedule), QDateTime::fromString(now + u'Z', Qt::ISODate),
                                              QTimeZone(zone.toLatin1()))) {
            QCOMPARE(run.time, Read(schedule).time);
            said.append(Said(run));
        }
        QCOMPARE(said.join(u", "_s), runs);
    }

    void saysHowLong_data() {
        const Columns<qint64, QString> row("seconds", "text");
        row("soon", 59, "in less than a minute");
        row("a minute", 89, "in 1 minute");
        row("minutes", 59 * 60 + 29, "in 59 minutes");
        row("an hour", 59 * 60 + 30, "in 1 hour");
        row("hours", 9 * 3600 - 600, "in 9 hours");
        row("many hours", 47 * 3600 + 1799, "in 47 hours");
        row("days", 47 * 3600 + 1800, "in 2 days");
    }

    void saysHowLong() {
        QFETCH(qint64, seconds);
        const QDateTime now(QDate(2025, 1, 1), QTime(0, 0), Qt::UTC);
        QTEST(TimeUntil(now, now.addSecs(seconds)), "text");
    }
};

BTASK_TEST(BackupScheduleTest);
#include "BackupScheduleTest.moc"
