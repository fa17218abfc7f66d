// Labels: threads painting
#include "backup/FileTypeWizard.h"

#include "backup/FileTypePage.h"
#include "backup/PreviewPage.h"
#include "devservice/FileMonitor.h"
#include "list/RecordView.h"
#include "page/LinkLabel.h"
#include "support/AgentService.h"
#include "support/PageFixture.h"
#include "support/TableHand.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"
#include "wizard/CheckList.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;
using Monitor = devservice::FileMonitorSwitch::Kind;

namespace {

const QString Found =
    u"<a>%1 files found, System and hidden files are not included. (Click to refresh)</a>"_s;
const QString Changed = u"<a>Excluded File/Folder List Changed, Click to Refresh</a>"_s;

/// A machine with some files and their index, and a service with the directory "V".
struct Typed : PageFixture<> {
    explicit Typed(BackupFlavour flavour = BackupFlavour::Snapshot, bool indexed = true) {
        service->SetVirtualDirectories({{"V", "{C}"}});
        QDir(service.Home()).mkpath(u"drive/V/Pics"_s);
        for (const char* file : {"a/x.jpg", "a/y.jpg", "a/note.txt", "b/x.PNG", "b/deep/z.jpg"})
            Make(QString::fromLatin1(file));
        if (indexed) {
            devservice::Connection index(service->DatabaseFile(devservice::Database::FileIndex));
            devservice::IndexFiles(index, Folder().toStdU16String());
        }
        rider = std::make_unique<WizardRider>(new FileTypeWizard(console, flavour), reader);
    }

    QString Folder() const { return QDir(service.Home()).absoluteFilePath(u"files"_s); }
    void Make(const QString& name) {
        const QString file = Folder() + u'/' + name;
        QDir().mkpath(file.section(u'/', 0, -2));
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    }
    bool Ride(const QString& script) { return rider->Ride(script); }
    bool RideToThePreview() {
        return Ride(u"Types of:=Pictures | Add | Task name=My pictures | Next | steps | page Preview"_s);
    }
    CPreviewPage& Preview() { return *rider->Sheet()->findChild<CPreviewPage*>(); }
    QString Link() { return Preview().findChild<LinkLabel*>()->Text(); }
    void ClickLink() { emit Preview().findChild<LinkLabel*>()->LinkClicked(0); }
    TableHand Files() { return TableHand(*Preview().findChildren<RecordView*>().first()); }
    TableHand Excluded() { return TableHand(*Preview().findChildren<RecordView*>().last()); }
    void Click(const TableHand& table, int row, int column) {
        table.Click(row, column);
        QCoreApplication::sendPostedEvents();
        reader.StepAll();
    }
    /// What was sent, with noughts in place of the schedule's date and time.
    QString Record() {
        for (const devservice::ReceivedRequest& request : service->Requests()) {
            if (request.target != "/schedule/backupex")
                continue;
            QStringList fields = QString::fromStdString(request.body).remove(QChar(0)).split(u'\t');
            QStringList numbers = fields.value(5).split(u' ');
            std::fill_n(numbers.begin() + 1, 6, u"0"_s);
            fields[5] = numbers.join(u' ');
            return fields.join(u'\t');
        }
        return {};
    }

    std::unique_ptr<WizardRider> rider;
};

} // namespace

class FileTypeWizardTest : public QObject {
    Q_OBJECT

private slots:
    void asksForANameAndTypes() {
        Typed typed;
        typed.prompts.ExpectMessage(u"Please select at least one file type to backup."_s);
        QVERIFY(typed.Ride(u"page File Types | Next | page File Types"_s));
        typed.prompts.ExpectMessage(u"Task Name Can't Be Empty"_s);
        QVERIFY(
            typed.Ride(u"Types of:=Music | Add | Types of:=Pictures | Add | Add | Task name= | Next | focus "
                       "Task name | Task name=x"_s));
        auto* types = typed.rider->Sheet()->findChild<CheckList*>();
        QCOMPARE(types->topLevelItemCount(), 14 + 8); // none twice
        for (int row = 0; row < types->topLevelItemCount(); ++row)
            types->SetTicked(row, row == 21 || row == 3);
        QVERIFY(typed.Ride(u"Next | steps | page Preview | Back | says Chosen: .m3u, .wmf"_s));

        FileTypeWizard documents(typed.console, BackupFlavour::Mirrored, FileCategory::Documents);
        QCOMPARE(documents.findChild<CheckList*>()->TickedRows().size(), size_t(18));
        QVERIFY(!documents.findChild<CFileTypePage*>()->findChild<QComboBox*>()->isEnabled());
    }

    void sendsWhatWasChosen_data() {
        const Columns<BackupFlavour, QString, QString> row("flavour", "schedule", "type");
        row("mirrored", BackupFlavour::Mirrored, "0 0 0 0 0 0 0 1 1 1 1 1 1 1 0\n", "Backup");
        row("snapshot", BackupFlavour::Snapshot, "1 0 0 0 0 0 0 1 1 1 1 1 1 1 1\n", "Snapshotbackup");
    }

