#include "Shell.h"

#include "support/TestMain.h"

#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

class BackupCountTest : public QObject {
    Q_OBJECT

private slots:
    void tellsFiguresBesideTheRecord() {
        const QTemporaryDir dir;
        for (const char* name : {"a.txt", "b.tmp", ".hidden"}) {
            QFile file(dir.filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QFile::WriteOnly) && file.write("0123456789") == 10);
        }
        const QStringList command{u"backup"_s, u"create"_s,   u"Mine"_s, u"--source"_s,
                                  dir.path(),  u"--hidden"_s, u"--to"_s, u"/Home/Backup"_s};
        QCOMPARE(Btaskctl(command + QStringList{u"--count"_s}).exit, CtlExit::Usage);
        const Run plain = Btaskctl(command + QStringList{u"--dry-run"_s, u"--time"_s, u"1:2:3"_s});
        const Run counted =
            Btaskctl(command + QStringList{u"--count"_s, u"--dry-run"_s, u"--time"_s, u"1:2:3"_s});
        QCOMPARE(counted.exit, CtlExit::Done);
        QCOMPARE(counted.out, plain.out);
        QVERIFY(plain.error.isEmpty());
        QVERIFY2(
            counted.error.startsWith("2 files, 20 bytes\nExcluded file types: leaves out 1 file, 10 bytes\n"),
            counted.error.constData());
        const Run gone = Btaskctl(
            command + QStringList{u"--count"_s, u"--dry-run"_s, u"--source"_s, dir.filePath(u"x"_s)});
        QCOMPARE(gone.exit, CtlExit::Refused);
        QVERIFY(gone.error.contains("Not there: " + dir.filePath(u"x"_s).toUtf8()));
    }
};

BTASK_TEST(BackupCountTest);
#include "BackupCountTest.moc"
