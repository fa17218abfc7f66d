#include "look/SvgPath.h"

#include "look/IconRegistry.h"
#include "support/TestMain.h"

#include <QImage>

class SvgPathTest : public QObject {
    Q_OBJECT

private slots:
    void readsPaths_data() {
        const Columns<QString, QRectF, QPointF> row("text", "bounds", "end");
        row("absolute lines", "M1 2L5 6H9V3", {1, 2, 8, 4}, {9, 3});
        row("relative lines", "m1 2l4 4h4v-3", {1, 2, 8, 4}, {9, 3});
        row("a move's further points are lines", "M1 1 4 1 4 5", {1, 1, 3, 4}, {4, 5});
        row("numbers that touch", "M.5.5-1.5 2,3-4", {-1.5, -4, 4.5, 6}, {3, -4});
        row("closing returns to the start", "M2 2h4v4zl1 1", {2, 2, 4, 4}, {3, 3});
        row("a second figure counts from the first's start", "M2 2h4v4zm8 0h1", {2, 2, 9, 4}, {11, 2});
        row("curve", "M0 0C0 4 8 4 8 0", {0, 0, 8, 3}, {8, 0});
        row("a smooth curve mirrors the last control point", "M0 0c0 4 8 4 8 0s8-4 8 0", {0, -3, 16, 6},
            {16, 0});
        row("half circle over the top", "M0 4A4 4 0 0 1 8 4", {0, 0, 8, 4}, {8, 4});
        row("half circle below", "M0 4A4 4 0 0 0 8 4", {0, 4, 8, 4}, {8, 4});
        row("small quarter", "M0 4a4 4 0 0 1 4-4", {0, 0, 4, 4}, {4, 0});
        row("large rest of a circle", "M4 0A4 4 0 1 1 0 4", {0, 0, 8, 8}, {0, 4});
        row("large rest against the clock", "M4 0A4 4 0 1 0 8 4", {0, 0, 8, 8}, {8, 4});
        row("flags that touch", "M0 4a4 4 0 014-4", {0, 0, 4, 4}, {4, 0});
        row("a radius too small grows", "M0 4A1 1 0 0 1 8 4", {0, 0, 8, 4}, {8, 4});
        row("an arc to where it stands is none", "M3 3a2 2 0 0 1 0 0h1", {3, 3, 1, 0}, {4, 3});
    }

    void readsPaths() {
        const auto [text, bounds, end] = Fetched<QString, QRectF, QPointF>();
        const std::optional<QPainterPath> path = ParseSvgPath(text);
        QVERIFY(path);
        const auto near = [](QPointF a, QPointF b) { return (a - b).manhattanLength() < 0.01; };
        const QRectF found = path->boundingRect();
        QVERIFY2(near(found.topLeft(), bounds.topLeft()) && near(found.bottomRight(), bounds.bottomRight()),
                 qPrintable(QDebug::toString(found)));
        QVERIFY2(near(path->currentPosition(), end), qPrintable(QDebug::toString(path->currentPosition())));
    }

    void refusesOtherText() {
        for (const char* text : {"M1", "M1 2L", "1 2", "M1 2Q3 4 5 6", "M1 2zz9", "M1 2A3 4 0 0 1 5 6",
                                 "M1 2A3 3 0 2 1 5 6", "M1 2A0 0 0 0 1 5 6", "M1 2L3 x", "M1..2 3"})
            QVERIFY2(!ParseSvgPath(QString::fromLatin1(text)), text);
    }

    void everyDrawingShowsInItsColour() {
        const QStringList names = IconRegistry::Names();
        QVERIFY(!names.isEmpty());
        for (const QString& name : names) {
            const QImage image = IconRegistry::Icon(name, Qt::red).pixmap(64).toImage();
            int shown = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    shown += image.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
            QVERIFY2(shown > 20, qPrintable(name));
        }
    }
};

BTASK_TEST(SvgPathTest);
#include "SvgPathTest.moc"
