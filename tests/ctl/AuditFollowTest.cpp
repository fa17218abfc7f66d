// Labels: threads
#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;
using File = devservice::Database;

class AuditFollowTest : public QObject {
    Q_OBJECT

private slots:
    void theTraceIsFollowed() {
        ServiceFixture service;
        const auto add = [&service](const char* values) {
            service->Execute(service->DatabaseFile(File::AuditTrace),
                             std::string("INSERT INTO AuditTrace VALUES") + values);
        };
        add("(0,'a','2025-03-01'),(1,'c','2025-03-03'),(2,'b','2025-03-02'),(2,'d','2025-03-04')");
        const auto follow = [&](const QStringList& options) {
            int waits = 0;
            // While it waits, rows come, and a writer that holds the file for longer than a read waits for
            // it.
            return Btaskctl(QStringList{u"audit"_s, u"--follow"_s} + options, {}, {},
                            [&](const std::stop_token&, std::chrono::milliseconds) {
                                if (++waits == 1)
                                    add("(2,'late','2025-02-01'),(0,'new','2025-03-05')");
                                if (waits == 2)
                                    service->SetFault(devservice::DatabaseFault::Locked, File::AuditTrace);
                                if (waits == 3) {
                                    service->SetFault(devservice::DatabaseFault::None, File::AuditTrace);
                                    add("(7,'last',NULL)");
                                }
                                return waits < 5;
                            });
        };
        const Run lines = follow({u"--json"_s, u"--max"_s, u"2"_s});
        QCOMPARE(lines.exit, CtlExit::Done);
        QCOMPARE(lines.out, "{\"level\":1,\"time\":\"2025-03-03\",\"trace\":\"c\"}\n"
                            "{\"level\":2,\"time\":\"2025-03-04\",\"trace\":\"d\"}\n"
                            "{\"level\":2,\"time\":\"2025-02-01\",\"trace\":\"late\"}\n"
                            "{\"level\":0,\"time\":\"2025-03-05\",\"trace\":\"new\"}\n"
                            "{\"level\":7,\"time\":null,\"trace\":\"last\"}\n");
        const Run table = follow({u"--level"_s, u"warning"_s, u"--from"_s, u"2025-03-01"_s});
        QCOMPARE(table.out, "LEVEL  TIME        TRACE\n1      2025-03-03  c\n");
        // What is stopped before its first row wrote nothing, and ends well all the same.
        std::stop_source stop;
        stop.request_stop();
        const Run none = Btaskctl({u"audit"_s, u"--follow"_s, u"--json"_s}, stop.get_token());
        QCOMPARE(none.exit, CtlExit::Done);
        QCOMPARE(none.out, "");
    }
};

BTASK_TEST(AuditFollowTest);

#include "AuditFollowTest.moc"
