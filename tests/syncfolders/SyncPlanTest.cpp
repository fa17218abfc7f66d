// Labels: threads
#include "support/TestMain.h"
#include "syncplan/FileVersions.h"
#include "syncplan/LocalFolder.h"
#include "syncplan/SyncState.h"

#include <limits>

using namespace Qt::Literals::StringLiterals;

/// What a sync folder is without a window and without a service.
class SyncPlanTest : public QObject {
    Q_OBJECT

private slots:
    void recordsOfTheList_data() {
        const Columns<QString, QString> row("value", "folders");
        row("", "");
        row("Team\tC:\\Team", "Team=C:\\Team");
        row("Team\tC:\\Team\n", "Team=C:\\Team");
        row("A\t/a\nno tab\n\nB\t/b", "A=/a|B=/b");
        row("A\t/a\nB\t/b\na\t/c", "A=/c|B=/b");
        row("A\t/a\tmore", "A=/a\tmore");
        row("\t/nameless", "=/nameless");
    }

    void recordsOfTheList() {
        const auto [value, folders] = Fetched<QString, QString>();
        QStringList shown;
        for (const SyncFolder& folder : SyncFoldersOf(EntriesOf(value)))
            shown += folder.name + u'=' + folder.path;
        QCOMPARE(shown.join(u'|'), folders);
    }

