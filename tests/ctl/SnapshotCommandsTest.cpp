#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

/// Snapshots and restores from the command line.
class SnapshotCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_service = std::make_unique<ServiceFixture>();
        (*m_service)->SetVirtualDirectories({{"V", "{C}"}});
        devservice::Task task = devservice::MakeTask("{ABC}", "Work", "Snapshotbackup");
        task.description = "D:\\Work\t/V/T\t*";
        devservice::Task other = devservice::MakeTask("{DEF}", "Never ran", "Snapshotbackup");
        other.description = "D:\\Other\t/V/T\t*";
        (*m_service)->PutTasks({task, other});
        for (const QString& name :
             {u"2025-3-3-1-0-0/Work"_s, u"2025-3-4-1-0-0_1/Work"_s, u"2025-3-10-1-0-0"_s, u"odd"_s})
            QVERIFY(QDir().mkpath(m_service->Home() + "/drive"_L1 + Set + u'/' + name));
    }
    void cleanup() { m_service.reset(); }

    void listsSnapshots() {
        const QString path = u"\"path\":\""_s + Set;
        const QString rows =
            u"[{\"name\":\"2025-3-3-1-0-0\",\"time\":\"2025-03-03 01:00:00\",\"full\":true,\"type\":null,"_s +
            path +
            u"/2025-3-3-1-0-0\"},\n{\"name\":\"2025-3-4-1-0-0_1\",\"time\":\"2025-03-04 "
            "01:00:00\",\"full\":false,\"type\":null,"_s +
            path +
            u"/2025-3-4-1-0-0_1\"},\n{\"name\":\"2025-3-10-1-0-0\",\"time\":\"2025-03-10 "
            "01:00:00\",\"full\":true,\"type\":null,"_s +
            path + u"/2025-3-10-1-0-0\"}]\n"_s;
        QCOMPARE(QString::fromUtf8(Btaskctl({u"snapshots"_s, u"work"_s, u"--json"_s}).out), rows);
        const Run none = Btaskctl({u"snapshots"_s, u"{DEF}"_s});
        QCOMPARE(none.exit, CtlExit::Refused);
        QCOMPARE(none.error, "No backup set found.\n");
        QCOMPARE(Json({u"snapshot"_s, u"ls"_s, Set + "/2025-3-3-1-0-0"_L1}).size(), 1);
    }

    void deletesNewestFirst_data() {
        // What is named stands between bars.
        const Columns<QString, CtlExit, QString, QByteArray> row("names", "exit", "deleted", "error");
        using enum CtlExit;
        row("2025-3-4-1-0-0_1", Done, "2025-3-4-1-0-0_1", {});
        row("2025-3-3-1-0-0|2025-3-10-1-0-0|2025-3-4-1-0-0_1|2025-3-3-1-0-0", Done,
            "2025-3-10-1-0-0|2025-3-4-1-0-0_1|2025-3-3-1-0-0", {});
        row("2025-3-10-1-0-0|2025-3-3-1-0-0", Refused, {},
            "These could not be restored any more, and are not named too: 2025-3-4-1-0-0_1.\n");
        row("odd", Refused, {}, "There is no snapshot \"odd\".\n");
    }
    void deletesNewestFirst() {
        const auto [names, exit, deleted, error] = Fetched<QString, CtlExit, QString, QByteArray>();
        const Run run = Btaskctl(QStringList{u"snapshot"_s, u"delete"_s, u"Work"_s} + names.split(u'|'));
        QCOMPARE(run.exit, exit);
        QCOMPARE(run.error, error);
        const QStringList sent = m_service->RequestLines();
        QStringList removed;
        for (qsizetype at = 0; at < sent.size(); ++at) {
            if (!sent[at].startsWith("DELETE "_L1))
                continue;
            removed += sent[at].section(u'/', -1);
            QCOMPARE(sent[at - 1], u"PROPFIND /resources"_s + Set); // it is listed anew before each
        }
        QCOMPARE(removed.join(u'|'), deleted);
    }

    void sendsOneRequest_data() {
        const Columns<QString, CtlExit, QByteArray> row("line", "exit", "record");
        using enum CtlExit;
        row("--component|Work", Done, "R\tSNAPSHOT\tWork\t*\t0\t0\t*\t");
        row("--component|Work|--component|b|--exclude|Work/x|--policy|skip|--location|/tmp/y", Done,
            "R\tSNAPSHOT\tWork\nb\tWork/x\t3\t1\t/tmp/y\t");
        row("--component|Work|--location|", Usage, {});
        row("--component|Work|--policy|never", Usage, {});
        row("--exclude|Work", Usage, {});
    }
    void sendsOneRequest() {
        auto [line, exit, record] = Fetched<QString, CtlExit, QByteArray>();
        const QString snapshot = Set + "/2025-3-3-1-0-0"_L1;
        record.replace("SNAPSHOT", snapshot.toUtf8());
        const QStringList words = QStringList{u"restore"_s, u"R"_s, u"--snapshot"_s, snapshot} +
                                  line.split(u'|', Qt::KeepEmptyParts);
        const Run dry = Btaskctl(words + QStringList(u"--dry-run"_s));
        QCOMPARE(dry.exit, exit);
        QCOMPARE(dry.out, record);
        QCOMPARE(m_service->RequestLines(), QStringList());
        QCOMPARE(Btaskctl(words).exit, exit);
        const auto requests = (*m_service)->Requests();
        QCOMPARE(requests.size(), std::size_t(exit == Done ? 1 : 0));
        if (exit == Done) {
            QCOMPARE(QByteArray::fromStdString(requests[0].body), record + '\0');
            QCOMPARE((*m_service)->Tasks().size(), std::size_t(3));
        }
    }

private:
    static constexpr CtlExit Done = CtlExit::Done;
    const QString Set = u"/V/T/091306a3-3cb9-4778-b990-6efd84ed4bb5/ABC"_s;
    std::unique_ptr<ServiceFixture> m_service;
};

BTASK_TEST(SnapshotCommandsTest);
#include "SnapshotCommandsTest.moc"
