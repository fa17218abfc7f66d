// Labels: threads painting
#include "backup/AdvBackupTaskWizard.h"

#include "support/PageFixture.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"
#include "wizard/CheckTreeView.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString SqlServer = u"SqlServerWriter({a65faa63-5ea8-4ebc-9dbd-a0c4db26912a})"_s;
const QString Warehouse = u"Warehouse Writer({3b1f0a4e-52d6-4c1c-9f77-0d2b6c8e1a55})"_s;

/// The wizard before a service with the directory "V".
struct Applications : PageFixture<> {
    Applications() {
        service->SetVirtualDirectories({{"V", "{C}"}});
        QDir(service.Home()).mkpath(u"drive/V/Apps"_s);
    }
    void Open() { rider = std::make_unique<WizardRider>(new CAdvBackupTaskWizard(console), reader); }
    bool Ride(const QString& script) { return rider->Ride(script); }
    CheckTreeView& View() const { return *rider->Sheet()->CurrentPage()->findChild<CheckTreeView*>(); }
    CheckTreeModel& Tree() const { return View().Tree(); }
    QStringList Names(const QModelIndex& parent = {}) const {
        QStringList names;
        for (int row = 0; row < Tree().rowCount(parent); ++row)
            names.append(Tree().index(row, 0, parent).data().toString());
        return names;
    }
    /// Space pressed at what is called so.
    void Toggle(const QString& application, const QString& component = {}) const {
        QModelIndex index = Tree().index(int(Names().indexOf(application)), 0);
        View().expand(index);
        if (!component.isEmpty())
            index = Tree().index(int(Names(index).indexOf(component)), 0, index);
        View().setCurrentIndex(index);
        QTest::keyClick(&View(), Qt::Key_Space);
    }
    /// What was sent, with noughts in place of the schedule's date and time.
    QString Record() {
        for (const devservice::ReceivedRequest& request : service->Requests()) {
            if (request.target != "/schedule/advbackup")
                continue;
            QStringList fields = QString::fromStdString(request.body).remove(QChar(0)).split(u'\t');
            QStringList numbers = fields.value(6).split(u' ');
            std::fill_n(numbers.begin() + 1, 6, u"0"_s);
            fields[6] = numbers.join(u' ');
            return fields.join(u'\t');
        }
        return {};
    }

    std::unique_ptr<WizardRider> rider;
};

} // namespace

class ApplicationWizardTest : public QObject {
    Q_OBJECT

private slots:
    void sendsWhatIsTicked() {
        Applications apps;
        apps.Open();
        QVERIFY(apps.Ride(u"page Applications | busy | off Next | steps | on Next"_s));
        QVERIFY(!apps.Names().contains(u"COM+ Registry"_s)); // no backup takes it
        apps.prompts.ExpectMessage(u"Please select at least one folder to backup!"_s);
        QVERIFY(apps.Ride(u"Next | page Applications"_s));
        apps.Toggle(u"Warehouse Writer"_s, u"Inventory"_s);
        apps.Toggle(u"SQL Server"_s);
        apps.Toggle(u"SQL Server"_s, u"LEDGER/model"_s);
        QVERIFY(
            apps.Ride(u"Next | steps | page Where to Backup | "
                      "Path:=/V/Apps | Next | steps | page When to Backup | Next | steps | page Confirm and "
                      "Start | Task Name==Backup [SQL Server,Inventory] To [/V/Apps]"_s));
        const QString text = apps.rider->Sheet()->CurrentPage()->findChild<QPlainTextEdit*>()->toPlainText();
        const QString beginning =
            u"Backup the information and/or data of following application (and components):\n"_s + SqlServer +
            '\n'_L1 + Warehouse + "/Inventory\n\nExclude Following Sub-Components:\n"_L1 + SqlServer +
            "/LEDGER/model\n\nBackup To:\n/V/Apps\n\nBackup Schedule:\nBackup task will start at "_L1;
        QCOMPARE(text.left(beginning.size()), beginning);
        QVERIFY(apps.Ride(u"Finish | steps | finished"_s));
        QCOMPARE(apps.Record(), u"Backup [SQL Server,Inventory] To [/V/Apps]\t"_s + SqlServer + '\n'_L1 +
                                    Warehouse + "/Inventory\t/V/Apps\t"_L1 + SqlServer +
                                    "/LEDGER/model\t10\t0\t1 0 0 0 0 0 0 1 1 1 1 1 1 1 1\n\t0\t"_L1);
        QCOMPARE(apps.service->Tasks().size(), size_t(1));
    }

