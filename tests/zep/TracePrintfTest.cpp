// Labels: threads
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

using namespace Qt::Literals::StringLiterals;

class TracePrintfTest : public QObject {
    Q_OBJECT

    std::optional<QTemporaryDir> m_home;

    QString LogFile() const { return m_home->filePath(u"logging/BTaskMMC.log"_s); }

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
        const QDir folder(m_home->filePath(u"logging"_s));
        for (const QString& name : folder.entryList({u"BTaskMMC.log*"_s}, QDir::Files))
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

    void lineForms_data() {
        const Columns<int, QString, QString> row("level", "text", "shown");
        row("plain", 1, "[Shell]gone", "ERROR   [Shell]gone");
        row("own line end", 3, "Finish Cleanup.\n", "INFO    Finish Cleanup.");
        row("forged line", 2, "a\r\nb\n", "WARNING a\uFFFD\\nb");
        row("control and wide characters", 4, "\u001b[31m\t\u20ac", "VERBOSE \uFFFD[31m\t\u20ac");
        row("empty", 3, {}, "INFO    ");
    }
    void lineForms() {
        const auto [level, text, shown] = Fetched<int, QString, QString>();
        TracePrintf(TraceLevel(level), text);
        const QList<QByteArray> lines = Lines(LogFile());
        QCOMPARE(lines.size(), 1);
        const QRegularExpression form(
            u"^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z \\[%1\\] (.*)$"_s.arg(
                QCoreApplication::applicationPid()));
        const auto match = form.match(ZEPUTF8ToUnicode(lines.front()));
        QVERIFY2(match.hasMatch(), lines.front().constData());
        QCOMPARE(match.captured(1), shown);
    }

    /// Each thread stands for a console: nothing is shared between two calls but the files.
    void consolesLoseNoLineAtRotation() {
        constexpr int consoles = 4;
        constexpr int linesEach = 700;
        const QString filler(2000, u'x');
        std::array<std::jthread, consoles> threads;
        for (int console = 0; console < consoles; ++console)
            threads[size_t(console)] = std::jthread([&filler, console] {
                for (int i = 0; i < linesEach; ++i)
                    TracePrintf(TraceLevel::Info, u"%1/%2 "_s.arg(console).arg(i) + filler);
            });
        for (std::jthread& thread : threads)
            thread.join();
        QVERIFY(QFile::exists(LogFile() + u".1"_s));
        const QList<QByteArray> lines = AllLines();
        const std::set<QByteArray> different(lines.begin(), lines.end());
        QCOMPARE(int(different.size()), consoles * linesEach);
        for (const QByteArray& line : lines)
            QVERIFY2(line.endsWith(QByteArray(2000, 'x')), line.constData());
    }

    void oldLogsAreDropped() {
        const QString filler(1'100'000, u'x');
        for (int i = 0; i < 25; ++i)
            TracePrintf(TraceLevel::Info, QString::number(i) + u' ' + filler);
        QStringList names = QDir(m_home->filePath(u"logging"_s)).entryList(QDir::Files);
        names.removeAll(u"BTaskMMC.log.lock"_s);
        QCOMPARE(names, QStringList({u"BTaskMMC.log"_s, u"BTaskMMC.log.1"_s, u"BTaskMMC.log.2"_s,
                                     u"BTaskMMC.log.3"_s}));
        QVERIFY(Lines(LogFile()).constLast().contains(" 24 "));
    }

    void anotherConsoleAtRotationIsLeftAlone() {
        const QString filler(4'300'000, u'x');
        TracePrintf(TraceLevel::Info, u"first"_s);
        {
            const auto other = platform::FileLock::TryAcquire(ToPath(LogFile() + u".lock"_s));
            QVERIFY(other);
            TracePrintf(TraceLevel::Info, filler);
            QVERIFY(!QFile::exists(LogFile() + u".1"_s));
        }
        TracePrintf(TraceLevel::Info, u"last"_s);
        QCOMPARE(Lines(LogFile() + u".1"_s).size(), 3);
    }

    void silentWithoutAFolder() {
        QFile blocked(m_home->filePath(u"logging"_s));
        QVERIFY(blocked.open(QIODevice::WriteOnly));
        TracePrintf(TraceLevel::Error, u"lost"_s);
        QCOMPARE(blocked.size(), 0);
    }

    void homePathsAreMadeOnlyWhenWanted() {
        const QString name = u"B\u00fccher"_s;
        const QString folder = m_home->filePath(name);
        QCOMPARE(ZEPGetHomePath(name), ToPath(folder));
        QVERIFY(!QDir(folder).exists());
        QCOMPARE(ZEPGetHomePath(name, HomePath::Created), ToPath(folder));
        QVERIFY(QDir(folder).exists());
    }
};

BTASK_TEST(TracePrintfTest);
#include "TracePrintfTest.moc"
