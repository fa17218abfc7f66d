#include "look/Formatters.h"
#include "support/TestMain.h"

#include <limits>

using namespace Qt::Literals::StringLiterals;

class FormattersTest : public QObject {
    Q_OBJECT

private slots:
    void sizes_data() {
        const Columns<quint64, QString> row("bytes", "text");
        row(0, " 0.000 KB");
        row(1, " 0.001 KB");
        row(1023, " 0.999 KB");
        row(1024, " 1.000 KB");
        row(1536, " 1.500 KB");
        row((1ULL << 20) - 1, "1023.999 KB");
        row(1ULL << 20, "1024.000 KB");
        row((1ULL << 20) + 1, " 1.000 MB");
        row((1ULL << 30) - 1, "1024.000 MB");
        row(1ULL << 30, " 1.000 GB");
        row(15ULL << 30, "15.000 GB");
        row(1ULL << 40, "1024.000 GB");
        row((1ULL << 40) + 1, " 1.000 TB");
        row(std::numeric_limits<quint64>::max(), "16777216.000 TB");
    }

    void sizes() {
        QFETCH(quint64, bytes);
        QTEST(FormatSize(bytes), "text");
    }

    void durations_data() {
        const Columns<quint32, QString> row("seconds", "text");
        row(0, "00:00:00");
        row(59, "00:00:59");
        row(60, "00:01:00");
        row(3599, "00:59:59");
        row(3600, "01:00:00");
        row(359999, "99:59:59");
        row(360000, "100:00:00");
        row(std::numeric_limits<quint32>::max(), "1193046:28:15");
    }

    void durations() {
        QFETCH(quint32, seconds);
        QTEST(FormatDuration(seconds), "text");
        QCOMPARE(FormatRemaining(u"%2"_s, FormatDuration(seconds)),
                 u"%2 ("_s + FormatDuration(seconds) + u") Remaining"_s);
    }

    void isolatesNames_data() {
        const Columns<QString, QString> row("name", "isolated");
        row("plain", "Photos (2)", "Photos (2)");
        row("accents", "\u00C9t\u00E9", "\u00C9t\u00E9");
        row("a mark turns nothing", "\u200FPhotos (2)", "\u2066\u200FPhotos (2)\u2069");
        row("nor does an override", "\u202Egpj.exe", "\u2066\u202Egpj.exe\u2069");
        row("right to left", "\u05D2\u05D9\u05D1\u05D5\u05D9 2",
            "\u2067\u05D2\u05D9\u05D1\u05D5\u05D9 2\u2069");
        row("mixed", "Photos \u05D2", "\u2066Photos \u05D2\u2069");
    }

    void isolatesNames() {
        QFETCH(QString, name);
        QTEST(Isolated(name), "isolated");
    }
};

BTASK_TEST(FormattersTest);
#include "FormattersTest.moc"
