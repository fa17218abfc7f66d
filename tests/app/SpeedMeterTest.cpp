#include "app/SpeedMeter.h"
#include "app/WindowGeometry.h"
#include "support/TestMain.h"

#include <QTest>

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
        QCOMPARE(fourth->upload, QStringLiteral("Upload: 6.500 KB/S")); // (10 + 1 + 2 + 3 + 10) / 4
        QCOMPARE(fourth->download, QStringLiteral("Download: 2.000 KB/S (Click to set bandwidth limit)"));
        QCOMPARE(add(5, 0)->upload, QStringLiteral("Upload: 5.200 KB/S")); // (5 + 1 + 2 + 3 + 10 + 5) / 5
        QCOMPARE(add(0, 0)->upload, QStringLiteral("Upload: 4.000 KB/S")); // the first slot is taken anew
    }

    void takesOneSampleATick() {
        SpeedMeter meter;
        QVERIFY(!meter.Due(100));
        QVERIFY(!meter.Due(100));
        QVERIFY(meter.Due(101));
        QVERIFY(!meter.Add(100, 5000, 5000));
    }

    void movesOntoAScreen_data() {
        QTest::addColumn<QRect>("stored");
        QTest::addColumn<QRect>("shown");
        const QRect here(100, 100, 986, 678);
        QTest::newRow("on a screen") << here << here;
        QTest::newRow("partly off, title in reach") << QRect(-800, 50, 986, 678) << QRect(-800, 50, 986, 678);
        QTest::newRow("on the second screen") << QRect(2000, 10, 986, 678) << QRect(2000, 10, 986, 678);
        QTest::newRow("title above the screen") << QRect(100, -200, 986, 678) << QRect(100, 0, 986, 678);
        QTest::newRow("far away") << QRect(90000, 90000, 986, 678) << QRect(294, 90, 986, 678);
        QTest::newRow("far away and larger than a screen")
            << QRect(-9000, -9000, 5000, 5000) << QRect(0, 0, 1280, 768);
    }

    void movesOntoAScreen() {
        QFETCH(QRect, stored);
        QTEST(MovedOntoScreen(stored, {QRect(0, 0, 1280, 768), QRect(1280, 0, 1920, 1080)}), "shown");
    }
};

BTASK_TEST(SpeedMeterTest);

#include "SpeedMeterTest.moc"
