#include "RawHttp.h"
#include "platform/NamedObjects.h"
#include "platform/ServiceControl.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

/// The program as the console's start script uses it.
class ProgramTest : public QObject {
    Q_OBJECT

private slots:
    void runsUntilItIsToldToEnd_data() {
        const Columns<bool> row("byInput");
        row("its input ends", true);
        if (QSysInfo::kernelType() != "winnt"_L1) // no signal asks a console program there
            row("a signal", false);
    }

    void runsUntilItIsToldToEnd() {
        QFETCH(const bool, byInput);
        QTemporaryDir home;
        QProcess program;
        const quint16 port =
            Start(program, {u"--home"_s, home.path(), u"--port"_s, u"0"_s, u"--until-stdin-closes"_s});
        QVERIFY(port != 0);
        QCOMPARE(Send(port, Request("GET", "/settings/BSInitConfig")).Body(), QByteArray("True"));

        QProcess second;
        Start(second, {u"--home"_s, home.path() + "/2"_L1, u"--port"_s, QString::number(port)});
        QVERIFY(HasEnded(second));
        QCOMPARE(second.exitCode(), 1);
        QVERIFY(second.readAllStandardError().contains(QByteArray::number(port)));

        if (byInput)
            program.closeWriteChannel();
        else
            program.terminate();
        QVERIFY(HasEnded(program));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);

        // The command that it leaves behind starts it again in the same place.
        QFile file(home.filePath(u"brengroupsvc.start"_s));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QStringList command = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        QVERIFY(QFile::exists(command.takeFirst()));
        QProcess again;
        QCOMPARE(Start(again, command), port);
        again.kill();
        QVERIFY(HasEnded(again));
    }

    void mendsAfterAKillWhatAFaultDamaged_data() {
        const Columns<QString> row("fault");
        row("db-garbage");
        row("db-missing");
        row("db-truncated@audit");
    }

    void mendsAfterAKillWhatAFaultDamaged() {
        QFETCH(const QString, fault);
        QTemporaryDir home;
        const QStringList options{u"--home"_s, home.path(), u"--port"_s, u"0"_s, u"--speed"_s, u"0"_s};
        const auto databases = [&home] {
            QList<QByteArray> contents;
            for (const QString& name : {u"scheduler/v10_schduler.db"_s, u"logging/v10_audittrace.db"_s}) {
                QFile file(home.filePath(name));
                contents += file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            }
            return contents;
        };
        QProcess program;
        Start(program, options);
        const QList<QByteArray> whole = databases();
        QVERIFY(!whole[0].isEmpty());
        program.kill();
        QVERIFY(HasEnded(program));
        QProcess faulty;
        QVERIFY(Start(faulty, options + QStringList{u"--fault"_s, fault}) != 0);
        QVERIFY(databases() != whole);
        faulty.kill();
        QVERIFY(HasEnded(faulty));
        QProcess again;
        QVERIFY(Start(again, options) != 0);
        QVERIFY(databases() == whole);
        again.kill();
        QVERIFY(HasEnded(again));
    }

    void homeAloneSaysWhereItsLocksAre() {
        if (QSysInfo::productType() == "windows"_L1)
            QSKIP("Windows asks its service manager, which knows of no folder.");
        QTemporaryDir home;
        QTemporaryDir elsewhere;
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& name : {u"BREN_HOME"_s, u"XDG_RUNTIME_DIR"_s})
            environment.insert(name, elsewhere.path());
        program.setProcessEnvironment(environment);
        QVERIFY(Start(program, {u"--home"_s, home.path(), u"--port"_s, u"0"_s}) != 0);
        qputenv("BREN_HOME", home.path().toUtf8());
        const bool held = platform::IsMutexHeld("IOSGUISHELLUPMUTEX");
        const auto state = platform::QueryService("brengroupsvc").state;
        qunsetenv("BREN_HOME");
        QVERIFY(held);
        QCOMPARE(state, platform::ServiceState::Running);
        QVERIFY(QDir(elsewhere.path()).isEmpty());
        program.kill();
        QVERIFY(HasEnded(program));
    }

    void refusesWhatItDoesNotKnow_data() {
        const Columns<QStringList> row("arguments");
        row("option", {u"--what"_s});
        row("port", {u"--port"_s, u"70000"_s});
        row("no value", {u"--home"_s});
        row("speed", {u"--speed"_s, u"fast"_s});
        row("fault", {u"--fault"_s, u"drip"_s});
        row("login", {u"--login"_s, u"after:soon"_s});
    }

    void refusesWhatItDoesNotKnow() {
        QFETCH(QStringList, arguments);
        QTemporaryDir home;
        arguments = QStringList{u"--home"_s, home.path(), u"--port"_s, u"0"_s} + arguments;
        QProcess program;
        Start(program, arguments);
        QVERIFY(HasEnded(program));
        QCOMPARE(program.exitCode(), 2);
        QVERIFY(!program.readAllStandardError().isEmpty());
    }

private:
    static bool HasEnded(QProcess& program) {
        return program.state() == QProcess::NotRunning || program.waitForFinished();
    }

    /// Starts the program and gives the port that it names when ready; 0 when it ends without.
    static quint16 Start(QProcess& program, const QStringList& arguments) {
        program.start(QCoreApplication::applicationDirPath() + "/brengroupsvc-dev"_L1, arguments);
        while (!program.canReadLine() && program.waitForReadyRead(20'000)) {
        }
        const QByteArray line = program.readLine();
        const QByteArray beginning = "ready on port ";
        return line.startsWith(beginning) ? line.mid(beginning.size()).split(',').first().toUShort() : 0;
    }
};

BTASK_TEST(ProgramTest);
#include "ProgramTest.moc"