    void sendsWhatWasChosen() {
        const auto [flavour, schedule, type] = Fetched<BackupFlavour, QString, QString>();
        Typed typed(flavour);
        QVERIFY(typed.RideToThePreview());
        QCOMPARE(typed.Link(), Found.arg(4));
        QCOMPARE(typed.Files().Column(0), (QStringList{u"x.jpg"_s, u"y.jpg"_s, u"z.jpg"_s, u"x.PNG"_s}));
        typed.Click(typed.Files(), 1, 2); // the file
        typed.Click(typed.Files(), 2, 3); // the folder of another
        typed.Click(typed.Files(), 2, 3); // which is left out already
        QCOMPARE(typed.Link(), Changed);
        QVERIFY(
            typed.Ride(u"Next | steps | page Where to Backup | Path:=/V/Pics | Next | steps | page When to "
                       "Backup | Next | steps | page Confirm | Task Name==My pictures"_s));
        const QString folder = typed.Folder();
        const QString types = u".bmp, .gif, .jpg, .odg, .png, .psd, .tif, .wmf"_s;
        QCOMPARE(typed.rider->Sheet()->CurrentPage()->findChild<QPlainTextEdit*>()->toPlainText().replace(
                     u'\\', u'/'),
                 u"Backup Name:\nMy pictures\n\nBackup Following File Types:\n"_s + types +
                     "\n\nExclude Following Folders (and subfolders):\n"_L1 + folder + "/a/y.jpg\n"_L1 +
                     folder + "/b/deep\n\n\nBackup To:\n/V/Pics"_L1);
        QVERIFY(typed.Ride(u"Finish | steps | finished"_s));
        QCOMPARE(typed.Record().replace(u'\\', u'/'),
                 u"My pictures\t@\t/V/Pics\t"_s + folder + "/a/y.jpg\n"_L1 + folder + "/b/deep\t"_L1 + types +
                     "\n*\n*\nNoSys\nNoHidden\t"_L1 + schedule + "\t10\t0\t0\t"_L1 + type);
        QCOMPARE(typed.service->Tasks().size(), size_t(1));
    }

    void oneNameOnBothPages() {
        Typed typed;
        QVERIFY(typed.RideToThePreview());
        QVERIFY(typed.Ride(
            u"Next | steps | Path:=/V | Next | steps | Next | steps | Task Name=Changed | Back | Back "
            "| Back | Back | Task name==Changed | Task name=Again | Next | steps | Next | steps | Next "
            "| steps | Next | steps | Task Name==Again | Finish | steps | finished"_s));
        QVERIFY(typed.Record().startsWith("Again\t@\t/V\t*\t"_L1));
    }

    void leavesOutWhatIsExcludedWhenItCountsAgain() {
        Typed typed;
        const AgentService agent("BrenFileMonSvc");
        typed.service->SetFileMonitor({Monitor::Running});
        QVERIFY(typed.RideToThePreview());
        typed.Click(typed.Files(), 0, 3);
        QCOMPARE(typed.Files()->Rows().rowCount(), 4);
        typed.Make(u"b/new.gif"_s);
        typed.prompts.ExpectOperation(u"Indexing files..."_s);
        typed.ClickLink();
        QTRY_COMPARE((typed.reader.StepAll(), typed.Link()), Found.arg(3));
        QCOMPARE(typed.Files().Column(0), (QStringList{u"new.gif"_s, u"z.jpg"_s, u"x.PNG"_s}));

        // What is excluded no more comes back.
        typed.Click(typed.Excluded(), 0, 1);
        QCOMPARE(typed.Excluded()->Rows().rowCount(), 0);
        typed.prompts.ExpectOperation(u"Indexing files..."_s);
        typed.ClickLink();
        QTRY_COMPARE((typed.reader.StepAll(), typed.Link()), Found.arg(5));
    }

    void countsAgainWhatItGaveUp() {
        Typed typed;
        QVERIFY(typed.Ride(u"Types of:=Pictures | Add | Next"_s));
        QCOMPARE(typed.Link(), u"Finding 0 files ..."_s);
        QVERIFY(typed.Ride(u"Next | steps | page Where to Backup | Back | steps | page Preview"_s));
        QCOMPARE(typed.Link(), Found.arg(4));
    }

    void saysHowToGetAnIndex() {
        Typed typed(BackupFlavour::Snapshot, false);
        typed.service->SetFault(devservice::DatabaseFault::Missing, devservice::Database::FileIndex);
        QVERIFY(typed.RideToThePreview());
        QCOMPARE(typed.Link(), u"<a>The file index could not be read. (Click to build it)</a>"_s);
        typed.service->ClearFaults();
        // The monitor waits for the word, which needs a question.
        const AgentService agent("BrenFileMonSvc");
        typed.service->SetFileMonitor({Monitor::Running});
        typed.prompts.ExpectQuestion(
            u"The file index has not been built yet. It is needed to find files by their "
            "type. Do you want to build it now? This may take a few minutes."_s,
            true);
        typed.prompts.ExpectOperation(u"Indexing files..."_s);
        typed.ClickLink();
        QTRY_COMPARE((typed.reader.StepAll(), typed.Link()), Found.arg(4));
    }
};

BTASK_TEST(FileTypeWizardTest);
#include "FileTypeWizardTest.moc"
