#include "window/SpeedMeter.h"
#include "support/TestMain.h"
#include "window/WindowGeometry.h"

using namespace Qt::Literals::StringLiterals;

/// The small rules of the main window: its speeds and its place.
class SpeedMeterTest : public QObject {
    Q_OBJECT

private slots:
    void weighsTheNewestTwice() {
        SpeedMeter meter;
        quint32 tick = 0xFFFFFF00; // it wraps on the way
        QVERIFY(!meter.Due(tick));
        const quint64 kilobyte = 1024;
        const auto add = [&](quint64 sent, quint64 received) {
            tick += 1000;
            return meter.Add(tick, sent * kilobyte, received * kilobyte);
        };
        QVERIFY(!add(1, 0));
        QVERIFY(!add(2, 0));
        QVERIFY(!add(3, 0));
        const auto fourth = add(10, 4);
        QVERIFY(fourth.has_value());
        QCOMPARE(fourth->upload, u"Upload: 6.500 KB/S"_s); // (10 + 1 + 2 + 3 + 10) / 4
        QCOMPARE(fourth->download, u"Download: 2.000 KB/S (Click to set bandwidth limit)"_s);
        QCOMPARE(add(5, 0)->upload, u"Upload: 5.200 KB/S"_s); // (5 + 1 + 2 + 3 + 10 + 5) / 5
        QCOMPARE(add(0, 0)->upload, u"Upload: 4.000 KB/S"_s); // the first slot is taken anew
    }

    void takesOneSampleATick() {
        SpeedMeter meter;
        QVERIFY(!meter.Due(100));
        QVERIFY(!meter.Due(100));
        QVERIFY(meter.Due(101));
        QVERIFY(!meter.Add(100, 5000, 5000));
    }

    void movesOntoAScreen_data() {
        const Columns<QRect, QRect> row("stored", "shown");
        const QRect here(100, 100, 986, 678);
        row("on a screen", here, here);
        row("partly off, title in reach", QRect(-800, 50, 986, 678), QRect(-800, 50, 986, 678));
        row("on the second screen", QRect(2000, 10, 986, 678), QRect(2000, 10, 986, 678));
        row("title above the screen", QRect(100, -200, 986, 678), QRect(100, 0, 986, 678));
        row("far away", QRect(90000, 90000, 986, 678), QRect(294, 90, 986, 678));
        row("far away and larger than a screen", QRect(-9000, -9000, 5000, 5000), QRect(0, 0, 1280, 768));
    }

    void movesOntoAScreen() {
        QFETCH(QRect, stored);
        QTEST(MovedOntoScreen(stored, {QRect(0, 0, 1280, 768), QRect(1280, 0, 1920, 1080)}), "shown");
    }
};

BTASK_TEST(SpeedMeterTest);

#include "SpeedMeterTest.moc"
