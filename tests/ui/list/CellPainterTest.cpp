#include "list/CellPainter.h"

#include "look/GradientPainter.h"
#include "look/IconRegistry.h"
#include "support/TestMain.h"

#include <QImage>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QRgb Untouched = 0xFFFF00FF;
constexpr QRgb White = 0xFFFFFFFF;
constexpr QRgb Highlight = 0xFF0000AA;
const QRect CellRect(7, 5, 108, 24);

QImage Blank(QSize size = {130, 40}) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(QColor(Untouched));
    return image;
}

QImage Painted(const QString& text, CellLook look = {}) {
    QImage image = Blank();
    look.rect = CellRect;
    look.highlight = QColor(Highlight);
    QPainter painter(&image);
    // So that letters are made of their pure colour.
    QFont font = painter.font();
    font.setStyleStrategy(QFont::NoAntialias);
    painter.setFont(font);
    CellPainter().Paint(painter, text, look);
    return image;
}

/// Where pixels differ from the colour.
QRect Other(const QImage& image, QRgb colour) {
    QRect area;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != colour)
                area |= QRect(x, y, 1, 1);
    return area;
}

/// Whether some pixel has the colour.
bool HasInk(const QImage& image, QRgb colour) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == colour)
                return true;
    return false;
}

} // namespace

class CellPainterTest : public QObject {
    Q_OBJECT

private slots:
    void gradients_data() {
        // greys: along the gradient; -1: not painted
        const Columns<int, QSize, QList<int>> row("mode", "size", "greys");
        row("solid", 0, {2, 3}, {0, 0, 0});
        row("vertical", 1, {2, 7}, {0, 8, 17, 25, 34, 42, 51});
        row("horizontal", 2, {7, 2}, {0, 8, 17, 25, 34, 42, 51});
        row("horizontal mirror", 3, {5, 2}, {0, 30, 60, 30, -1});
        row("vertical mirror", 4, {2, 5}, {0, 30, 60, 30, -1});
        row("vertical mirror of one line", 4, {2, 1}, {-1});
        row("glossy", 7, {2, 6}, {40, 50, 60, 50, 40, 30});
        row("glossy, odd", 7, {2, 5}, {36, 36, 48, 60, 48});
        row("glossy, not divisible", 7, {1, 7}, {34, 42, 51, 60, 52, 43, 35});
        row("glossy of one line", 7, {2, 1}, {0});
        row("unknown", 9, {2, 2}, {-1, -1});
    }

    void gradients() {
        const auto [mode, size, greys] = Fetched<int, QSize, QList<int>>();
        QImage image = Blank(size);
        QPainter painter(&image);
        PaintGradient(painter, image.rect(), 0xFF000000, 0xFF3C3C3C, GradientMode(mode));
        QList<int> seen;
        for (int at = 0; at < greys.size(); ++at) {
            const bool across = mode == 2 || mode == 3;
            const QRgb pixel = across ? image.pixel(at, 1) : image.pixel(size.width() - 1, at);
            seen.append(pixel == Untouched ? -1 : qRed(pixel));
        }
        QCOMPARE(seen, greys);

        // Falling channels truncate toward zero as rising ones do.
        QImage falling = Blank({1, 2});
        QPainter second(&falling);
        PaintGradient(second, falling.rect(), 0xFF646464, 0xFF616161, GradientMode::Vertical);
        QCOMPARE(qRed(falling.pixel(0, 1)), 0x63);
    }

    void fillsItsCellOnly() {
        for (const char* text :
             {"plain", "Uploading...", "#ICON:209", "#ICON:0", "#Progress:1 2@@long caption that is cut",
              "#Progress:1 0", "##struck", "#COLOR:RED", ""})
            QVERIFY2(Other(Painted(QString::fromLatin1(text)), Untouched) == CellRect, text);
    }

    void drawsText_data() {
        const Columns<QString, CellLook, QRgb, QRgb> row("text", "look", "back", "ink");
        constexpr QRgb grey = 0xFFF0F0F0;
        constexpr QRgb green = 0xFF008000;
        constexpr QRgb black = 0xFF000000;
        CellLook shaded;
        CellLook accent;
        CellLook all;
        shaded.grey = accent.accent = all.grey = all.accent = all.selected = true;
        row("plain", "HHHH", {}, White, black);
        row("shaded", "HHHH", shaded, grey, black);
        row("ellipsis", "HHHH...", shaded, grey, green);
        row("accent", "HHHH", accent, White, green);
        row("selected", "HHHH...", all, Highlight, White);
        row("no colour", "#COLOR:BLUE", {}, White, black);
        row("struck", "##HHHH", all, White, 0xFFCCCCCC);
    }

