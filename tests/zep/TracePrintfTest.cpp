#include "zep/TracePrintf.h"

#include "platform/SharedFile.h"
#include "support/TestMain.h"
#include "zep/SysInfo.h"
#include "zep/Text.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <array>
#include <set>
#include <thread>

class TracePrintfTest : public QObject {
    Q_OBJECT

    std::optional<QTemporaryDir> m_home;

    QString LogFile() const { return m_home->filePath(QStringLiteral("logging/BTaskMMC.log")); }

    static QList<QByteArray> Lines(const QString& name) {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QList<QByteArray> lines = file.readAll().split('\n');
        lines.removeLast(); // what follows the last line's end
        return lines;
    }

    QList<QByteArray> AllLines() const {
        QList<QByteArray> lines;
        const QDir folder(m_home->filePath(QStringLiteral("logging")));
        for (const QString& name : folder.entryList({QStringLiteral("BTaskMMC.log*")}, QDir::Files))
            lines += Lines(folder.filePath(name));
        return lines;
    }

private slots:
    void init() {
        m_home.emplace();
        qputenv("BREN_HOME", QFile::encodeName(m_home->path()));
    }

    void cleanup() {
        qunsetenv("BREN_HOME");
        m_home.reset();
    }

    void LineForms_data() {
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << 1 << QStringLiteral("[Shell]gone") << QStringLiteral("ERROR   [Shell]gone");
        QTest::newRow("own line end")
            << 3 << QStringLiteral("Finish Cleanup.\n") << QStringLiteral("INFO    Finish Cleanup.");
        QTest::newRow("forged line") << 2 << QStringLiteral("a\r\nb\n")
                                     << QStringLiteral("WARNING a\uFFFD\\nb");
        QTest::newRow("control and wide characters")
            << 4 << QStringLiteral("\u001b[31m\t\u20ac") << QStringLiteral("VERBOSE \uFFFD[31m\t\u20ac");
        QTest::newRow("empty") << 3 << QString() << QStringLiteral("INFO    ");
    }
    void LineForms() {
        QFETCH(int, level);
        QFETCH(QString, text);
        QFETCH(QString, shown);
        TracePrintf(TraceLevel(level), text);
        const QList<QByteArray> lines = Lines(LogFile());
        QCOMPARE(lines.size(), 1);
        const QRegularExpression form(
            QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z \\[%1\\] (.*)$")
                .arg(QCoreApplication::applicationPid()));
        const auto match = form.match(ZEPUTF8ToUnicode(lines.front()));
        QVERIFY2(match.hasMatch(), lines.front().constData());
        QCOMPARE(match.captured(1), shown);
    }

    /// Each thread stands for a console: nothing is shared between two calls but the files.
    void ConsolesLoseNoLineAtRotation() {
        constexpr int consoles = 4;
        constexpr int linesEach = 700;
        const QString filler(2000, u'x');
        std::array<std::jthread, consoles> threads;
        for (int console = 0; console < consoles; ++console)
            threads[size_t(console)] = std::jthread([&filler, console] {
                for (int i = 0; i < linesEach; ++i)
                    TracePrintf(TraceLevel::Info, QStringLiteral("%1/%2 ").arg(console).arg(i) + filler);
            });
        for (std::jthread& thread : threads)
            thread.join();
        QVERIFY(QFile::exists(LogFile() + QStringLiteral(".1")));
        const QList<QByteArray> lines = AllLines();
        const std::set<QByteArray> different(lines.begin(), lines.end());
        QCOMPARE(int(different.size()), consoles * linesEach);
        for (const QByteArray& line : lines)
            QVERIFY2(line.endsWith(QByteArray(2000, 'x')), line.constData());
    }

    void OldLogsAreDropped() {
        const QString filler(1'100'000, u'x');
        for (int i = 0; i < 25; ++i)
            TracePrintf(TraceLevel::Info, QString::number(i) + u' ' + filler);
        QStringList names = QDir(m_home->filePath(QStringLiteral("logging"))).entryList(QDir::Files);
        names.removeAll(QStringLiteral("BTaskMMC.log.lock"));
        QCOMPARE(names, QStringList({QStringLiteral("BTaskMMC.log"), QStringLiteral("BTaskMMC.log.1"),
                                     QStringLiteral("BTaskMMC.log.2"), QStringLiteral("BTaskMMC.log.3")}));
        QVERIFY(Lines(LogFile()).constLast().contains(" 24 "));
    }

    void AnotherConsoleAtRotationIsLeftAlone() {
        const QString filler(4'300'000, u'x');
        TracePrintf(TraceLevel::Info, QStringLiteral("first"));
        {
            const auto other = platform::FileLock::TryAcquire(ToPath(LogFile() + QStringLiteral(".lock")));
            QVERIFY(other);
            TracePrintf(TraceLevel::Info, filler);
            QVERIFY(!QFile::exists(LogFile() + QStringLiteral(".1")));
        }
        TracePrintf(TraceLevel::Info, QStringLiteral("last"));
        QCOMPARE(Lines(LogFile() + QStringLiteral(".1")).size(), 3);
    }

    void SilentWithoutAFolder() {
        QFile blocked(m_home->filePath(QStringLiteral("logging")));
        QVERIFY(blocked.open(QIODevice::WriteOnly));
        TracePrintf(TraceLevel::Error, QStringLiteral("lost"));
        QCOMPARE(blocked.size(), 0);
    }

    void HomePathsAreMadeOnlyWhenWanted() {
        const QString name = QStringLiteral("B\u00fccher");
        const QString folder = m_home->filePath(name);
        QCOMPARE(ZEPGetHomePath(name), ToPath(folder));
        QVERIFY(!QDir(folder).exists());
        QCOMPARE(ZEPGetHomePath(name, HomePath::Created), ToPath(folder));
        QVERIFY(QDir(folder).exists());
    }
};

BTASK_TEST(TracePrintfTest);
#include "TracePrintfTest.moc"
