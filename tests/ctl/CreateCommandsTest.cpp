// Labels: threads
#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// The words stand between bars; the start of every schedule is given, so that nothing hangs on the clock.
QStringList Words(const QString& line) {
    return u"backup|create|"_s.append(line).append(u"|--date|2025-1-31|--time|22:30:0"_s).split(u'|');
}

constexpr char Docs[] = "Docs|--source|/home/mara/Documents|--to|/Home/Backup";
constexpr char DocsRecord[] = "Docs\t/home/mara/Documents\t/Home/"
                              "Backup\t*\t*\n.tmp\nthumbs.db;desktop.ini;picasa.ini;\nNoSys\nNoHidden\t"
                              "0 2025 1 31 22 30 0 1 1 1 1 1 1 1 0\n\t10\t0\t0\tBackup";

/// Bodies of the requests that make tasks, without the zero that ends each.
QByteArrayList Records(ServiceFixture& service) {
    QByteArrayList records;
    for (const devservice::ReceivedRequest& request : service.Service().Requests())
        if (request.target == "/schedule/backupex")
            records += QByteArray::fromStdString(request.body).chopped(1);
    return records;
}

} // namespace

/// Backups made from the command line.
class CreateCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void writesRecords_data() {
        const Columns<QString, QByteArray> row("line", "record");
        const QString docs = QString::fromLatin1(Docs);
        row("as it comes", docs, DocsRecord);
        row("snapshot, all given",
            "A\u00e4 b|--snapshot|--source|C:\\Users\\mara|--source|D:\\|--exclude|C:\\Users\\mara\\Temp|"
            "--exclude|D:\\x y|--to|/V/\u00fc|--include-types|.TXT,.doc .txt  ,.d|--exclude-types|.bak, .o|"
            "--exclude-files||--system|--hidden|--weekly|sun,FRI|--box|off|--full-every|7|--keep|30|--"
            "encrypt",
            "A\u00e4 b[Encrypted]\tC:\\Users\\mara\nD:\\\t/V/\u00fc\tC:\\Users\\mara\\Temp\nD:\\x y\t"
            ".TXT, .doc, .d\n.bak, .o\n*\nSys\nHidden\t2 2025 1 31 22 30 0 1 0 0 0 0 1 0 0\n\t7\t30\t1\t"
            "Snapshotbackup");
        row("snapshots run daily and at once", docs + u"|--snapshot|--include-types|"_s,
            "Docs\t/home/mara/Documents\t/Home/Backup\t*\t*\n.tmp\nthumbs.db;desktop.ini;picasa.ini;\nNoSys\n"
            "NoHidden\t1 2025 1 31 22 30 0 1 1 1 1 1 1 1 1\n\t10\t0\t0\tSnapshotbackup");
        row("a mirror without its first upload", docs + u"|--daily|--box|on|--exclude-types|"_s,
            "Docs\t/home/mara/Documents\t/Home/Backup\t*\t*\n*\nthumbs.db;desktop.ini;picasa.ini;\nNoSys\n"
            "NoHidden\t1 2025 1 31 22 30 0 1 1 1 1 1 1 1 1\n\t10\t0\t0\tBackup");
        row("a name's tabs and line feeds", u"\tA\nB\t|--source|/\"'\u200f|--to|x"_s,
            " A B \t/\"'\u200f\tx\t*\t*\n.tmp\nthumbs.db;desktop.ini;picasa.ini;\nNoSys\nNoHidden\t"
            "0 2025 1 31 22 30 0 1 1 1 1 1 1 1 0\n\t10\t0\t0\tBackup");
    }

    void writesRecords() {
        const auto [line, record] = Fetched<QString, QByteArray>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"Home", "{c}"}, {"V", "{c}"}});
        service->SetSetting("EncFolderKey", "k");
        const Run dry = Btaskctl(Words(line) + QStringList(u"--dry-run"_s));
        QCOMPARE(dry.error, QByteArray());
        QCOMPARE(dry.out, record);
        QCOMPARE(Records(service), QByteArrayList());
        const Run run = Btaskctl(Words(line));
        QCOMPARE(run.error,
                 QByteArray(line.endsWith("|x"_L1) ? "The service refused it with status 400.\n" : ""));
        QCOMPARE(Records(service), QByteArrayList{record});
    }

    void refuses_data() {
        const Columns<QString, QByteArray> row("line", "error");
        const QString docs = QString::fromLatin1(Docs);
        const auto source = [](const QString& folder) { return u"N|--to|/Home|--source|"_s + folder; };
        const auto holds = [](const QByteArray& what) {
            return "\"a b\" holds " + what + ", which cannot be carried to the service.\n";
        };
        row("tab", source(u"a\tb"_s), holds("a tab (U+0009)"));
        row("line feed", source(u"x|--exclude|a\nb"_s), holds("a line feed (U+000A)"));
        row("carriage return", source(u"x|--exclude-files|a\rb"_s), holds("a carriage return (U+000D)"));
        row("zero", source(u"a"_s + QChar(0) + u'b'), holds("a zero character (U+0000)"));
        row("escape", source(QString(u"x|--include-types|a%1b"_s).arg(QChar(0x1b))),
            holds("a control character (U+001B)"));
        row("no Unicode", source(u"a\ufffd"_s),
            "\"a\ufffd\" holds what is no Unicode text (U+FFFD), which cannot be carried to the service.\n");
        row("half a pair", source(QString(QChar(0xd800))),
            "\"?\" holds what is no Unicode text, which cannot be carried to the service.\n");
        row("file types", source(u"@home"_s),
            "\"@home\" cannot be the first folder: the service takes the \"@\" for a backup of file "
            "types.\n");
        row("nothing excluded", docs + u"|--exclude|*"_s,
            "\"*\" cannot be left out: it says that nothing is.\n");
        row("empty folder", source({}), "A folder without a name can be neither backed up nor left out.\n");
        row("root", u"N|--source|x|--to|//"_s, "Please select the folder to backup to.\n");
        row("no name", u"|--source|x|--to|/Home"_s, "Task Name Can't Be Empty\n");
        row("interval", docs + u"|--full-every|0"_s, "There is a full backup every 1 to 999999 backups.\n");
        row("number", docs + u"|--keep|-1"_s, "\"-1\": --keep takes a number.\n");
        row("two schedules", docs + u"|--daily|--weekly|sun"_s,
            "At most one is given of these: --daily, --weekly.\n");
        row("weekdays", docs + u"|--weekly|so"_s,
            "\"so\": --weekly takes words of sun, mon, tue, wed, thu, fri, sat with commas between them.\n");
        row("twice", docs + u"|--to|/V"_s, "--to is given twice.\n");
        row("no source", u"N|--to|/Home"_s, "Exactly one is given of these: --source, --types.\n");
    }

    void refuses() {
        const auto [line, error] = Fetched<QString, QByteArray>();
        ServiceFixture service;
        const Run run = Btaskctl(Words(line));
        QCOMPARE(run.exit, CtlExit::Usage);
        QCOMPARE(run.error, error);
        QCOMPARE(service.RequestLines(), QStringList());
    }

    void tellsWhatBecameOfIt_data() {
        // "stop" is no fault of an answer: the service is not there.
        const Columns<QString, int, QByteArray, qsizetype> row("fault", "exit", "error", "sent");
        const QByteArray unknown = "It is not known whether the service took the task: %1 See \"btaskctl "
                                   "backups\" before you send it again.\n";
        const auto because = [unknown](const char* why) { return QByteArray(unknown).replace("%1", why); };
        row("stop", 3, "The service does not answer. Nothing was sent.\n", 0);
        row("deny:500@backupex", 1, "The service refused it with status 500.\n", 1);
        row("empty", 1, "The service answered without a word, which means that it did not take it.\n", 1);
        row("fin@backupex", 1, because("its answer broke off in the middle."), 1);
        row("rst@backupex", 1, because("its answer broke off in the middle."), 1);
        row("garbage@backupex", 3, because("the connection ended before it answered."), 1);
    }

    void tellsWhatBecameOfIt() {
        const auto [fault, exit, error, sent] = Fetched<QString, int, QByteArray, qsizetype>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"Home", "{c}"}});
        if (fault == "stop"_L1)
            service->Stop();
        else if (fault == "empty"_L1)
            service->SetAnswer("/schedule/backupex", devservice::Answer{200, ""});
        else
            QVERIFY(service->SetFault(fault.toStdString()));
        const Run run = Btaskctl(Words(QString::fromLatin1(Docs)));
        QCOMPARE(run.error, error);
        QCOMPARE(int(run.exit), exit);
        QCOMPARE(Records(service).size(), sent);
    }

    void encryptsOnlyWithAPassword_data() {
        // What the service answers when it is asked for the password.
        const Columns<QString, int, QByteArray> row("fault", "exit", "error");
        row("none", 1, "Encryption requires a password, and none is set. Nothing was sent.\n");
        row("deny:500@EncFolderKey", 1, "The service refused: it answered with status 500.\n");
        row("fin@EncFolderKey", 1, "The answer broke off in the middle.\n");
    }

    void encryptsOnlyWithAPassword() {
        const auto [fault, exit, error] = Fetched<QString, int, QByteArray>();
        ServiceFixture service;
        if (fault != "none"_L1)
            service->SetSetting("EncFolderKey", "a secret of some length");
        QVERIFY(service->SetFault(fault.toStdString()));
        const Run run = Btaskctl(Words(QString::fromLatin1(Docs)) + QStringList(u"--encrypt"_s));
        QCOMPARE(run.error, error);
        QCOMPARE(int(run.exit), exit);
        QCOMPARE(Records(service), QByteArrayList());
    }
};

BTASK_TEST(CreateCommandsTest);
#include "CreateCommandsTest.moc"
