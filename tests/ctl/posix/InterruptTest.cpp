// Labels: threads
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QProcess>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

/// A program that is interrupted while it mounts.
class InterruptTest : public QObject {
    Q_OBJECT

private slots:
    void aMountIsTakenBack() {
        ServiceFixture service;
        service->SetLogin("never");
        QProcess program;
        program.start(QCoreApplication::applicationDirPath() + u"/btaskctl"_s,
                      {u"mount"_s, u"{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}"_s, u"V"_s, u"--field"_s,
                       u"User Name=m"_s, u"--secret"_s, u"Password=-"_s});
        program.write("p");
        program.closeWriteChannel();
        QTRY_VERIFY_WITH_TIMEOUT(service.RequestLines().join(u' ').contains("AddNewNode"_L1), 30'000);
        QCOMPARE(kill(static_cast<pid_t>(program.processId()), SIGINT), 0);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 1);
        QVERIFY(service->VirtualDirectories().empty());
    }
};

BTASK_TEST(InterruptTest);
#include "InterruptTest.moc"
