// Labels: threads painting
#include "backup/BackupTaskWizard.h"
#include "backup/ScheduleEditor.h"
#include "clouddrive/SetKeyDlg.h"
#include "mail/EmailDlg.h"
#include "page/LinkLabel.h"
#include "page/NoticeLine.h"
#include "page/PasswordField.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"
#include "wizard/CheckTreeView.h"
#include "zep/Text.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeTask;

namespace {

constexpr char Schedule[] = "1 2025 1 31 22 30 0 1 1 1 1 1 1 1 1\n";
const QString NobodyKnows =
    u"It is not known whether the service took the task: %1 Finish looks for it before it is "
    "sent again."_s;

/// A folder wizard before the development service, and folders of this computer to choose from.
struct Backing : PageFixture<> {
    explicit Backing(BackupFlavour flavour = BackupFlavour::Snapshot) {
        service->SetVirtualDirectories({{"Home", "{card}", 3, "{sp}"}});
        QDir(service.Home()).mkpath(u"drive/Home/Backup"_s);
        for (const QString& folder : {u"Papers/old"_s, u"Photos"_s})
            QDir(folders.path()).mkpath(folder);
        LocalFolders local;
        local.volumes = [path = ToPath(Folder({}))] { return std::vector<platform::Volume>{{path}}; };
        rider =
            std::make_unique<WizardRider>(new CBackupTaskWizard(console, flavour, nullptr, local), reader);
    }

    bool Ride(const QString& script) { return rider->Ride(script); }

    /// Ticks two folders and leaves one of theirs out, and goes on to the last page.
    bool RideToTheEnd() {
        reader.StepAll();
        auto& tree = rider->Sheet()->CurrentPage()->findChild<CheckTreeView*>()->Tree();
        tree.SetTicked({Folder({}), u"Papers"_s}, true);
        tree.SetTicked({Folder({}), u"Papers"_s, u"old"_s}, false);
        tree.SetTicked({Folder({}), u"Photos"_s}, true);
        if (!Ride(u"Next | steps | page Where to Backup | Next | says Please select the folder to backup to. "
                  u"| Path:=/Home/Backup | Next | steps | "
                  u"page When "
                  "to Backup"_s))
            return false;
        BackupSchedule schedule = DefaultSchedule(ScheduleForm::Snapshot, QDateTime::currentDateTime());
        schedule.date = QDate(2025, 1, 31);
        schedule.time = QTime(22, 30);
        rider->Sheet()->findChild<ScheduleEditor*>()->SetSchedule(schedule);
        return Ride(u"Next | page Confirm and Start | steps | Task Name=Mine"_s);
    }

    QByteArrayList Records() {
        QByteArrayList records;
        for (const devservice::ReceivedRequest& request : service.Service().Requests())
            if (request.target == "/schedule/backupex")
                records += QByteArray::fromStdString(request.body).chopped(1);
        return records;
    }
    /// What a record of the folders that are ticked is to be.
    QByteArray Record(const QByteArray& name, const QByteArray& end) const {
        return name + '\t' + Folder(u"Papers"_s).toUtf8() + '\n' + Folder(u"Photos"_s).toUtf8() +
               "\t/Home/Backup\t" + Folder(u"Papers/old"_s).toUtf8() +
               "\t*\n.tmp\nthumbs.db;desktop.ini;picasa.ini;\nNoSys\nNoHidden\t" + Schedule + end;
    }

    template <typename Part>
    Part* Find() const {
        return rider->Sheet()->CurrentPage()->findChild<Part*>();
    }
    QStringList Links() const {
        QStringList links;
        for (const LinkLabel* link : rider->Sheet()->CurrentPage()->findChildren<LinkLabel*>())
            links += link->Text();
        return links;
    }

    /// As the computer writes it; the folder of all when empty.
    QString Folder(const QString& below) const {
        return QDir::toNativeSeparators(below.isEmpty() ? folders.path() : folders.filePath(below));
    }

    QTemporaryDir folders;
    std::unique_ptr<WizardRider> rider;
};

} // namespace

/// The wizard that makes backups of folders, from its second page on.
class FolderWizardTest : public QObject {
    Q_OBJECT

private slots:
    void makesABackup_data() {
        const Columns<int, QByteArray, QString> row("flavour", "end", "settings");
        row("mirrored", int(BackupFlavour::Mirrored), "\t10\t5\t0\tBackup", "");
        row("snapshot", int(BackupFlavour::Snapshot), "\t10\t5\t0\tSnapshotbackup",
            "\n\nSettings:\nFull backup every 10 Backups.\nKeep Last 5Snapshots. (0 - keeps all snapshots)");
    }

