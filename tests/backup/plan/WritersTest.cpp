#include "plan/Writers.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

/// What is made of the service's list of applications.
class WritersTest : public QObject {
    Q_OBJECT

private slots:
    void keepsWhatCanBeBackedUp_data() {
        // A kept line as "NAME({ID})/COMPONENT/..."
        const Columns<QByteArray, QStringList> row("list", "kept");
        row("three fields", "A\t{1}\tx", {u"A({1})"_s});
        row("no third field", "A\t{1}\nB\t{2}\t", {u"B({2})"_s});
        row("components", "A\t{1}\tx\tone\ttwo/three\n", {u"A({1})/one/two/three"_s});
        row("lines that are none", "\n\n\t\nA\nB\t{2}\tx\n", {u"B({2})"_s});
        row("empty parts", "\t\t\t\tc", {u"()//c"_s});
        row("the service's closing zero", QByteArray("A\t{1}\tx\n\0B\t{2}\tx", 16), {u"A({1})"_s});
        row("an excluded one in any case",
            "A\t{D61d61c8-D73A-4eee-8cdd-f6f9786b7124}\tx\n"
            "A\t{75DFB225-E2E4-4D39-9AC9-FFAFF65DDF06}\tx\nA\t{0bada1de-01a9-4625-8278-69e735f39dd2}\tx\n"
            "A\t{be000cbe-11fe-4426-9c58-531aa6355fc4}\tx\nA\t{4DC3BDD4-AB48-4D07-ADB0-3BEE2926FD7F}\tx\n"
            "A\t{4969d978-be47-48b0-b100-f328f07ac1e0}\tx\nA\t{542da469-d3e1-473c-9f4f-7847f01fc64f}\tx\n"
            "A\t{542da469-d3e1-473c-9f4f-7847f01fc640}\tx",
            {u"A({542da469-d3e1-473c-9f4f-7847f01fc640})"_s});
        row("what is no UTF-8", "A\xFF\t{1}\tx\t\xC3", {u"A\uFFFD({1})/\uFFFD"_s});
    }

    void keepsWhatCanBeBackedUp() {
        const auto [list, kept] = Fetched<QByteArray, QStringList>();
        QStringList found;
        for (const Writer& writer : ParseWriters(list))
            found += (QStringList(WriterKey(writer)) + writer.components).join(u'/');
        QCOMPARE(found, kept);
    }

    void showsWritersByTheirNames_data() {
        const Columns<QString, QString> row("writer", "shown");
        row("SQLSERVERWRITER", "SQL Server");
        row("MSDEWriter", "Microsoft Data Engine");
        row("frs writer", "File Replication service");
        row("Event Log Writer", "Event Log");
        row("system writer", "Operating System and Driver Binaries");
        row("Registry Writer", "Local Registry");
        row("ntds", "Active Directory");
        row("COM+ REGDB Writer", "COM+ Registry");
        row("WMI Writer", "WMI State and Data");
        row("adam (x) writer", "Active Directory Lightweight Directory Services (LDS)");
        row("Dhcp Jet Writer", "Dynamic Host Configuration");
        row("FSRM Writer", "File Server Resource Manager");
        row("WINS Jet Writer", "Windows Internet Name Service");
        row("Certificate Server Writer", "Certificate Authority");
        row("Microsoft Exchange Writer", "Microsoft Exchange Server");
        row("NTDS 2", "NTDS 2");
        row("ADA", "ADA");
    }

    void showsWritersByTheirNames() {
        const auto [writer, shown] = Fetched<QString, QString>();
        QCOMPARE(WriterDisplayName(writer), shown);
    }
};

BTASK_TEST(WritersTest);
#include "WritersTest.moc"
