#include "backup/BackupSummary.h"

#include "plan/BackupTask.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint32 Most = 0xFFFFFFFEU; ///< the last count that is known
constexpr std::optional<quint32> Unknown;

QString Joined(const std::vector<SummaryRow>& rows) {
    QStringList lines;
    for (const SummaryRow& row : rows)
        lines.append(row.title + u'=' + row.detail.value_or(u"-"_s));
    return lines.join(u'|');
}

struct Counts {
    std::optional<quint32> total, processed, retry;
};

} // namespace

/// What the summary of a backup says.
class BackupSummaryTest : public QObject {
    Q_OBJECT

private slots:
    void listsAndNamesTasks_data() {
        const Columns<QString, quint32, TaskState, QString, QString> row("type", "blob", "state", "list",
                                                                         "kind");
        using enum TaskState;
        row("ccbackup", 0, Pending, "mirrored", "Cross Cloud");
        row("CCBackup", 4, Running, "mirrored", "Cross Cloud");
        row("advbackup", 0, Held, "snapshot", "Application Data");
        row("AdvBackup", 4, Completed, "", "Application Data");
        row("Snapshotbackup", 4, Failed, "snapshot", "Folder");
        row("snapshotbackup", 3, Failed, "", "Folder");
        row("backup", 4, Paused, "mirrored", "Mirrored");
        row("backup", 1, Paused, "", "Mirrored");
        row("", 4, TaskState(9), "mirrored", "Mirrored");
        row("ccbackups", 0, Pending, "", "Mirrored");
    }

    void listsAndNamesTasks() {
        const auto [type, blob, state, list] = Fetched<QString, quint32, TaskState, QString>();
        TaskRecord task;
        task.kind = type;
        task.schedule.type = blob;
        task.state = state;
        const auto flavour = ListedFlavour(task);
        QCOMPARE(flavour ? *flavour == BackupFlavour::Snapshot ? u"snapshot"_s : u"mirrored"_s : QString(),
                 list);
        QTEST(BackupKindText(KindOfBackup(type, u"C:\\@"_s)), "kind");
    }

    void splitsDescriptions_data() {
        const Columns<QString, QString, QString> row("type", "description", "rows");
        const QString all = u"All selected file types cross the whole machine"_s;
        row("backup", "a\nb\t/Home/x\nc\td\n*\ne",
            "What To Backup=a|=b|Exclude=d|=e|Where To Backup=/Home/x|=c");
        row("backup", "a\t/Home\t*", "What To Backup=a|Where To Backup=/Home");
        row("backup", "without a tab", "What To Backup=without a tab");
        row("backup", "\n\na\n\t\n\t\n", "What To Backup=a");
        row("backup", "a\tt\te\tmore", "What To Backup=a|Exclude=e\tmore|Where To Backup=t");
        row("backup", "\t\t", "");
        row("backup", "", "");
        row("Snapshotbackup", "@\t/Home\t*", u"What To Backup="_s + all + u"|Where To Backup=/Home"_s);
        row("Snapshotbackup", "@\nb\t/Home\t*", u"What To Backup="_s + all + u"|Where To Backup=/Home"_s);
        row("Snapshotbackup", "a\n@\nb\tt\t", u"What To Backup=a|="_s + all + u"|Where To Backup=t"_s);
        row("Snapshotbackup", "@a", "What To Backup=@a");
        row("ccbackup", "a\tb\tc", "");
    }

    void splitsDescriptions() {
        const auto [type, description] = Fetched<QString, QString>();
        TaskRow task;
        task.type = type;
        task.description = description;
        QTEST(Joined(BackupDescriptionRows(task)), "rows");
    }