    void makesABackup() {
        const auto [flavour, end, settings] = Fetched<int, QByteArray, QString>();
        Backing backing(static_cast<BackupFlavour>(flavour));
        QVERIFY(backing.RideToTheEnd());
        QVERIFY(backing.Ride(u"Create a Full Backup every==10 | Keep Last==0 | Keep Last=5"_s));
        const QString papers = backing.Folder(u"Papers"_s);
        QCOMPARE(backing.Find<QPlainTextEdit>()->toPlainText(),
                 u"Backup the Following Folders (and subfolders):\n%1\n%2\n\nExclude Following Folders (and "
                 "subfolders):\n%3\n\nBackup To:\n/Home/Backup"_s.arg(papers, backing.Folder(u"Photos"_s),
                                                                      backing.Folder(u"Papers/old"_s)) +
                     settings);
        QVERIFY(backing.Links().contains(
            u"<a>Backup task will start at 22:30:0 every day after  2025-1-31</a>"_s));
        QVERIFY(backing.Links().contains(u"<a>Backup All Files In Selected Folder (Click To Change)</a>"_s));
        QVERIFY(backing.Ride(u"Finish | busy | off Back | steps | finished"_s));
        QCOMPARE(backing.Records(), QByteArrayList{backing.Record("Mine", end)});
        QCOMPARE(backing.service->Tasks().size(), 1U);
    }

    void proposesAName() {
        Backing backing;
        QVERIFY(backing.RideToTheEnd());
        QVERIFY(backing.Ride(
            u"Back | Next | steps | Task Name==Mine | Task Name= | Finish | focus Task Name | says "
            "Task Name Can't Be Empty"_s));
        Backing other;
        other.RideToTheEnd();
        QVERIFY(other.Ride(u"Back | Next"_s)); // what was typed stays
        QVERIFY(other.Ride(u"Task Name==Mine"_s));
    }

    void saysThatANameIsTaken() {
        Backing backing;
        backing.service->PutTasks({MakeTask("{1}", "mine"), MakeTask("{2}", "Other[Encrypted]")});
        QVERIFY(backing.RideToTheEnd());
        const auto* name = qobject_cast<QLineEdit*>(backing.rider->Field(u"Task Name"_s));
        const QString taken = u"There is a task of this name already."_s;
        QCOMPARE(name->accessibleDescription(), taken);
        QVERIFY(backing.Ride(u"Task Name=Other"_s));
        QCOMPARE(name->accessibleDescription(), QString());
        backing.Find<QCheckBox>()->click();
        QCOMPARE(name->accessibleDescription(), taken);
    }

    void linksLeadOn() {
        Backing backing;
        QVERIFY(backing.RideToTheEnd());
        const auto links = backing.rider->Sheet()->CurrentPage()->findChildren<LinkLabel*>();
        const auto click = [&](const QString& words) {
            for (LinkLabel* link : links)
                if (link->Text().contains(words))
                    emit link->LinkClicked(0);
        };
        click(u"Email Notification"_s);
        auto* mail = backing.rider->Sheet()->findChild<CEmailDlg*>();
        QVERIFY(mail && mail->isVisible());
        mail->reject();
        click(u"Backup task will start"_s);
        QVERIFY(backing.Ride(
            u"page When to Backup | Next | steps | Task Name==Mine | Finish | steps | finished"_s));
    }

    void tellsOfATargetThatIsGone() {
        Backing backing;
        QVERIFY(backing.RideToTheEnd());
        QVERIFY(backing.Ride(u"Back | Back"_s));
        backing.service->SetVirtualDirectories({});
        QVERIFY(
            backing.Ride(u"Next | steps | page Where to Backup | says The virtual directory \"Home\" is not "
                         "mounted. | Path:=/ | Next | says Please select the folder to backup to."_s));
        backing.service->SetVirtualDirectories({{"Home", "{card}", 3, "{sp}"}});
        QVERIFY(backing.Ride(
            u"Path:=/Home/No | Next | steps | says \"/Home/No\" cannot be backed up to. The service "
            "does not list this folder (status 404). | Path:=/Home/Backup | Next | steps"_s));
        backing.service->SetVirtualDirectories({});
        QVERIFY(backing.Ride(u"Next | steps | page Confirm and Start | on Finish"_s));
        QCOMPARE(backing.Find<NoticeLine>()->Text(), u"The virtual directory \"Home\" is not mounted."_s);
        QVERIFY(
            backing.Ride(u"Finish | steps | says Failed to create backup task! The service refused it with "
                         "status 400. | Task Name==Mine"_s));
    }

    void failuresKeepAll_data() {
        const Columns<QString, QString> row("fault", "says");
        row("deny:500@backupex", "The service refused it with status 500.");
        row("refuse", "The service does not answer. Nothing was sent.");
    }

    void failuresKeepAll() {
        const auto [fault, says] = Fetched<QString, QString>();
        Backing backing;
        QVERIFY(backing.RideToTheEnd());
        QVERIFY(backing.service->SetFault(fault.toStdString()));
        QVERIFY(backing.Ride(
            u"Keep Last=3 | Finish | steps | says Failed to create backup task! %1 | on Finish | "
            "Task Name==Mine | Keep Last==3"_s.arg(says)));
        backing.service->ClearFaults();
        QVERIFY(backing.Ride(u"Finish | steps | finished"_s));
        QCOMPARE(backing.Records().last(), backing.Record("Mine", "\t10\t3\t0\tSnapshotbackup"));
    }

