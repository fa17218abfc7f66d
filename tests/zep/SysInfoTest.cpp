#include "zep/SysInfo.h"

#include "platform/Registry.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

class SysInfoTest : public QObject {
    Q_OBJECT

private slots:
    void asksForTheBackupPages() {
        const QTemporaryDir home;
        const QByteArray before = qgetenv("BREN_HOME");
        qputenv("BREN_HOME", home.path().toUtf8());
        const platform::RegistryKey key{platform::RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia"};
        QVERIFY(!IsBrQBSMode());
        for (const uint32_t value : {1U, 0U, 2U}) {
            if (!platform::WriteRegistryDword(key, "BrQBSMode", value))
                QSKIP("the machine's registry cannot be written here");
            QCOMPARE(IsBrQBSMode(), value == 0);
        }
        qputenv("BREN_HOME", before);
    }
};

BTASK_TEST(SysInfoTest);

#include "SysInfoTest.moc"
