#include "backup/RestoreTaskWizard.h"

#include "backup/OtherSnapshotsDlg.h"
#include "page/Console.h"
#include "page/NoticeLine.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"
#include "wizard/CheckTreeView.h"

#include <QDir>
#include <QFile>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Container = u"/V/T/091306a3-3cb9-4778-b990-6efd84ed4bb5"_s;
const QString Full = u"2025-11-3-1-0-0"_s;
const QString Later = u"2025-11-4-1-0-0_1"_s;

const QString SetFolder = Container + "/ABC"_L1;

/// A storage with a backup "Work" and its two snapshots, and another set without an info file.
struct Wizard {
    explicit Wizard(bool fromSnapshot = false, const std::function<void(Wizard&)>& before = {}) {
        parts.service->SetVirtualDirectories({{"V", "{C}"}});
        devservice::Task task = devservice::MakeTask("{ABC}", "Work files", "Snapshotbackup");
        task.description = (Machine() + "/Work\t/V/T\t*"_L1).toStdString();
        parts.service->PutTask(task);
        Put(Full + "/Work/letters/bank.odt"_L1, "123");
        Put(Full + "/Work/letters/deep/a.txt"_L1, "12");
        Put(Full + "/Work/notes 10.txt"_L1, "1");
        Put(Full + "/Work/notes 2.txt"_L1, "1");
        Put(Later + "/Work/notes 2.txt"_L1, "12345");
        PutIn(u"ABC"_s, u"backupset.info"_s, "<BackupType>Folder</BackupType>");
        PutIn(u"DEF"_s, u"2024-1-1-1-1-1/SqlServerWriter({1})/Store/x.dat"_s, "1");
        PutIn(u"DEF"_s, u"backupset.info"_s, "<BackupType>Other</BackupType>");
        if (before)
            before(*this);
        std::optional<RestoreStart> start;
        if (fromSnapshot)
            start = RestoreStart{
                {{u"/V/T"_s, u"ABC"_s}, u"Work files"_s, {Machine() + "/Work"_L1}, SetType::Folder, {}},
                *SnapshotOf(Full)};
        rider.emplace(new CRestoreTaskWizard(parts.console, start), parts.reader);
        parts.reader.StepAll();
    }

    void PutIn(const QString& set, const QString& path, const QByteArray& content) {
        const QString file = parts.service.Home() + "/drive"_L1 + Container + u'/' + set + u'/' + path;
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly) && out.write(content) == content.size());
    }
    void Put(const QString& path, const QByteArray& content) { PutIn(u"ABC"_s, path, content); }
    QString Machine() const { return parts.service.Home() + "/machine of mine"_L1; }

    CheckTreeView& View() const { return *rider->Sheet()->CurrentPage()->findChild<CheckTreeView*>(); }
    CheckTreeModel& Tree() const { return View().Tree(); }
    void Tick(const QStringList& path, bool ticked = true) {
        Tree().SetTicked(path, ticked);
        parts.reader.StepAll();
    }
    void Choose(const QStringList& path) {
        View().GoTo(*Tree().Levels().Find(path));
        parts.reader.StepAll();
    }
    void Open(const QStringList& path) {
        View().expand(Tree().IndexOf(*Tree().Levels().Find(path)));
        parts.reader.StepAll();
    }
    QStringList Names(const QStringList& path) const {
        QStringList names;
        for (const auto& child : Tree().Levels().Find(path)->children)
            names += child->entry.name;
        return names;
    }
    bool Ride(const QString& script) { return rider->Ride(script); }
    QString Words() const {
        QStringList words;
        for (const QLabel* label : rider->Sheet()->CurrentPage()->findChildren<QLabel*>())
            if (label->isVisible())
                words += label->text();
        return words.join(u'\n');
    }
    QString Listed(const QString& filter) const {
        return QString::number(parts.service.RequestLines().filter(filter).size());
    }
    QByteArray Record() const {
        const auto requests = const_cast<Wizard*>(this)->parts.service->Requests();
        QByteArray record;
        for (const auto& request : requests)
            if (request.target == "/schedule/restoreapp")
                record += QByteArray::fromStdString(request.body);
        return record;
    }

    PageFixture<> parts;
    std::optional<WizardRider> rider;
};

} // namespace