    void looksForATaskBeforeItIsSentAgain_data() {
        // What became of the first record, of which no answer came, and what is changed before the second
        // one.
        const Columns<bool, QString, bool, qsizetype> row("taken", "then", "again", "records");
        row("taken", true, "", false, 1);
        row("not taken", false, "", true, 2);
        row("taken, and another one is wanted", true, "Task Name=Other | ", true, 2);
        row("taken, and that will do", true, "Task Name=Other | ", false, 1);
    }

    void looksForATaskBeforeItIsSentAgain() {
        const auto [taken, then, again, records] = Fetched<bool, QString, bool, qsizetype>();
        Backing backing;
        backing.service->PutTask(MakeTask("{1}", "Mine"));
        QVERIFY(backing.RideToTheEnd());
        QVERIFY(backing.service->SetFault(taken ? "fin@backupex" : "garbage@backupex"));
        if (!taken)
            backing.service->SetAnswer("/schedule/backupex", devservice::Answer{200, "x"});
        QVERIFY(backing.Ride(u"Finish | steps | says "_s +
                             NobodyKnows.arg(taken ? u"its answer broke off in the middle."_s
                                                   : u"the connection ended before it answered."_s)));
        backing.service->ClearFaults();
        const QString found = u"The service did take the task: \"Mine\" stands in its list now."_s;
        if (taken && then.isEmpty())
            backing.prompts.ExpectMessage(found + u"\nNothing was sent again."_s);
        else if (taken)
            backing.prompts.ExpectQuestion(
                found + u"\nYou have changed it since. Do you really want to make another task?"_s, again);
        QVERIFY(backing.Ride(then + u"Finish | steps"_s));
        QVERIFY(backing.Ride(taken && !then.isEmpty() && !again ? u"says "_s + found : u"finished"_s));
        QCOMPARE(backing.Records().size(), records);
    }

    void asksWhereTheTasksCannotBeRead() {
        Backing backing;
        QVERIFY(backing.RideToTheEnd());
        QVERIFY(backing.service->SetFault("garbage@backupex"));
        QVERIFY(backing.Ride(u"Finish | steps"_s));
        backing.service->ClearFaults();
        QVERIFY(backing.service->SetFault("db-garbage"));
        const QString unread =
            u"It is still not known whether the service took the task \"Mine\", since the list "
            "of tasks cannot be read."_s;
        backing.prompts.ExpectQuestion(
            unread + u"\nDo you really want to send it again? There may be two then."_s, false);
        QVERIFY(backing.Ride(u"Finish | steps | says "_s + unread));
        QCOMPARE(backing.Records().size(), 1);
    }

    void encrypts_data() {
        // What the service keeps as the password, a fault, and whether it is asked for.
        const Columns<QByteArray, QString, bool, QString> row("password", "fault", "asks", "says");
        row("set", "old", "none", false, "");
        row("missing", "", "none", true, "");
        row("not read", "old", "deny:500@EncFolderKey", false,
            "The service does not tell whether there is an encryption password. Nothing was sent.");
    }

    void encrypts() {
        const auto [password, fault, asks, says] = Fetched<QByteArray, QString, bool, QString>();
        Backing backing;
        backing.service->SetSetting("EncFolderKey", password.toStdString());
        QVERIFY(backing.RideToTheEnd());
        backing.Find<QCheckBox>()->click();
        QVERIFY(backing.service->SetFault(fault.toStdString()));
        QVERIFY(backing.Ride(u"Finish | steps"_s));
        if (asks) {
            backing.rider->Sheet()->findChild<CSetKeyDlg*>()->reject();
            QVERIFY(backing.Ride(u"page Confirm and Start | on Finish | Finish | steps"_s));
            auto* dialog = backing.rider->Sheet()->findChildren<CSetKeyDlg*>().last();
            for (PasswordField* field : dialog->findChildren<PasswordField*>())
                field->SetText(u"new words"_s);
            QVERIFY(backing.service->SetFault("deny:500@ValueType"));
            dialog->accept();
            backing.reader.StepAll();
            QCOMPARE(dialog->findChild<NoticeLine*>()->Text(),
                     u"Unable to set encrypt key. The service did not take the password."_s);
            backing.service->ClearFaults();
            dialog->accept();
            backing.reader.StepAll();
            QCOMPARE(backing.service->Setting("EncFolderKey"), std::optional<std::string>("new words"));
        }
        if (!says.isEmpty())
            QVERIFY(backing.Ride(u"says "_s + says));
        QCOMPARE(backing.Records(),
                 says.isEmpty()
                     ? QByteArrayList{backing.Record("Mine[Encrypted]", "\t10\t0\t1\tSnapshotbackup")}
                     : QByteArrayList());
    }

    void aHangingServiceCanBeLeft() {
        Backing backing;
        QVERIFY(backing.RideToTheEnd());
        QVERIFY(backing.service->SetFault("hang@backupex"));
        QVERIFY(backing.Ride(u"Finish | busy | on Cancel | Cancel | steps"_s));
        QVERIFY(
            backing.Ride(u"says Failed to create backup task! It was called off before anything was sent. | "
                         "on Finish"_s));
    }
};

BTASK_TEST(FolderWizardTest);
#include "FolderWizardTest.moc"
