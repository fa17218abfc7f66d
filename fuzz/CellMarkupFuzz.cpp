#include "Require.h"
#include "list/CellMarkup.h"
#include "list/CellPainter.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QRgb Untouched = 0xFFFF00FF;
const QRect Cell(4, 4, 60, 20);

/// A cell of the pieces that the octets choose: random octets hardly ever make a marker.
QString Compose(QByteArrayView choices) {
    static const QStringList pieces{u"#ICON:"_s,
                                    u"#Progress:"_s,
                                    u"##"_s,
                                    u"#COLOR:RED"_s,
                                    u"@@"_s,
                                    u"..."_s,
                                    u" "_s,
                                    u"-"_s,
                                    u"+"_s,
                                    u"4294967296"_s,
                                    u"0"_s,
                                    u"2147483648"_s,
                                    u"7"_s,
                                    u"%1"_s,
                                    u"\n"_s,
                                    QString(QChar(0)),
                                    QString(QChar(0x202E)),
                                    QString(QChar(0x200B)),
                                    QString(QChar(0xD800)),
                                    QString(QChar(0x0645)),
                                    QString(300, u'W'),
                                    u"#icon:209"_s,
                                    u"text"_s};
    QString text;
    for (const char choice : choices)
        text += pieces.at(uchar(choice) % pieces.size());
    return text;
}

void CheckMeaning(const QString& text) {
    const CellMarkup cell = CellMarkup::Parse(text);
    Require(cell.position <= cell.maximum);
    Require(cell.text.size() <= text.size());
    Require(text.startsWith(u'#') || cell.kind == CellKind::Plain);
    Require(cell.kind != CellKind::Plain || cell.Words() == text);
    Require(cell.Caption().isEmpty() == (cell.maximum == 0));
}

void CheckPaint(const QString& text, int flags) {
    static CellPainter cells;
    QImage image(72, 28, QImage::Format_RGB32);
    image.fill(QColor(Untouched));
    CellLook look;
    look.rect = Cell;
    look.grey = flags & 1;
    look.selected = flags & 2;
    look.focused = flags & 4;
    look.accent = flags & 8;
    look.alignment = flags & 16 ? Qt::AlignRight : Qt::AlignLeft;
    QPainter painter(&image);
    cells.Paint(painter, text, look);
    painter.end();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            Require(Cell.contains(x, y) || image.pixel(x, y) == Untouched);
    }
}

} // namespace

/// The font library keeps what it has read for as long as the program runs.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const QByteArrayView octets(data + 1, qsizetype(size - 1));
    const QString text = data[0] & 32 ? QString::fromUtf8(octets) : Compose(octets);
    CheckMeaning(text);
    CheckPaint(text, data[0]);
    return 0;
}
