#include "support/AgentService.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QFileInfo>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;

/// The program itself, as a user starts it.
class ProgramTest : public QObject {
    Q_OBJECT

private slots:
    void opensItsWindow_data() {
        const Columns<QStringList, bool> row("switches", "configured");
        row("desktop", QStringList(), false);
        row("desktop, on a section", {u"/view:1"_s}, false);
        row("server", {u"/server"_s, u"/runas"_s}, true);
    }

    void opensItsWindow() {
        const auto [switches, configured] = Fetched<QStringList, bool>();
        ServiceFixture fixture("desktop");
        const AgentService service;
        fixture->SetSetting("BSInitConfig", configured ? "True" : "False");
        const QStringList told = Run(switches + QStringList{u"--dev-report-start"_s});
        QCOMPARE(told, QStringList({u"painted"_s, u"filled"_s}));
    }

    void toursEverySection() {
        ServiceFixture fixture("desktop");
        const QString folder = fixture.Home() + "/pictures"_L1;
        const QStringList pictures = Run({u"--dev-tour="_s + folder});
        QVERIFY(pictures.size() >= 3);
        for (const QString& picture : pictures)
            QVERIFY2(QFileInfo(picture).size() > 1000, qPrintable(picture));
    }

    void printsAndEndsWithoutADisplay_data() {
        const Columns<QString, QString> row("switch", "told");
        row("--help", "/edithome");
        row("--version", "BTaskMMC 1");
    }

    void printsAndEndsWithoutADisplay() {
        const auto [option, told] = Fetched<QString, QString>();
        const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
        qputenv("QT_QPA_PLATFORM", "none");
        const QString text = Run({u"/server"_s, option}).join(u'\n');
        qputenv("QT_QPA_PLATFORM", platform);
        QVERIFY2(text.contains(told), qPrintable(text));
    }

private:
    /// What the program printed; fails the test unless it ended by itself with exit code 0.
    QStringList Run(const QStringList& arguments) {
        const QFileInfo self(QCoreApplication::applicationFilePath());
        const QString suffix = self.suffix().isEmpty() ? QString() : u'.' + self.suffix();
        QProcess program;
        // The program itself has the system's own platform; the tests' one is for their process alone.
        if (QSysInfo::productType() == u"windows") {
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.remove(u"QT_QPA_PLATFORM"_s);
            program.setProcessEnvironment(environment);
        }
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(self.absolutePath() + "/BTaskMMC"_L1 + suffix, arguments);
        if (!program.waitForFinished(300'000) || program.exitStatus() != QProcess::NormalExit ||
            program.exitCode() != 0)
            QTest::qFail("the program did not end as it should", __FILE__, __LINE__);
        const QString told = QString::fromUtf8(program.readAllStandardOutput()).remove(u'\r');
        return told.split(u'\n', Qt::SkipEmptyParts);
    }
};

BTASK_TEST(ProgramTest);

#include "ProgramTest.moc"
