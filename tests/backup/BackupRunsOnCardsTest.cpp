#include "backup/BackupItem.h"
#include "backup/BackupTaskList.h"
#include "list/RecordView.h"
#include "page/LinkLabel.h"
#include "support/PageFixture.h"
#include "support/TableHand.h"
#include "support/TestMain.h"

#include <QDialog>

using namespace Qt::Literals::StringLiterals;
using namespace devservice;

namespace {

const QDateTime Now = WallTime(QDateTime::currentDateTime());

std::string Written(const QDateTime& time) {
    return time.toString(u"yyyy-MM-dd HH:mm:ss"_s).toStdString();
}

} // namespace

/// How the last runs of backups went, on their cards and in the head.
class BackupRunsOnCardsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<PageFixture<>>(); }
    void cleanup() {
        m_list.reset();
        m_fixture.reset();
    }

    void saysWhatTheLogTells() {
        const QDateTime planned = Now.addSecs(3600);
        PutBackup("{1}", "Photos", planned);
        PutBackup("{2}", "Music", planned);
        for (const int days : {10, 9, 8})
            AddRun("{1}", planned.addDays(-days), 9, 0, 9);
        const QDateTime late = planned.addDays(-1).addSecs(9000);
        AddRun("{1}", late, 4310, 12, 4310);
        Show();
        QCOMPARE(Said(u"Music"_s), QString());
        const QString outcome = u"12 of 4,310 failed"_s;
        const QString said = u"last clean run 7 days ago, planned %1, ran %2"_s.arg(
            planned.toString(u"HH:mm"_s), late.toString(u"HH:mm"_s));
        QCOMPARE(Said(u"Photos"_s), outcome + u", "_s + said);
        QVERIFY(m_list->FindCard(u"Photos"_s)->accessibleDescription().contains(outcome));
        QCOMPARE(m_fixture->frame.notice, u"1 backup has had no clean run for 7 days"_s);

        // A run under way has taken up what failed: nothing is left to be shown.
        m_fixture->service->SetTaskState("{1}", TaskState::Running);
        Refresh();
        QCOMPARE(Link(u"Photos"_s), nullptr);
        QVERIFY(Said(u"Photos"_s).startsWith(outcome));
        AddRun("{1}", Now.addSecs(-600), 9, 0, 9);
        m_fixture->service->SetTaskState("{1}", TaskState::Pending);
        Refresh();
        QVERIFY(Said(u"Photos"_s).startsWith(u"last clean run within the last hour"_s));
        QCOMPARE(m_fixture->frame.notice, QString());
    }

    void warnsOfABackupThatNobodyPlans() {
        Task task = MakeTask("{1}", "Photos");
        task.nextRun.reset();
        m_fixture->service->PutTask(task);
        PutBackup("{2}", "Music", Now.addDays(1));
        m_fixture->service->SetTaskState("{2}", TaskState::Paused);
        AddRun("{2}", Now.addDays(-1), 9, 0, 4);
        Show();
        QCOMPARE(Said(u"Photos"_s), u"no next run is planned"_s);
        QCOMPARE(Said(u"Music"_s), u"5 of 9 not done, paused since "_s +
                                       Now.addDays(-1).addSecs(60).toString(u"yyyy-MM-dd HH:mm"_s));
    }

    void readsTheLogOfWhatIsInFrontOnce() {
        for (int i = 0; i < 30; ++i)
            PutBackup("{box" + std::to_string(i) + '}', "Box " + std::to_string(i), Now);
        Show();
        const auto known = [this] {
            int count = 0;
            for (int card = 0; card < m_list->CardCount(); ++card)
                count += !static_cast<CBackupItem*>(m_list->CardAt(card))->WantsRuns();
            return count;
        };
        const int inFront = int(m_list->CardsInFront().size());
        QVERIFY(inFront > 0 && inFront < 30);
        QCOMPARE(known(), inFront);
        Settle();
        QCOMPARE(m_fixture->reader.StepAll(), 0);
        m_list->NextPage();
        Settle();
        QCOMPARE(known(), 2 * inFront);
        // What cannot be read is read when it can.
        m_fixture->service->SetFault(DatabaseFault::Missing, devservice::Database::ProcessLog);
        m_list->NextPage();
        Settle();
        QCOMPARE(known(), 2 * inFront);
        m_fixture->service->ClearFaults();
        Refresh();
        QCOMPARE(known(), 3 * inFront);
    }

    void opensWhatFailed() {
        PutBackup("{1}", "Photos", Now.addDays(1));
        SubTask failed = MakeSubTask(2, "PUT", "/nowhere/at all/b.txt", 5, SubTaskState::Failed);
        failed.note = "The file is used by another program";
        m_fixture->service->PutSubTasks("{1}",
                                        {MakeSubTask(1, "PUT", "/a.txt", 5, SubTaskState::Done), failed});
        AddRun("{1}", Now.addDays(-1), 2, 1, 2);
        Show();
        emit Link(u"Photos"_s)->LinkClicked(0);
        m_fixture->reader.StepAll();
        auto* window = m_list->findChild<QDialog*>();
        QVERIFY(window);
        const TableHand table(*window);
        QCOMPARE(table.Column(0), QStringList(u"The file is used by another program"_s));
        QCOMPARE(table.Column(1), QStringList(u"/nowhere/at all/b.txt"_s));
        m_fixture->prompts.ExpectMessage(u"\"/nowhere/at all/\" cannot be opened as a folder."_s);
        table.Click(0, 3);
        Settle();
        QVERIFY(m_fixture->prompts.IsPlayed());
    }

private:
    void PutBackup(const std::string& id, const std::string& name, const QDateTime& next) {
        Task task = MakeTask(id, name);
        task.nextRun = ParseTime(Written(next));
        m_fixture->service->PutTask(task);
    }

    void AddRun(const std::string& id, const QDateTime& start, int total, int failed, int processed) {
        m_fixture->service->Execute(m_fixture->service->DatabaseFile(devservice::Database::ProcessLog),
                                    "INSERT INTO TaskProcessLog VALUES(NULL,'" + id + "','" + Written(start) +
                                        "','" + Written(start.addSecs(60)) + "','why'," +
                                        std::to_string(total) + ',' + std::to_string(failed) + ',' +
                                        std::to_string(processed) + ')');
    }

    void Show() {
        m_list = std::make_unique<CBackupTaskList>(m_fixture->console, BackupFlavour::Mirrored);
        m_list->resize(760, 560);
        m_fixture->Open(*m_list);
        Settle();
    }

    void Refresh() {
        m_fixture->Refresh(*m_list);
        Settle();
    }

    /// The log is read once the list has been painted.
    void Settle() {
        do
            QCoreApplication::processEvents();
        while (m_fixture->reader.StepAll() > 0);
    }

    LinkLabel* Link(const QString& title) const { return m_list->FindCard(title)->findChild<LinkLabel*>(); }

    QString Said(const QString& title) const {
        QStringList texts;
        if (Link(title))
            texts = Link(title)->Spans();
        for (const CardRemark& remark : m_list->FindCard(title)->Remarks())
            texts.append(remark.text);
        return texts.join(u", "_s);
    }

    std::unique_ptr<PageFixture<>> m_fixture;
    std::unique_ptr<CBackupTaskList> m_list;
};

BTASK_TEST(BackupRunsOnCardsTest);
#include "BackupRunsOnCardsTest.moc"
