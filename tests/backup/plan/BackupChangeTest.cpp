#include "plan/BackupChange.h"

#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Description = u"C:\\Docs\nD:\\Work\t/V/Office\tC:\\Docs\\Old\n*.obj"_s;

BackupChange Made(const std::function<void(BackupChange&)>& edit) {
    BackupChange change;
    edit(change);
    return change;
}

BackupSchedule Mondays() {
    BackupSchedule schedule{ScheduleMode::Weekdays, QDate(2025, 3, 5), QTime(21, 30)};
    schedule.weekdays = {false, true};
    schedule.box = true;
    return schedule;
}

} // namespace

class BackupChangeTest : public QObject {
    Q_OBJECT

private slots:
    /// In the records a bar stands for a tab and a tilde for a line feed.
    void writesTheRecordOfAChange_data() {
        const Columns<QString, QString, QString, BackupChange, QString> row("type", "name", "description",
                                                                            "change", "record");
        const QString none;
        row("nothing but what is known", "snapshotbackup", "N", Description, BackupChange(),
            "{1}|N|C:\\Docs~D:\\Work|/V/Office|C:\\Docs\\Old~*.obj|||||0|Snapshotbackup");
        row("retention", "Snapshotbackup", "N", Description, Made([](BackupChange& c) { c.keep = 0; }),
            "{1}|N|C:\\Docs~D:\\Work|/V/Office|C:\\Docs\\Old~*.obj||||0|0|Snapshotbackup");
        row("one line of the filter", "backup", "N[Encrypted]", "A\t/T\t*",
            Made([](BackupChange& c) { c.excludedTypes = u""_s; }),
            "{1}|N[Encrypted]|A|/T|*|~*~~~||||1|Backup");
        row("switches", "backup", "N", "A\t/T\t*", Made([](BackupChange& c) { c.skipHidden = false; }),
            "{1}|N|A|/T|*|~~~~Hidden||||0|Backup");
        row("a schedule, with its box", "backup", "N", "A\t/T\t*",
            Made([](BackupChange& c) { c.schedule = Mondays(); }),
            "{1}|N|A|/T|*||2 2025 3 5 21 30 0 0 1 0 0 0 0 0 1~|||0|Backup");
        row("folders", "backup", "N", "A\t/T\tX", Made([](BackupChange& c) {
                c.sources = {u"A"_s, u"B"_s};
                c.targets = {u"/U"_s};
                c.exclusions = QStringList();
            }),
            "{1}|N|A~B|/U|*|||||0|Backup");
        row("applications", "AdvBackup", "N", "W({G})\t/T\t*", Made([](BackupChange& c) { c.fullEvery = 7; }),
            "{1}|N|W({G})|/T|*|7|||0|");
        row("a description without lists", "backup", "N", none, BackupChange(), "{1}|N||||||||0|Backup");
        row("one with too many", "backup", "N", "A\t/T\tX\tY", BackupChange(), "{1}|N|A|/T||||||0|Backup");
    }

    void writesTheRecordOfAChange() {
        const auto [type, name, description, change, record] =
            Fetched<QString, QString, QString, BackupChange, QString>();
        const QByteArray sent = ChangeRecord(KnownOf(u"{1}"_s, name, type, description), change);
        QCOMPARE(QString::fromUtf8(sent).replace(u'\t', u'|').replace(u'\n', u'~'), record);
    }

    void refusesWhatBreaksTheRecord_data() {
        const Columns<BackupChange, bool> row("change", "refused");
        row("nothing", BackupChange(), false);
        row("no source", Made([](BackupChange& c) { c.sources = QStringList(); }), true);
        row("no target", Made([](BackupChange& c) { c.targets = QStringList(); }), true);
        row("no exclusion", Made([](BackupChange& c) { c.exclusions = QStringList(); }), false);
        row("a tab", Made([](BackupChange& c) { c.exclusions = {u"a\tb"_s}; }), true);
        row("a line feed", Made([](BackupChange& c) { c.types = u".a\n.b"_s; }), true);
        row("too many", Made([](BackupChange& c) { c.keep = 1'000'000; }), true);
        row("the sign of file types", Made([](BackupChange& c) { c.sources = {u"@"_s}; }), true);
    }

    void refusesWhatBreaksTheRecord() {
        const auto [change, refused] = Fetched<BackupChange, bool>();
        QCOMPARE(!ChangeRefusal(change).isEmpty(), refused);
    }
};

BTASK_TEST(BackupChangeTest);
#include "BackupChangeTest.moc"
