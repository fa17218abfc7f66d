#include "plan/BackupRuns.h"

#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// A run of March 2025.
ProcessLogRecord Run(const QString& start, const QString& stop, int total, int failed, int processed) {
    return {u"2025-03-"_s + start, u"2025-03-"_s + stop, u"why"_s, total, failed, processed};
}

ScheduleBlob Weekdays(const QString& days) {
    ScheduleBlob blob;
    blob.weekdaysInUse = true;
    for (const QChar day : days)
        blob.weekdays.at(static_cast<std::size_t>(day.digitValue())) = true;
    return blob;
}

} // namespace

class BackupRunsTest : public QObject {
    Q_OBJECT

private slots:
    void readsTheLog() {
        const ProcessLogRecord clean = Run(u"02 01:00:00"_s, u"02 02:00:00"_s, 9, 0, 9);
        const ProcessLogRecord failed = Run(u"04 08:12:00"_s, u"04 09:00:00"_s, 4310, 12, 4298);
        const ProcessLogRecord stopped = Run(u"03 01:00:00"_s, u"03 01:10:00"_s, 9, 0, 4);
        const ProcessLogRecord older = Run(u"01 01:00:00"_s, u"01 02:00:00"_s, 9, 0, 9);
        const ProcessLogRecord elsewise{u"yesterday"_s, u"today"_s, {}, 1, 0, 1};
        const BackupRuns runs = RunsOf({clean, failed, stopped, older, elsewise});
        QCOMPARE(runs.last, failed);
        QCOMPARE(runs.starts.size(), std::size_t(4));
        QCOMPARE(runs.starts.front(), ServiceTime(u"2025-03-04 08:12:00"_s));
        QCOMPARE(runs.lastClean, ServiceTime(u"2025-03-02 02:00:00"_s));
        QCOMPARE(RunsOf({elsewise}), BackupRuns());
        QCOMPARE(OutcomeText(failed), u"12 of %1 failed"_s.arg(QLocale().toString(4310)));
        QCOMPARE(OutcomeText(stopped), u"5 of 9 not done"_s);
        QCOMPARE(OutcomeText(clean), QString());
        QCOMPARE(OutcomeText({}), QString());
    }

    void readsTimesInOneFormAlone_data() {
        const Columns<QString, QDateTime> row("text", "time");
        const QDateTime time(QDate(2025, 3, 4), QTime(9, 5, 0), Qt::UTC);
        row("whole", "2025-03-04 09:05:00", time);
        row("without zeros", "2025-3-4 9:5:0", time);
        for (const char* other :
             {"", "N/A", "2025-03-04", "2025-03-04 09:05", "2025-03-04 09:05:00 ", "25-03-04 09:05:00",
              "2025-02-30 09:05:00", "2025-03-04 24:05:00", "2025-03-04T09:05:00", "2025-03- 09:05:00"})
            row(other, other, QDateTime());
    }

    void readsTimesInOneFormAlone() {
        QFETCH(const QString, text);
        QTEST(ServiceTime(text), "time");
    }

    void longestInterval_data() {
        const Columns<ScheduleBlob, int> row("schedule", "days");
        row("daily or by changes", {}, 1);
        row("all", Weekdays(u"0123456"_s), 1);
        row("workdays", Weekdays(u"12345"_s), 3);
        row("over the end of the week", Weekdays(u"23"_s), 6);
        row("one", Weekdays(u"4"_s), 7);
        row("none", Weekdays({}), 7);
    }

    void longestInterval() {
        QFETCH(ScheduleBlob, schedule);
        QTEST(IntervalDays(schedule), "days");
    }

    void tellsOverdueBackups() {
        BackupRuns runs;
        const QDateTime now = ServiceTime(u"2025-03-10 12:00:00"_s);
        QCOMPARE(OverdueDays(runs, {}, now), std::optional<qint64>());
        runs.lastClean = now.addDays(-2);
        QCOMPARE(OverdueDays(runs, {}, now), std::optional<qint64>());
        runs.lastClean = now.addDays(-2).addSecs(-1);
        QCOMPARE(OverdueDays(runs, {}, now), std::optional<qint64>(2));
        QCOMPARE(OverdueDays(runs, Weekdays(u"4"_s), now), std::optional<qint64>());
        QCOMPARE(OverdueText({}), QString());
        QCOMPARE(OverdueText({11, 9}), u"2 backups have had no clean run for 9 days"_s);
        QCOMPARE(OverdueText({3}), u"1 backup has had no clean run for 3 days"_s);
    }

    void tellsLateRuns_data() {
        const Columns<QString, QString, QString> row("starts", "next", "text");
        const QString next = u"2025-03-05 01:00:00"_s;
        const QString before = u"2025-03-03 01:00:05|2025-03-02 01:00:01|"_s;
        const QString late = u"2025-03-04 08:12:00"_s;
        row("late", before + late, next, "planned 01:00, ran 08:12");
        row("over midnight", "2025-03-02 23:00:00|2025-03-04 00:30:00", "2025-03-05 23:00:00",
            "planned 23:00, ran 00:30");
        row("in its turn", before + u"2025-03-04 01:14:59"_s, next, "");
        row("no next run", before + late, "", "");
        row("no start", "soon", next, "");
        row("nothing before", late, next, "");
        row("planned anew", u"2025-03-03 08:12:00|"_s + late, next, "");
        row("whenever something changes", before + u"2025-03-04 01:00:00|"_s + late, next, "");
    }

    void tellsLateRuns() {
        const auto [starts, next] = Fetched<QString, QString>();
        std::vector<ProcessLogRecord> log;
        for (const QString& start : starts.split(u'|'))
            log.push_back({start, start, {}, 1, 0, 1});
        QTEST(LateText(RunsOf(log), next), "text");
    }

    void tellsAgesAndPauses() {
        const QDateTime now = ServiceTime(u"2025-03-10 12:00:00"_s);
        BackupRuns runs;
        QCOMPARE(CleanAgeText(runs, now), QString());
        for (const auto& [seconds, text] : {std::pair(-60, "within the last hour"),
                                            {3600, "1 hour ago"},
                                            {86399, "23 hours ago"},
                                            {86400, "1 day ago"},
                                            {777600, "9 days ago"}}) {
            runs.lastClean = now.addSecs(-seconds);
            QCOMPARE(CleanAgeText(runs, now), u"last clean run "_s + QLatin1String(text));
        }
        runs = RunsOf({Run(u"04 08:12:00"_s, u"04 09:00:00"_s, 9, 0, 4)});
        QCOMPARE(PausedText(TaskState::Paused, runs), u"paused since 2025-03-04 09:00"_s);
        QCOMPARE(PausedText(TaskState::Pending, runs), QString());
        // Paused while it waited: the log does not tell when.
        runs = RunsOf({Run(u"04 08:12:00"_s, u"04 09:00:00"_s, 9, 0, 9)});
        QCOMPARE(PausedText(TaskState::Paused, runs), QString());
        ScheduleBlob recurring;
        recurring.type = ScheduleBlob::BackupType;
        QVERIFY(LacksNextRun(TaskState::Failed, recurring, {}));
        QVERIFY(!LacksNextRun(TaskState::Failed, {}, {}) && !LacksNextRun(TaskState::Paused, recurring, {}));
    }
};

BTASK_TEST(BackupRunsTest);
#include "BackupRunsTest.moc"
