#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

/// Backups of applications and of file types from the command line.
class ApplicationCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void listsWriters() {
        ServiceFixture service;
        const QJsonArray rows = Json({u"writers"_s});
        QCOMPARE(rows.size(), 15); // of 22, and seven that no backup takes
        QCOMPARE(
            QJsonDocument(rows[1].toObject()).toJson(QJsonDocument::Compact),
            "{\"components\":[\"LEDGER/master\",\"LEDGER/model\",\"LEDGER/orders\",\"LEDGER/stock 2025\"],"
            "\"key\":\"SqlServerWriter({a65faa63-5ea8-4ebc-9dbd-a0c4db26912a})\",\"name\":\"SQL Server\"}");
        service->SetFault("fin@/backupsvr/writers");
        const Run cut = Btaskctl({u"writers"_s, u"--json"_s});
        QCOMPARE(cut.exit, CtlExit::Refused);
        QCOMPARE(cut.out, "[]\n");
        QCOMPARE(cut.error, "The service's answer broke off in the middle.\n");
        service->SetFault("refuse");
        QCOMPARE(Btaskctl({u"writers"_s}).exit, CtlExit::Unreachable);
    }

    void makesTheWizardsRecords_data() {
        const Columns<QString, QString> row("line", "record");
        row("applications",
            "backup|apps|Night\tdata|--select|A({1})|--select|B({2})/x|--exclude|A({1})/y|--to|/V/"
            "Apps|--date|"
            "2025-3-4|--time|1:02:3",
            "Night data\tA({1})\nB({2})/x\t/V/Apps\tA({1})/y\t10\t0\t1 2025 3 4 1 2 3 1 1 1 1 1 1 1 "
            "1\n\t0\t");
        row("applications, encrypted, on Sundays",
            "backup|apps|N|--select|A({1})|--to|/"
            "V|--weekly|sun|--date|2025-3-4|--time|1:2:3|--box|off|--full-every|"
            "2|--keep|7|--encrypt",
            "N[Encrypted]\tA({1})\t/V\t*\t2\t7\t2 2025 3 4 1 2 3 1 0 0 0 0 0 0 0\n\t1\t");
        row("types",
            "backup|create|T|--types|.jpg,.png  .JPG|--exclude|/home/a "
            "b|--exclude|/home/c.jpg|--to|/V/P|--date|"
            "2025-3-4|--time|1:2:3",
            "T\t@\t/V/P\t/home/a b\n/home/c.jpg\t.jpg, .png\n*\n*\nNoSys\nNoHidden\t0 2025 3 4 1 2 3 1 1 1 1 "
            "1 1 1 "
            "0\n\t10\t0\t0\tBackup");
        row("all types, snapshots",
            "backup|create|T|--types||--snapshot|--to|/V|--date|2025-3-4|--time|1:2:3",
            "T\t@\t/V\t*\t*\n*\n*\nNoSys\nNoHidden\t1 2025 3 4 1 2 3 1 1 1 1 1 1 1 "
            "1\n\t10\t0\t0\tSnapshotbackup");
    }

    void makesTheWizardsRecords() {
        const auto [line, record] = Fetched<QString, QString>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"V", "{C}"}});
        const Run dry = Btaskctl(line.split(u'|') + QStringList(u"--dry-run"_s));
        QCOMPARE(QString::fromUtf8(dry.out), record);
        QCOMPARE(dry.exit, CtlExit::Done);
        QCOMPARE(service.RequestLines(), QStringList());
    }

    void sendsThem() {
        ServiceFixture service;
        service->SetVirtualDirectories({{"V", "{C}"}});
        const QString key = u"A({11111111-2222-4333-8444-555555555551})"_s;
        const QStringList apps{u"backup"_s, u"apps"_s, u"Data"_s, u"--select"_s, key, u"--to"_s, u"/V"_s};
        QCOMPARE(Btaskctl(apps).error, "");
        QCOMPARE(service.RequestLines(), QStringList(u"GET /schedule/advbackup"_s));
        QCOMPARE(service->Tasks().front().type, "AdvBackup");
        QCOMPARE(
            Btaskctl({u"backup"_s, u"create"_s, u"T"_s, u"--types"_s, u".jpg"_s, u"--to"_s, u"/V"_s}).error,
            "");
        QCOMPARE(service->Tasks().size(), size_t(2));

        service->ForgetRequests();
        const Run keyless = Btaskctl(apps + QStringList(u"--encrypt"_s));
        QCOMPARE(keyless.exit, CtlExit::Refused);
        QCOMPARE(service.RequestLines(), QStringList(u"GET /settings/EncFolderKey"_s));
        service->SetAnswer("/schedule/advbackup", devservice::Answer{200, {}});
        QCOMPARE(Btaskctl(apps).exit, CtlExit::Refused);
        QCOMPARE(service->Tasks().size(), size_t(2));
    }

    void refusesWhatExcludesEachOther_data() {
        const Columns<QString> row("line");
        row("backup|create|T|--types|.jpg|--source|/a|--to|/V");
        row("backup|create|T|--to|/V");
        row("backup|create|T|--types|.jpg|--to|/V|--hidden");
        row("backup|create|T|--types|.jpg|--to|/V|--include-types|.png");
        row("backup|create|T|--types|.j\tpg|--to|/V");
        row("backup|apps|T|--to|/V");
        row("backup|apps|T|--select|A({1})");
        row("backup|apps|T|--select|A({1})\n|--to|/V");
        row("backup|apps|T|--select|A({1})|--to|/V|--daily|--weekly|sun");
    }

    void refusesWhatExcludesEachOther() {
        const auto [line] = Fetched<QString>();
        ServiceFixture service;
        QCOMPARE(Btaskctl(line.split(u'|')).exit, CtlExit::Usage);
        QCOMPARE(service.RequestLines(), QStringList());
    }
};

BTASK_TEST(ApplicationCommandsTest);
#include "ApplicationCommandsTest.moc"
