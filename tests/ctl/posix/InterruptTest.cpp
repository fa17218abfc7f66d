// Labels: threads
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QProcess>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";

} // namespace

/// Programs that are interrupted while they wait.
class InterruptTest : public QObject {
    Q_OBJECT

private slots:
    void waitsEndInOrder_data() {
        // When it is interrupted, how it ends, and which virtual directories are left.
        const Columns<QStringList, QString, int, QByteArray, QByteArray> row("command", "after", "exit",
                                                                             "error", "left");
        row("a mount is taken back",
            {u"mount"_s, QLatin1String(Provider), u"New"_s, u"--field"_s, u"User Name=m"_s, u"--secret"_s,
             u"Password=-"_s},
            "AddNewNode", 1, "The mount was cancelled. The half-made virtual directory was removed.\n",
            "Photos ");
        row("a login goes on", {u"vdir"_s, u"login"_s, u"Photos"_s}, "GetVDirStatus", 3,
            "Stopped before the login ended. The service goes on with it.\n", "Photos ");
        row("a run goes on", {u"task"_s, u"start"_s, u"Nightly"_s, u"--wait"_s}, "starttask", 3,
            "Stopped before the run ended. The service goes on with it.\n", "Photos ");
    }

    void waitsEndInOrder() {
        const auto [command, after, exit, error, left] =
            Fetched<QStringList, QString, int, QByteArray, QByteArray>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"Photos", "{C}", 3, Provider}});
        service->SetLogin("never");
        devservice::Task task = MakeTask("{1}", "Nightly");
        task.subTasks = {MakeSubTask(1, "PUT", "a.txt", 9'000'000)};
        service->PutTask(task);
        QProcess program;
        program.start(QCoreApplication::applicationDirPath() + u"/btaskctl"_s, command);
        program.write("p");
        program.closeWriteChannel();
        QTRY_VERIFY_WITH_TIMEOUT(service.RequestLines().join(u' ').contains(after, Qt::CaseInsensitive),
                                 30'000);
        QCOMPARE(kill(static_cast<pid_t>(program.processId()), SIGINT), 0);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.readAllStandardError(), error);
        QCOMPARE(program.exitCode(), exit);
        QByteArray names;
        for (const auto& directory : service->VirtualDirectories())
            names += QByteArray::fromStdString(directory.name) + ' ';
        QCOMPARE(names, left);
    }
};

BTASK_TEST(InterruptTest);
#include "InterruptTest.moc"