    void drawsText() {
        const auto [text, look, back, ink] = Fetched<QString, CellLook, QRgb, QRgb>();
        const QImage image = Painted(text, look);
        for (const QPoint corner :
             {CellRect.topLeft(), CellRect.topRight(), CellRect.bottomLeft(), CellRect.bottomRight()})
            QCOMPARE(image.pixel(corner), back);
        QVERIFY(HasInk(image, ink));
    }

    void drawsBars() {
        CellLook selected;
        selected.selected = selected.grey = true;
        const QImage image = Painted(u"#Progress:1 3"_s, selected);
        // 108 wide: a frame of 100 from 4, filled for 33; 24 high: bars of 20 from 2.
        const QRect frame(CellRect.x() + 4, CellRect.y() + 2, 100, 20);
        const int filledEnd = frame.x() + 33;
        QCOMPARE(Other(image.copy(CellRect), White), frame.translated(-CellRect.topLeft()));
        // Glossy over 20 lines: the start is 2 * (20 / 3) = 12, the turn 40 / 3 = 13.
        QCOMPARE(image.pixel(frame.x(), frame.y()), qRgb(0, 255 - 191 * 12 / 20, 0));
        QCOMPARE(image.pixel(frame.x(), frame.y() + 1), qRgb(0, 64 + 191 * 13 / 20, 0));
        QCOMPARE(image.pixel(filledEnd - 1, frame.y()), qRgb(0, 255 - 191 * 12 / 20, 0));
        QCOMPARE(image.pixel(filledEnd, frame.y()), qRgb(227 - 66 * 12 / 20, 188, 188));
        QCOMPARE(image.pixel(frame.x(), frame.y() + 8), qRgb(0, 255, 0));
        QCOMPARE(image.pixel(frame.right(), frame.y() + 8), qRgb(0xE3, 0xE3, 0xE3));
        QVERIFY(HasInk(Painted(u"#Progress:1 3@@HHHH"_s), 0xFF000000));
        QCOMPARE(Other(Painted(u"#Progress:5 0@@HHHH"_s).copy(CellRect), White), QRect());
    }

    void drawsIconsAndSwatches() {
        const QRect square(46, 4, 16, 16);
        const QRect icon = Other(Painted(u"#ICON:%1#@@HHHHHHHHHH"_s.arg(UploadIcon)).copy(CellRect), White);
        QVERIFY(!icon.isEmpty() && square.contains(icon));
        for (const char* none :
             {"#ICON:0#@@Uploading...", "#ICON:77777777", "#ICON:-5", "#ICON:123456789012345678901234"})
            QCOMPARE(Other(Painted(QString::fromUtf8(none)).copy(CellRect), White), QRect());

        const std::tuple<const char*, QRgb, QRgb> swatches[] = {{"#COLOR:GREEN", 0xFF008000, White},
                                                                {"#color:red", 0xFFF00000, White},
                                                                {"#COLOR:YELLOW", 0xFFF0F000, 0xFF000000}};
        for (const auto& [text, colour, sign] : swatches) {
            const QImage image = Painted(QString::fromUtf8(text)).copy(CellRect);
            QCOMPARE(Other(image, White), QRect(4, 2, 100, 20));
            const QRect drawn = Other(image.copy(4, 2, 100, 20), colour);
            QVERIFY(QRect(40, 0, 20, 20).contains(drawn) && HasInk(image.copy(4, 2, 100, 20), sign));
        }
    }

    void survivesSmallCells() {
        const QString long64K(65536, u'\u200B');
        for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(7, 3), QSize(8, 4), QSize(9, 5)}) {
            for (const QString& text : {u"x..."_s, u"##x"_s, u"#ICON:209"_s, u"#COLOR:RED"_s,
                                        u"#Progress:-1 -2@@"_s + long64K, long64K, u"\u202E##\u202C"_s}) {
                QImage image = Blank();
                QPainter painter(&image);
                CellLook look;
                look.rect = QRect(QPoint(20, 20), size);
                CellPainter().Paint(painter, text, look);
                QVERIFY(look.rect.contains(Other(image, Untouched)) || size.isEmpty());
                QVERIFY(!size.isEmpty() || Other(image, Untouched).isEmpty());
            }
        }
    }
};

BTASK_TEST(CellPainterTest);
#include "CellPainterTest.moc"
