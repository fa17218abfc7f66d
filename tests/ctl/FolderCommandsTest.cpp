// Labels: threads
#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

class FolderCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void listsOfFolders_data() {
        // The list before and after "|"; what is written, and a part of what is said.
        const Columns<QString, QByteArray, CtlExit, QByteArray, QByteArray, QByteArray> row(
            "line", "before", "exit", "after", "out", "error");
        using enum CtlExit;
        const QByteArray two = "/Home/A\n/Team";
        row("encrypted", two, Done, two, "PATH\n/Home/A\n/Team\n", {});
        row("encrypted --json", two, Done, two, R"([{"path":"/Home/A"},{"path":"/Team"}])", {});
        row("encrypted --json", {}, Done, {}, "[]", {});
        row("encrypted --add /Team", two, Done, two + "\n/Team", {}, "none is set");
        row("encrypted --add /B --json", two, Done, two + "\n/B",
            R"([{"path":"/Home/A"},{"path":"/Team"},{"path":"/B"}])", "none is set");
        row("compressed --add /B", {}, Done, "/B", {}, {});
        row("encrypted --add /R&D", two, Usage, two, {}, "\"&\"");
        row("encrypted --add /B", "/R&D", Refused, "/R&D", {}, "Its entry \"/R&D\"");
        row("encrypted --remove /Home/A", two + "\n/Home/A", Done, "/Team\n/Home/A", {}, {});
        row("encrypted --remove /home/a", two, Refused, two, {}, "The list does not hold \"/home/a\".");
        row("compressed --remove /Team --json", "/Team", Done, "", "[]", {});
        row("compressed --add /A --remove /B", {}, Usage, {}, {}, "At most one");
        row("hidden", {}, Usage, {}, {}, "encrypted, compressed");
    }

    void listsOfFolders() {
        const auto [line, before, exit, after, out, error] =
            Fetched<QString, QByteArray, CtlExit, QByteArray, QByteArray, QByteArray>();
        ServiceFixture service;
        const std::string setting = line.startsWith("compressed"_L1) ? "CompressFolderList" : "EncFolderList";
        if (!before.isNull())
            service->SetSetting(setting, before.toStdString());
        const Run run = Btaskctl(QStringList{u"folders"_s} + line.split(u' '));
        QCOMPARE(run.exit, exit);
        if (line.contains("--json"_L1))
            QCOMPARE(QJsonDocument::fromJson(run.out), QJsonDocument::fromJson(out));
        else
            QCOMPARE(run.out, out);
        QVERIFY2(error.isEmpty() ? run.error.isEmpty() : run.error.contains(error), run.error.constData());
        QCOMPARE(QByteArray::fromStdString(service->Setting(setting).value_or("")), after);
    }

    void faultsHaveTheirCodes_data() {
        const Columns<QString, QString, CtlExit> row("fault", "line", "exit");
        using enum CtlExit;
        row("down", "refuse", "encrypted --json", Unreachable);
        row("down", "refuse", "encrypted --add /B --json", Unreachable);
        row("error", "status:500", "encrypted --json", Refused);
        row("error", "status:500", "encrypted --add /B --json", Refused);
        row("cut", "fin", "encrypted --json", Refused);
        row("not taken", "deny:403@Value", "encrypted --remove /A", Refused);
    }

    void faultsHaveTheirCodes() {
        const auto [fault, line, exit] = Fetched<QString, QString, CtlExit>();
        ServiceFixture service;
        service->SetSetting("EncFolderList", "/A");
        service->SetSetting("EncFolderKey", "secret");
        QVERIFY(service->SetFault(fault.toStdString()));
        const Run run = Btaskctl(QStringList{u"folders"_s} + line.split(u' '));
        QCOMPARE(run.exit, exit);
        QVERIFY(!run.error.isEmpty() && !run.error.contains("secret"));
        QVERIFY(!line.contains("--json"_L1) || QJsonDocument::fromJson(run.out).isArray());
        QCOMPARE(*service->Setting("EncFolderList"), std::string("/A"));
    }
};

BTASK_TEST(FolderCommandsTest);
#include "FolderCommandsTest.moc"