class RestoreWizardTest : public QObject {
    Q_OBJECT

private slots:
    void restoresFromAStorage() {
        Wizard wizard;
        QVERIFY(wizard.Ride(
            u"page Where to Restore From | Next | says You need to select a cloud storage to continue."_s));
        wizard.Tick({u"V"_s});
        QVERIFY(wizard.Ride(
            u"says /V Found available backup data. Please click 'Next' to continue. | Next | steps | "
            "page What To Restore | Next | says You need to select one snapshot to restore."_s));
        QCOMPARE(wizard.Names({}), (QStringList{u"Work files"_s, u"DEF"_s}));
        QCOMPARE(wizard.Names({SetFolder}),
                 (QStringList{u"Snapshot created at: 2025-11-04 01:00:00 (Incremental)"_s,
                              u"Snapshot created at: 2025-11-03 01:00:00 (Full)"_s}));
        wizard.Choose({SetFolder, Full});
        QVERIFY(
            wizard.Ride(u"Next | steps | page Refine Restore Scope | Next | says Please select at least one "
                        "component to restore!"_s));
        QCOMPARE(wizard.Names({u"Work"_s}), (QStringList{u"letters"_s, u"notes 2.txt"_s, u"notes 10.txt"_s}));
        wizard.Tick({u"Work"_s});
        wizard.Tick({u"Work"_s, u"notes 2.txt"_s}, false);
        QVERIFY(
            wizard.Ride(u"Next | steps | page Confirm and Start | Task Name==Restore [Work] From [/V] | "
                        "If a file is there==Always Overwrite Existing File | Finish | steps | finished"_s));
        QCOMPARE(wizard.Record(), ("Restore [Work] From [/V]\t"_L1 + SetFolder + u'/' + Full +
                                   "\tWork\tWork/notes 2.txt\t0\t0\t*\t"_L1)
                                          .toUtf8() +
                                      '\0');
    }

    void looksInTheFolderAndItsChildrenAlone() {
        Wizard wizard;
        QDir drive(wizard.parts.service.Home() + "/drive/V"_L1);
        QVERIFY(drive.mkpath(u"deep"_s) && drive.rename(u"T"_s, u"deep/T"_s));
        wizard.Tick({u"V"_s});
        QVERIFY(wizard.Ride(
            u"Next | says Didn't find any per-application backup information from selected cloud storage."_s));
    }

    void showsWritersByTheirNames() {
        Wizard wizard;
        wizard.Tick({u"V"_s});
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        wizard.Choose({Container + "/DEF"_L1, u"2024-1-1-1-1-1"_s});
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        QCOMPARE(wizard.Names({}), QStringList(u"SQL Server"_s));
        wizard.Tick({u"SqlServerWriter({1})"_s, u"Store"_s});
        QVERIFY(wizard.Ride(
            u"Next | steps | Task Name==Restore [SQL Server/Store] From [/V] | Finish | steps | finished"_s));
        QVERIFY(wizard.Record().contains("\tSqlServerWriter({1})/Store\t*\t"));
    }

    void keepsWhatIsOpenInAnotherSnapshot() {
        Wizard wizard(true);
        QVERIFY(wizard.Ride(
            u"page What To Restore | says Work files Snapshot created at: 2025-11-03 01:00:00 (Full) | "
            "Next | steps"_s));
        // A single folder has opened by itself.
        QCOMPARE(wizard.Names({u"Work"_s}).size(), 3);
        wizard.Open({u"Work"_s, u"letters"_s});
        wizard.Choose({u"Work"_s, u"letters"_s, u"bank.odt"_s});
        QVERIFY(wizard.Ride(u"Back"_s));
        wizard.Choose({SetFolder, Later});
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        QCOMPARE(wizard.rider->Sheet()->CurrentPage()->findChild<NoticeLine*>()->Text(),
                 u"\"Work/letters/bank.odt\" is not in this snapshot. What is shown is \"Work\"."_s);
        const QString listed = wizard.Listed(Full + "/Work"_L1);
        QVERIFY(wizard.Ride(u"Back"_s));
        wizard.Choose({SetFolder, Full});
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        QCOMPARE(wizard.Names({u"Work"_s}).size(), 3);
        QCOMPARE(wizard.Listed(Full + "/Work"_L1), listed); // what was listed once is not asked for again
    }

    void findsBehindWhatIsListed() {
        Wizard wizard(true);
        QVERIFY(wizard.Ride(u"Next | steps | Find in the snapshot=a.txt"_s));
        const auto found = [&] {
            wizard.parts.reader.StepAll();
            return wizard.Tree().Levels().Find({u"Work"_s, u"letters"_s, u"deep"_s, u"a.txt"_s}) != nullptr;
        };
        QTRY_VERIFY(found());
        QTRY_COMPARE(TreeLevels::PathOf(wizard.Tree().NodeAt(wizard.View().currentIndex())).value(3),
                     u"a.txt"_s);
    }