    void aLongListIsReadAtOnce() {
        QStringList entries;
        for (int i = 0; i < 10'000; ++i)
            entries += u"Directory %1\t/home/%1"_s.arg(i);
        const std::vector<SyncFolder> folders = SyncFoldersOf(entries);
        QCOMPARE(folders.size(), std::size_t(10'000));
        QCOMPARE(FindSyncFolder(folders, u"DIRECTORY 9999"_s)->path, u"/home/9999"_s);
    }

    void placesAreChecked_data() {
        const Columns<QString, QString, QString> row("name", "path", "refusal");
        row("Team", "/home/a/Team", "");
        row("Team", "Team", "no complete path");
        row("Team", "", "no complete path");
        row("Team", "/home/a&b", "\"&\"");
        row("Team", "/home/a\tb", "tabs");
        row("R&D", "/home/a", "\"&\"");
        row("a?", "/home/a", "\"?\"");
        row("..", "/home/a", "\"..\"");
        row("#1 (old)", "/home/a", "");
    }

    void placesAreChecked() {
        const auto [name, path, refusal] = Fetched<QString, QString, QString>();
        const bool windows = std::filesystem::path::preferred_separator == '\\';
        const QString place = windows && path.startsWith(u'/') ? u"C:"_s + path : path;
        const QString said = SyncFolderRefusal({name, place});
        QVERIFY2(refusal.isEmpty() ? said.isEmpty() : said.contains(refusal), qPrintable(said));
    }

    void foldersInsideOthersAreTold_data() {
        const Columns<QString, QString> row("path", "warning");
        row("/home/a/Other", "");
        row("/home/a/Team 2", "");
        row("/home/a/Team", "already");
        row("/home/a/./Team/", "already");
        row("/home/a/Team/photos", "inside");
        row("/home/a", "holds");
        row("/", "holds");
        row("Team", "");
    }

    void foldersInsideOthersAreTold() {
        const auto [path, warning] = Fetched<QString, QString>();
        const QString root = std::filesystem::path::preferred_separator == '\\' ? u"C:"_s : QString();
        const QString said = NestingWarning(path.startsWith(u'/') ? root + path : path,
                                            {{u"Team"_s, root + u"/home/a/Team"_s}});
        QVERIFY2(warning.isEmpty() ? said.isEmpty() : said.contains(warning), qPrintable(said));
    }

    void statesSayWhatTheyMean_data() {
        // The time is 23:55:00.
        const Columns<int, QString, QString, QString> row("state", "nextRun", "text", "action");
        row(0, "2025-3-4 23:56:01", "Sync starts in 01 Minute(s) 01 Second(s)", "Pause Sync");
        row(0, "2024-1-1 23:55:59", "Sync starts in 59 Seconds", "Pause Sync");
        row(0, "2025-3-5 0:5:0", "Sync starts momentarily", "Pause Sync");
        row(0, "2025-3-4 23:55:0", "Sync starts momentarily", "Pause Sync");
        row(0, "N/A", "Sync starts momentarily", "Pause Sync");
        row(1, "2025-3-4 23:56:01", "unchanged", "Pause Sync");
        row(2, "2025-3-4 23:56:01", "Paused", "Resume Sync");
        row(3, "2025-03-04 23:59:59", "failed, retry in 04 Minute(s) 59 Second(s)", "Retry Now");
        row(3, "", "failed, retry momentarily", "Retry Now");
        row(4, "", "unchanged", "");
        row(5, "2025-3-4 23:56:01", "Completed", "Start Now");
        row(6, "", "unchanged", "");
        row(-1, "", "unchanged", "");
    }

    void statesSayWhatTheyMean() {
        const auto [code, nextRun, text, action] = Fetched<int, QString, QString, QString>();
        const auto state = static_cast<TaskState>(code);
        QCOMPARE(SyncStatusText(state, nextRun, QTime(23, 55)).value_or(u"unchanged"_s), text);
        const auto offered = SyncActionOf(state);
        QCOMPARE(offered ? offered->caption : QString(), action);
    }

    void remainingTimes_data() {
        const Columns<int, QString> row("seconds", "text");
        row(1, "01 Seconds");
        row(59, "59 Seconds");
        row(60, "01 Minute(s) 00 Second(s)");
        row(61, "01 Minute(s) 01 Second(s)");
        row(3599, "59 Minute(s) 59 Second(s)");
        row(3600, "01:00:00");
        row(86399, "23:59:59");
    }

    void remainingTimes() {
        const auto [seconds, text] = Fetched<int, QString>();
        QCOMPARE(RemainingText(seconds), text);
    }

    void stampsAreRelative_data() {
        const Columns<QString, QString> row("stamp", "text");
        const auto ago = [](qint64 seconds) { return QString::number(Now - seconds); };
        row(ago(0), "0 Second(s) Ago");
        row(ago(59), "59 Second(s) Ago");
        row(ago(60), "1 Minute(s) Ago");
        row(ago(3599), "59 Minute(s) Ago");
        row(ago(3600), "1 Hour(s) Ago");
        row(ago(86399), "23 Hour(s) Ago");
        row(ago(86400), "1 Day(s) Ago");
        row(ago(2591999), "29 Day(s) Ago");
        row(ago(2592000), "2025-02-02 09:00:00");
        row(ago(-1), "2025-03-04 09:00:01");
        row("0", "1601-01-01 00:00:00");
        row("-1", "1600-12-31 23:59:59");
        row("9223372036854775807", "9223372036854775807");
        row("-9223372036854775808", "-9223372036854775808");
        row("99999999999999999999", "99999999999999999999");
        row("soon", "soon");
        row("", "");
    }

    void stampsAreRelative() {
        const auto [stamp, text] = Fetched<QString, QString>();
        QCOMPARE(StampText(stamp, Now), text);
    }

    void longStampsAreTheNewest() {
        QVERIFY(StampNumber(u"99999999999999999999"_s) > StampNumber(u"13385536800"_s));
        QCOMPARE(StampNumber(u"soon"_s), qint64(0));
        // 2025-03-04 09:00 was that long after the stamps begin.
        QVERIFY(CurrentStamp() > Now);
    }

    void historyRows_data() {
        const Columns<QString, QString, QString> row("uri", "operation", "change");
        const QString store = u"/43811DCD-8C5A-4EF9-B903-2EEA9CE88487"_s;
        row(store + u"/Team/plan.odt"_s, "m#13", "/Team/plan.odt:Modified:13");
        row(u"/Team"_s + store + u"/plan.odt"_s, "a#13#14", "/Team/plan.odt:Added:13#14");
        row(store + u"/Team"_s + store + u"/x"_s, "d#", u"/Team"_s + store + u"/x:Deleted:"_s);
        row(store, "x#1", "/::1");
        row(store + u"/Team/plan.odt"_s, "#1", "/Team/plan.odt::1");
        row(store + u"/Team/plan.odt"_s, "m13", "");
        row(store + u"/Team/plan.odt"_s, "", "");
        row("/Team/plan.odt", "m#13", "");
        row("", "m#13", "");
    }

    void historyRows() {
        const auto [uri, operation, expected] = Fetched<QString, QString, QString>();
        const auto change = ChangeOf({uri, operation, u"mara"_s, u"STUDY-PC"_s});
        QCOMPARE(change ? change->file + u':' + ChangeText(change->operation) + u':' + change->stamp
                        : QString(),
                 expected);
    }

    void filesOfTheFolder_data() {
        const Columns<QString, QString, QString> row("file", "inside", "local");
        row("/Team/plan.odt", "/plan.odt", "/sync/plan.odt");
        row("/TEAM/photos/hall.jpg", "/photos/hall.jpg", "/sync/photos/hall.jpg");
        row("/Team/a/../../b", "/a/../../b", "");
        row("/Other/plan.odt", "", "/sync");
        row("/Teams/plan.odt", "", "/sync");
    }

    void filesOfTheFolder() {
        const auto [file, inside, local] = Fetched<QString, QString, QString>();
        QCOMPARE(FileInside(file, u"Team"_s), inside);
        QCOMPARE(LocalFile({u"Team"_s, u"/sync"_s}, inside).replace(u'\\', u'/'), local);
    }

    void versionLines_data() {
        const Columns<QByteArray, QString> row("answer", "versions");
        row("", "");
        row("m\t30\t0\tSTUDY-PC\tmara\n", "1 Modify 30 Full STUDY-PC mara 30");
        row("m\t30\t20\tPC\tmara\nd\t25\t0\tPC\tmara\na\t20\t0\tPC\tjonas",
            "1 Modify 30 Diff PC mara 30#20|2 Delete 25 Full PC mara 25|3 Add 20 Full PC jonas 20 revert");
        // A line of one field has its number, and is none of the versions.
        row("broken\nm\t30\t20\nx\t10", "2 Modify 30 Diff   30#20|3  10    10 revert");
        row(QByteArray("m\t30\t0\tA\tB\0m\t20\t0\tA\tB", 21), "1 Modify 30 Full A B 30");
        row("m\t30\t0\tR\xC3\xA4ume\tmara\textra", "1 Modify 30 Full R\xC3\xA4ume mara 30");
    }

    void versionLines() {
        const auto [answer, expected] = Fetched<QByteArray, QString>();
        QStringList shown;
        for (const FileVersion& version : VersionsOf(answer)) {
            QStringList parts{QString::number(version.number),
                              VersionOperationText(version.operation),
                              version.stamp,
                              version.BaseText(),
                              version.computer,
                              version.updater,
                              version.Key()};
            if (version.canRevert)
                parts += u"revert"_s;
            shown += parts.join(u' ');
        }
        QCOMPARE(shown.join(u'|'), expected);
    }

    void versionsAreFoundByTheirKeys() {
        const auto versions =
            VersionsOf("m\t30\t20\tPC\tmara\nd\t25\t0\tPC\tm\nm\t20\t10\tPC\tj\na\t10\t0\tPC\tj");
        QCOMPARE(FindVersion(versions, u"20#10"_s)->number, 3);
        QCOMPARE(FindVersion(versions, u"10"_s)->number, 4);
        for (const char* key : {"30#20", "25", "20", "11", ""})
            QVERIFY2(!FindVersion(versions, QString::fromLatin1(key)), key);
    }

    void pathsOfTheStore() {
        QCOMPARE(ChildPath({}, u"a"_s), u"/a"_s);
        QCOMPARE(ChildPath(u"/a"_s, u".."_s), u"/a/.."_s);
        QCOMPARE(ParentPath(u"/a/b"_s), u"/a"_s);
        QCOMPARE(ParentPath(u"/a"_s), QString());
        QCOMPARE(ParentPath({}), QString());
    }

private:
    static constexpr qint64 Now = 13'385'552'400; ///< 2025-03-04 09:00:00
};

BTASK_TEST(SyncPlanTest);
#include "SyncPlanTest.moc"