    void countsWork_data() {
        const Columns<TaskState, Counts, RunningWork, QString> row("state", "counts", "work", "progress");
        using enum TaskState;
        row("a bar", Running, {8, 3, 1}, {2, 12500},
            "#Progress:32500 80000@@3 of 8 processed, 2 running, 1 pending retry");
        row("no bar", Paused, {8, 3, 1}, {}, "3 of 8 processed, 0 running, 1 pending retry");
        row("retries unknown", Running, {8, 3, Unknown}, {},
            "#Progress:30000 80000@@3 of 8 processed, 0 running, 0 pending retry");
        row("more retries than processed", Running, {8, 3, 5}, {},
            "#Progress:0 80000@@3 of 8 processed, 0 running, 5 pending retry");
        row("processed beyond the total", Running, {8, 9, 0}, {1, 9999},
            "#Progress:80000 80000@@9 of 8 processed, 1 running, 0 pending retry");
        // Halved until it fits into what a bar can say: 32 bits would have come round many times.
        row("the largest total", Running, {Most, Most / 2, 0}, {},
            "#Progress:655359999 1310719999@@2147483647 of 4294967294 processed, 0 running, 0 pending retry");
        row("nothing to do", Running, {0, 0, 0}, {}, "-");
        row("total unknown", Running, {Unknown, 3, 0}, {}, "-");
        row("processed unknown", Running, {8, Unknown, 0}, {}, "-");
    }

    void countsWork() {
        const auto [state, counts, work] = Fetched<TaskState, Counts, RunningWork>();
        SubTaskCounts known;
        known.total = counts.total;
        known.processed = counts.processed;
        known.pendingRetry = counts.retry;
        QTEST(BackupProgress(state, known, work).value_or(u"-"_s), "progress");
    }

    void addsUpWhatRuns() {
        const std::tuple<quint64, quint64, const char*> running[] = {{1, 3, "a.jpg"},
                                                                     {9, 3, "b.jpg"},
                                                                     {5, 0, "empty"},
                                                                     {1, 2, "Chunk 3 of c.iso"},
                                                                     {~0ULL, ~0ULL, "d.iso"}};
        RunningWork work;
        for (const auto& [done, total, description] : running) {
            RunningSubTask subTask;
            subTask.bytesDone = done;
            subTask.bytesTotal = total;
            subTask.description = QString::fromLatin1(description);
            work.Add(subTask);
        }
        QCOMPARE(work, (RunningWork{5, 3333 + 10000 + 10000}));
    }

    void saysTheState_data() {
        const Columns<TaskState, QString, QString, QString> row("state", "status", "next", "buttons");
        using enum TaskState;
        row("pending", Pending, "Pending", "tomorrow", "Start Now");
        row("running", Running, "-", "N/A", "Pause, Cancel Backup");
        row("paused", Paused, "Paused", "N/A", "Start Now, Resume, Cancel");
        row("failed", Failed, "Failed", "tomorrow", "Start Now, Cancel");
        row("held", Held, "-", "tomorrow", "");
        row("completed", Completed, "Completed", "tomorrow", "Cancel Backup");
        row("unknown", TaskState(17), "-", "tomorrow", "");
    }

    void saysTheState() {
        QFETCH(TaskState, state);
        const TaskSummaryPlan plan = BackupSummary();
        TaskFacts facts;
        facts.lookup.found = true;
        facts.lookup.task.state = state;
        facts.lookup.task.nextRun = u"tomorrow"_s;
        TaskRow task;
        task.lastRun = u"last night"_s;
        const std::vector<SummaryRow> rows = plan.rows(task, facts);
        const auto detail = [&rows](QLatin1String title) {
            const auto row = std::find_if(rows.begin(), rows.end(),
                                          [title](const SummaryRow& each) { return each.title == title; });
            return row->detail.value_or(u"-"_s);
        };
        QTEST(detail("Status"_L1), "status");
        QTEST(detail("Next Start Time"_L1), "next");
        QCOMPARE(detail("Last Run Time"_L1), u"last night"_s);
        QStringList buttons;
        for (const TaskButton& button : plan.buttons(state))
            buttons.append(button.caption);
        QTEST(buttons.join(u", "_s), "buttons");
    }
};

BTASK_TEST(BackupSummaryTest);
#include "BackupSummaryTest.moc"