    void showsAFileInTheOtherSnapshots() {
        const QString last = u"2025-11-5-1-0-0_2"_s;
        Wizard wizard(true, [&last](Wizard& made) {
            made.Put(last + "/Work/notes 2.txt"_L1, "12345");
            for (const QString& name : {Later, last}) {
                QFile file(made.parts.service.Home() + "/drive"_L1 + SetFolder + u'/' + name +
                           "/Work/notes 2.txt"_L1);
                QVERIFY(file.open(QIODevice::Append) &&
                        file.setFileTime(QDateTime(QDate(2025, 11, 1), QTime(1, 2)),
                                         QFileDevice::FileModificationTime));
            }
        });
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        wizard.Tick({u"Work"_s, u"notes 2.txt"_s});
        wizard.Choose({u"Work"_s, u"notes 2.txt"_s});
        QVERIFY(wizard.Ride(u"In other snapshots..."_s));
        wizard.parts.reader.StepAll();
        auto* dialog = wizard.rider->Sheet()->findChild<OtherSnapshotsDlg*>();
        QVERIFY(dialog);
        auto* list = dialog->findChild<QTreeWidget*>();
        QStringList rows;
        for (int row = 0; row < list->topLevelItemCount(); ++row)
            rows += list->topLevelItem(row)->text(0) + u'|' + list->topLevelItem(row)->text(1);
        QCOMPARE(rows, (QStringList{u"2025-11-05 01:00:00 and 1 before|0.005 KB"_s,
                                    u"2025-11-03 01:00:00|0.001 KB"_s}));
        list->setCurrentItem(list->topLevelItem(0));
        dialog->accept();
        wizard.parts.reader.StepAll();
        QVERIFY(wizard.Ride(u"Next | steps | Finish | steps | finished"_s));
        QVERIFY(wizard.Record().contains(('/'_L1 + last + "\tWork/notes 2.txt\t"_L1).toUtf8()));
    }

    void saysWhatWillBeDone_data() {
        const Columns<QString, QString, QString> row("what", "location", "says");
        row("its own place", {},
            "Work/notes 2.txt -> OWN/Work/notes 2.txt\n1 of the 1 listed files stand there already; "
            "they will be overwritten.");
        row("another one", "HOME/r",
            "Work/notes 2.txt -> HOME/r/Work/notes 2.txt\n0 of the 1 listed files stand there already.");
    }
    void saysWhatWillBeDone() {
        auto [what, location, says] = Fetched<QString, QString, QString>();
        Wizard wizard(true);
        const QString own = wizard.Machine();
        QVERIFY(QDir().mkpath(own + "/Work"_L1));
        QVERIFY(QFile(own + "/Work/notes 2.txt"_L1).open(QIODevice::WriteOnly));
        const QString home = wizard.parts.service.Home();
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        wizard.Tick({u"Work"_s, u"notes 2.txt"_s});
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        if (!location.isEmpty()) {
            for (auto* box : wizard.rider->Sheet()->CurrentPage()->findChildren<QAbstractButton*>())
                if (box->isCheckable())
                    box->click();
            QVERIFY(
                wizard.Ride(u"Location To Restore="_s + location.replace(u"HOME"_s, home) + u" | steps"_s));
        }
        QVERIFY2(wizard.Words().contains(says.replace(u"OWN"_s, own).replace(u"HOME"_s, home)),
                 qPrintable(wizard.Words()));
    }

    void refusesALocation_data() {
        const Columns<QString, QString, bool> row("location", "why", "box");
        row("", "You chose to restore to another location, but the location is empty.", true);
        row("here", "The location has to be a whole path, as in \"/home/me/restored\" or \"D:\\Restored\".",
            true);
        row("HOME/file/x", "\"HOME/file\" is a file, in which nothing can be restored.", false);
    }
    void refusesALocation() {
        auto [location, why, box] = Fetched<QString, QString, bool>();
        Wizard wizard(true);
        const QString home = wizard.parts.service.Home();
        QVERIFY(QFile(home + "/file"_L1).open(QIODevice::WriteOnly));
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        wizard.Tick({u"Work"_s});
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        for (auto* button : wizard.rider->Sheet()->CurrentPage()->findChildren<QAbstractButton*>())
            if (button->isCheckable())
                button->click();
        why.replace(u"HOME"_s, home);
        if (box)
            wizard.parts.prompts.ExpectMessage(why);
        QVERIFY(wizard.Ride(u"Location To Restore="_s + location.replace(u"HOME"_s, home) +
                            u" | Finish | steps | says "_s + why));
        QVERIFY(wizard.Record().isEmpty());
    }

    void tellsThatNoTaskWasCreated() {
        Wizard wizard(true);
        QVERIFY(wizard.Ride(u"Next | steps"_s));
        wizard.Tick({u"Work"_s});
        QVERIFY(wizard.parts.service->SetFault("deny:500@/schedule"));
        QVERIFY(wizard.Ride(u"Next | steps | Task Name=Mine | Finish | steps | page Confirm and Start | says "
                            u"Failed to create "
                            "restore task! The service refused it with status 500. | Task Name==Mine"_s));
        wizard.parts.service->ClearFaults();
        QVERIFY(wizard.Ride(u"Finish | steps | finished"_s));
    }
};

BTASK_TEST(RestoreWizardTest);
#include "RestoreWizardTest.moc"
