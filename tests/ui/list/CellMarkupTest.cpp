#include "list/CellMarkup.h"

#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

class CellMarkupTest : public QObject {
    Q_OBJECT

private slots:
    void parses_data() {
        // First: icon, position, swatch, or the ellipsis flag of a plain cell. Second: maximum.
        const Columns<QString, CellKind, QString, qint64, qint64> columns("cell", "kind", "text", "first",
                                                                          "second");
        const auto row = [&](const char* cell, CellKind kind, const char* text, qint64 first = 0,
                             qint64 second = 0) { columns(cell, kind, text, first, second); };
        row("", CellKind::Plain, "");
        row("Uploading...", CellKind::Plain, "Uploading...", 1);
        row(" #ICON:5", CellKind::Plain, " #ICON:5");
        row("#", CellKind::Plain, "#");
        row("#...", CellKind::Plain, "#...", 1);
        row("#ICON:12#@@Uploading...", CellKind::Icon, "Uploading...", 12);
        row("#icon:0#@@Uploading...", CellKind::Icon, "Uploading...", 0);
        row("#ICON:", CellKind::Icon, "", 0);
        row("#ICON: -7x", CellKind::Icon, "", -7);
        row("#ICON:99999999999999999999999", CellKind::Icon, "", 2147483647);
        row("#Progress:3 4@@3 of 4", CellKind::Progress, "3 of 4", 3, 4);
        row("#progress:15 10", CellKind::Progress, "", 10, 10);
        row("#progress:5 0", CellKind::Progress, "", 0, 0);
        row("#Progress:abc", CellKind::Progress, "", 0, 0);
        row("#Progress:7", CellKind::Progress, "", 0, 0);
        row("#Progress:x 7", CellKind::Progress, "", 0, 0);
        row("#Progress:1 3@@a@@b", CellKind::Progress, "a@@b", 1, 3);
        row("#Progress:\t+1 \n 3", CellKind::Progress, "", 1, 3);
        row("#Progress:-1294967296 -294967296", CellKind::Progress, "", 3000000000, 4000000000);
        row("#Progress:-1 10", CellKind::Progress, "", 10, 10);
        row("##gone", CellKind::Struck, "gone");
        row("###ICON:3", CellKind::Struck, "#ICON:3");
        row("#COLOR:green", CellKind::Swatch, "", int(SwatchColour::Green));
        row("#Color:RED", CellKind::Swatch, "", int(SwatchColour::Red));
        row("#COLOR:YELLOW", CellKind::Swatch, "", int(SwatchColour::Yellow));
        row("#COLOR:GREEN ", CellKind::Plain, "#COLOR:GREEN ");
        row("#COLOR:BLUE", CellKind::Plain, "#COLOR:BLUE");
    }

    void parses() {
        const auto [cell, kind, text, first, second] = Fetched<QString, CellKind, QString, qint64, qint64>();
        const CellMarkup read = CellMarkup::Parse(cell);
        QCOMPARE(read.kind, kind);
        QCOMPARE(read.text.toString(), text);
        const qint64 firsts[] = {read.ellipsis, read.icon, read.position, 0, qint64(read.swatch)};
        QCOMPARE(firsts[int(kind)], first);
        QCOMPARE(qint64(read.maximum), second);
    }

    void dataStaysAsItStands() {
        for (const QString& data :
             {u"#ICON:3@@x"_s, u"##x"_s, u"#COLOR:RED"_s, u"#"_s, u"#\uFDD0x"_s, u"x#"_s}) {
            const QString cell = Cell::Plain(data);
            QCOMPARE(CellMarkup::Parse(cell).kind, CellKind::Plain);
            QCOMPARE(WordsOfCell(cell), data);
        }
    }

    void saysWords_data() {
        const Columns<QString, QString, QString> row("cell", "caption", "words");
        row("#Progress:3 4@@3 of 4 processed", "75.00% (3 of 4 processed)", "75.00 % (3 of 4 processed)");
        row("#Progress:1 3@@a@@b", "33.33% (a@@b)", "33.33 % (a@@b)");
        row("#Progress:1 3@@", "33.33% ()", "33.33 % ()");
        row("#Progress:1 3@@%1%2", "33.33% (%1%2)", "33.33 % (%1%2)");
        row("#Progress:15 10", "100.00%", "100.00 %");
        row("#Progress:1 100", " 1.00%", "1.00 %");
        row("#Progress:5 0@@x", "", "");
        row("#ICON:208#@@Click to delete the failed sub-task", "", "delete the failed sub-task");
        row("#ICON:209#@@Uploading...", "", "Uploading...");
        row("#ICON:209", "", "upload");
        row("#ICON:0#@@Uploading...", "", "");
        row("##gone", "", "gone");
        row("#COLOR:red", "", "Error");
        row("#COLOR:yellow", "", "Warning");
        row("#COLOR:green", "", "Information");
        row("plain", "", "plain");
    }

    void saysWords() {
        QFETCH(QString, cell);
        const CellMarkup read = CellMarkup::Parse(cell);
        QTEST(read.Caption(), "caption");
        QTEST(read.Words(), "words");
    }

    void writesProgress_data() {
        const Columns<quint64, quint64, QString> row("done", "total", "cell");
        const quint64 gib = quint64(1) << 30;
        row("nothing to do", 3, 0, {});
        row("half", 5, 10, "#Progress:5 10");
        row("more done than there is", 12, 10, "#Progress:10 10");
        row("the largest plain one", gib, 2 * gib - 1, "#Progress:1073741824 2147483647");
        row("beyond 31 bits", gib, 2 * gib, "#Progress:536870912 1073741824");
        row("the largest of all", ~quint64(0), ~quint64(0), "#Progress:2147483647 2147483647");
    }

    void writesProgress() {
        const auto [done, total] = Fetched<quint64, quint64>();
        QTEST(Cell::Progress(done, total), "cell");
    }
};

BTASK_TEST(CellMarkupTest);
#include "CellMarkupTest.moc"