    void saysWhyThereIsNoList_data() {
        const Columns<QString, QString> row("fault", "words");
        row("deny:500", "The service does not list the applications (status 500).");
        row("fin", "The service's answer broke off in the middle.");
        row("garbage", "The service does not answer.");
        row("empty", "The service lists no applications.");
    }

    void saysWhyThereIsNoList() {
        const auto [fault, words] = Fetched<QString, QString>();
        Applications apps;
        if (fault == "empty"_L1)
            apps.service->SetWriters(devservice::Writers::Empty);
        else
            apps.service->SetFault(fault.toStdString() + "@/backupsvr/writers");
        apps.Open();
        QVERIFY(apps.Ride(u"steps | says %1 | off Next"_s.arg(words)));
        apps.service->ClearFaults();
        apps.service->SetWriters(devservice::Writers::Usual);
        QTest::keyClick(&apps.View(), Qt::Key_F5);
        QVERIFY(apps.Ride(u"busy | steps | on Next"_s));
        QVERIFY(apps.Names().contains(u"SQL Server"_s));
    }

    void canBeLeftWhileTheListIsAwaited() {
        Applications apps;
        apps.Open();
        QVERIFY(apps.Ride(u"busy | says Building Application List... | Cancel | closed"_s));
    }

    void takesListsThatAreNotAsTold() {
        Applications apps;
        apps.service->SetWriters(devservice::Writers::Malformed);
        apps.Open();
        QVERIFY(apps.Ride(u"steps"_s));
        const QStringList names = apps.Names();
        QVERIFY(!names.contains(u"Name And Identifier"_s));
        QCOMPARE(names.count(u"Twice"_s), 1);
        const auto partsOf = [&](const QString& name) {
            return apps.Names(apps.Tree().index(int(names.indexOf(name)), 0));
        };
        QCOMPARE(partsOf(u"Twice"_s), QStringList(u"A"_s));
        QCOMPARE(partsOf(u"Empty Components"_s), QStringList(u"One"_s));
        QCOMPARE(partsOf(u"A Last Line Without An End"_s), QStringList(u"Component"_s));

        // What a record cannot carry is named at the end.
        apps.Toggle(u"Another System's Line"_s, u"Component\r"_s);
        QVERIFY(apps.Ride(
            u"Next | steps | Path:=/V | Next | steps | Next | steps | Finish | steps | page Confirm and "
            "Start"_s));
        QVERIFY(apps.rider->Sheet()->findChild<WizardLine*>()->Text().contains(u"carriage return"_s));
        QCOMPARE(apps.Record(), QString());
    }

    void keepsTicksThroughANewList() {
        Applications apps;
        apps.Open();
        QVERIFY(apps.Ride(u"steps"_s));
        apps.Toggle(u"SQL Server"_s);
        apps.Toggle(u"Local Registry"_s);
        const std::string list = "SqlServerWriter\t{a65faa63-5ea8-4ebc-9dbd-a0c4db26912a}\tstable\tone\n";
        apps.service->SetAnswer("/backupsvr/writers", devservice::Answer{200, list});
        QTest::keyClick(&apps.View(), Qt::Key_F5);
        QVERIFY(apps.Ride(u"steps | says Chosen: SQL Server"_s)); // the other one is there no more
    }

    void takesAVeryLongList() {
        Applications apps;
        apps.service->SetWriters(devservice::Writers::Large);
        apps.Open();
        QVERIFY(apps.Ride(u"steps"_s));
        QCOMPARE(apps.Names().size(), 1000);
        QCOMPARE(apps.Names(apps.Tree().index(999, 0)).size(), 100);
    }
};

BTASK_TEST(ApplicationWizardTest);
#include "ApplicationWizardTest.moc"
