#include "taskman/TaskClass.h"
#include "support/TestMain.h"

class TaskClassTest : public QObject {
    Q_OBJECT

private slots:
    void classifiesAndNames_data() {
        const Columns<QString, QString, bool, bool, QString, QString> row("type", "name", "system", "backup",
                                                                          "shown", "onCard");
        row("BACKUP", "Photos", false, true, "Mirrored Backup", "Mirrored Backup");
        row("ccbackup", "Photos", false, true, "Cross Cloud Backup", "Cross Cloud Backup");
        row("AdvBackup", "Mail", false, true, "Application Data Backup", "Application Data Backup");
        row("restoreapp", "Restore [A] From [B]", false, false, "Restore", "Restore");
        row("snapshotBackup", "Accounts", false, false, "Snapshot Backup", "Snapshot Backup");
        row("backups", "Photos", false, false, "backups", "backups");
        row("mirror", "default task for X", true, false, "mirror", "Virtual Directory Default Task");
        row("mirror", "My Default Task For X", false, false, "mirror", "mirror");
        row("Default Task For X", "X", false, false, "Virtual Directory Default Task ",
            "Virtual Directory Default Task");
        row("Cloud Sync Folder Task", "CLOUD SYNC FOLDER TASK FOR Y", true, false, "Cloud Sync Folder Task",
            "Cloud Sync Folder Task");
        row("sync", "Drop Folder Sync 1", false, false, "sync", "Cloud Sync Folder Task");
        row("sync", "a Prefetch Task of Z", true, false, "sync", "sync");
        row("sync", "a prefetch task of Z", false, false, "sync", "sync");
        row("x#MESFTASKx", "Files", true, false, "Mesafile System Task", "Mesafile System Task");
        row("x#mesftaskx", "Files", false, false, "x#mesftaskx", "x#mesftaskx");
        row("", "", false, false, "", "");
    }

    void classifiesAndNames() {
        const auto [type, name] = Fetched<QString, QString>();
        const TaskClass found = ClassifyTask(type, name);
        QTEST(found.system, "system");
        QTEST(found.backup, "backup");
        QTEST(TaskTypeName(type), "shown");
        QTEST(TaskKindText(type, name), "onCard");
        QVERIFY(ClassifyTask(type, name, true).backup);
    }
};

BTASK_TEST(TaskClassTest);

#include "TaskClassTest.moc"
