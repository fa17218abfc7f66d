#include "backup/SnapshotsPanel.h"

#include "list/BrenListCtrl.h"
#include "support/PageFixture.h"
#include "support/TableHand.h"
#include "support/TestMain.h"
#include "taskman/TaskList.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Set = u"/V/T/091306a3-3cb9-4778-b990-6efd84ed4bb5/ABC"_s;
enum Column { Time, Full, Type, Delete, Restore };

TaskRow Backup() {
    TaskRow task;
    task.id = u"{ABC}"_s;
    task.title = u"Work"_s;
    task.type = u"Snapshotbackup"_s;
    task.description = u"D:\\Work\t/V/T\t*"_s;
    return task;
}

} // namespace

class SnapshotsPanelTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_fixture->service->SetVirtualDirectories({{"V", "{C}"}});
        for (const QString& name :
             {u"2025-11-3-1-0-0"_s, u"2025-11-4-1-0-0_1"_s, u"2025-11-9-1-0-0_2"_s, u"odd"_s})
            QVERIFY(QDir().mkpath(m_fixture->service.Home() + "/drive"_L1 + Set + u'/' + name));
        m_panel = std::make_unique<CSnapshotsPanel>(m_fixture->console, Backup());
        m_panel->resize(760, 400);
    }
    void cleanup() {
        m_panel.reset();
        m_fixture.reset();
    }

    void showsSnapshotsNewestFirst() {
        QFile info(m_fixture->service.Home() + "/drive"_L1 + Set + "/backupset.info"_L1);
        QVERIFY(info.open(QIODevice::WriteOnly));
        Open();
        QCOMPARE(Table().Column(Time),
                 (QStringList{u"2025-11-09 01:00:00"_s, u"2025-11-04 01:00:00"_s, u"2025-11-03 01:00:00"_s}));
        QCOMPARE(Table().Column(Full), (QStringList{u"No"_s, u"No"_s, u"Yes"_s}));
        QCOMPARE(Table().Column(Type), QStringList(3, u"Application"_s));
        QCOMPARE(
            m_fixture->service.RequestLines(),
            (QStringList{u"PROPFIND /resources"_s + Set, u"GET /resources"_s + Set + "/backupset.info"_L1}));
    }

    void saysWhereItLooks() {
        m_fixture->service->SetVirtualDirectories({});
        m_panel->Activate();
        QCOMPARE(Table()->TextWithoutRows(), u"Loading backup set list..."_s);
        m_fixture->reader.StepAll();
        QCOMPARE(Table()->TextWithoutRows(), u"No backup set found."_s);
        QCOMPARE(m_fixture->service.RequestLines().size(), 4);
    }

    void deletesNewestFirst() {
        Open();
        Table().Select({2, 1, 0}, Time);
        m_fixture->prompts.ExpectQuestion(
            u"Do you really want to delete the selected snapshots?\n3 snapshots"_s, true);
        Press();
        QCOMPARE(m_fixture->service.RequestLines().filter(u"DELETE"_s),
                 (QStringList{u"DELETE /resources"_s + Set + "/2025-11-9-1-0-0_2"_L1,
                              u"DELETE /resources"_s + Set + "/2025-11-4-1-0-0_1"_L1,
                              u"DELETE /resources"_s + Set + "/2025-11-3-1-0-0"_L1}));
        QVERIFY(m_fixture->prompts.asked.destroys);
        QCOMPARE(Table()->TextWithoutRows(), u"No backup set found."_s);
    }

    void saysWhatIsLostWithASnapshot() {
        Open();
        m_fixture->prompts.ExpectQuestion(
            u"Do you really want to delete the snapshot?\n2025-11-03 01:00:00 (Full)\n2 later snapshots, 4 to 9 Nov, cannot be restored without it."_s,
            false);
        Table().Click(2, Delete);
        QCoreApplication::sendPostedEvents();
        m_fixture->reader.StepAll();
        QVERIFY(m_fixture->service.RequestLines().filter(u"DELETE"_s).isEmpty());
    }

    void keepsTheOthersWhenOneFails() {
        Open();
        Table().Select({1, 0}, Time);
        QVERIFY(m_fixture->service->SetFault(
            ("deny:507@/resources"_L1 + Set + "/2025-11-9-1-0-0_2"_L1).toStdString()));
        m_fixture->prompts.ExpectQuestion(
            u"Do you really want to delete the selected snapshots?\n2 snapshots"_s, true);
        m_fixture->prompts.ExpectMessage(
            u"Failed to delete the snapshot. It may be in use, or another backup that "
            "needs it may have been made meanwhile."_s);
        Press();
        QCOMPARE(m_fixture->service.RequestLines().filter(u"DELETE"_s).size(), 1);
        QCOMPARE(Table().Column(Time).size(), 3);
    }

private:
    void Open() { m_fixture->Open(*m_panel); }
    TableHand Table() const { return TableHand(*m_panel); }
    void Press() {
        QTest::keyClick(Table().operator->(), Qt::Key_Delete);
        QCoreApplication::sendPostedEvents();
        m_fixture->reader.StepAll();
    }

    std::unique_ptr<PageFixture<>> m_fixture;
    std::unique_ptr<CSnapshotsPanel> m_panel;
};

BTASK_TEST(SnapshotsPanelTest);
#include "SnapshotsPanelTest.moc"
