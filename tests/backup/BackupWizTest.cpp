#include "backup/BackupWiz.h"
#include "support/PageFixture.h"
#include "support/TableHand.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"

using namespace Qt::Literals::StringLiterals;
using namespace devservice;

/// The page of a server's set-up that lists and makes backups.
class BackupWizTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_fixture->service->PutTasks(
            {MakeTask("{1}", "Photos"), MakeTask("{2}", "Old", "backup", TaskState::Completed),
             MakeTask("{3}", "Mail", "advbackup"), MakeTask("{4}", "Cloud", "ccbackup")});
    }
    void cleanup() { m_fixture.reset(); }

    void listsAndCancelsBackups() {
        WizardRider rider(MakeWizard({}), m_fixture->reader);
        QVERIFY(rider.Ride(u"page Backup Now | steps"_s));
        const TableHand table(*rider.Sheet());
        QStringList names = table.Column(0);
        names.sort();
        QCOMPARE(names, QStringList({u"Cloud"_s, u"Mail"_s, u"Photos"_s}));
        for (const QPushButton* button : rider.Sheet()->findChildren<QPushButton*>())
            QVERIFY(!button->text().startsWith(u"Backup by"_s)); // none that opens nothing
        m_fixture->prompts.ExpectQuestion(
            u"Do you really want to cancel this backup? It will be deleted for good. Its files stay.\n"_s +
                table.Column(0).first(),
            true);
        table.Click(0, 1);
        QCoreApplication::sendPostedEvents();
        QVERIFY(rider.Ride(u"steps"_s));
        QCOMPARE(table.Column(0).size(), 2);
    }

    void fillsItsListWhenAWizardCloses() {
        std::function<void()> closed;
        const auto open = [&closed](const Console&, QWidget&, BackupFlavour flavour,
                                    std::function<void()> close) {
            QCOMPARE(flavour, BackupFlavour::Snapshot);
            closed = std::move(close);
        };
        WizardRider rider(MakeWizard({.byFolder = open}), m_fixture->reader);
        QVERIFY(rider.Ride(u"steps | Backup by Folder"_s));
        m_fixture->service->PutTask(MakeTask("{5}", "New"));
        closed();
        QVERIFY(rider.Ride(u"steps"_s));
        QVERIFY(TableHand(*rider.Sheet()).Column(0).contains(u"New"_s));
    }

    void marksTheServerAsSetUp() {
        WizardRider rider(MakeWizard({}), m_fixture->reader);
        QVERIFY(rider.Ride(u"Finish | steps | finished"_s));
        QCOMPARE(m_fixture->service->Setting("BSInitConfig").value_or(""), std::string("True"));
    }

private:
    CBrenPropertySheet* MakeWizard(BackupWizards wizards) {
        m_wizards = std::move(wizards);
        auto* sheet = new CBrenPropertySheet(m_fixture->reader, m_fixture->prompts, u"Set-up"_s);
        sheet->AddPage(new CBackupWiz(m_fixture->console, m_wizards));
        return sheet;
    }

    std::unique_ptr<PageFixture<>> m_fixture;
    BackupWizards m_wizards;
};

BTASK_TEST(BackupWizTest);
#include "BackupWizTest.moc"
