#include "list/HeaderCtrlCl.h"
#include "support/TestMain.h"

#include <QImage>
#include <QStandardItemModel>

namespace {

QImage Grab(CHeaderCtrlCl& header, QStandardItemModel& model) {
    header.setModel(&model);
    header.resize(300, header.sizeHint().height());
    QImage image(header.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    header.render(&image);
    return image;
}

} // namespace

class HeaderCtrlClTest : public QObject {
    Q_OBJECT

private slots:
    void paintsItsBand() {
        QStandardItemModel model(0, 2);
        model.setHorizontalHeaderLabels({QString(), QString()});
        CHeaderCtrlCl header;
        const QImage image = Grab(header, model);
        QCOMPARE(image.height(), 36);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white)); // the corners are round
        QCOMPARE(image.pixelColor(299, 35), QColor(Qt::white));
        // From 0xE3 at the edges to 0xA1 in the middle and back, where no caption or divider stands.
        const int x = 40;
        QVERIFY(image.pixelColor(x, 3).red() > image.pixelColor(x, 10).red());
        QVERIFY(image.pixelColor(x, 10).red() > image.pixelColor(x, 17).red());
        QVERIFY(image.pixelColor(x, 25).red() < image.pixelColor(x, 32).red());
        QVERIFY(qAbs(image.pixelColor(x, 17).red() - 0xA1) <= 8);
    }

    void leavesItToTheToolkit() {
        QStandardItemModel model(0, 2);
        CHeaderCtrlCl header;
        header.SetCustom(false);
        const QImage image = Grab(header, model);
        QVERIFY(image.height() != 36);
        QVERIFY(image.pixelColor(40, image.height() / 2) != QColor(0xA1, 0xA1, 0xA1));
    }
};

BTASK_TEST(HeaderCtrlClTest);

#include "HeaderCtrlClTest.moc"
