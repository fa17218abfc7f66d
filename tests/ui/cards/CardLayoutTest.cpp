#include "cards/CardLayout.h"
#include "support/TestMain.h"

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint32 Huge = std::numeric_limits<quint32>::max();

/// 3 cards a page: (400 - 2 * 20) / (100 + 20).
CardLayoutRequest Request(quint32 count, quint32 page = 0, std::optional<quint32> expanded = {}) {
    return {{20, 10, 20, 0, 100, 0}, 800, 400, count, page, expanded};
}

QString Words(const CardLayout& layout) {
    QStringList words{u"page %1 of %2"_s.arg(layout.currentPage).arg(layout.pageCount)};
    if (layout.showPrevious)
        words.append(u"previous"_s);
    if (layout.showPageLabel)
        words.append(u"label"_s);
    if (layout.showNext)
        words.append(u"next"_s);
    if (layout.hiddenCount > 0)
        words.append(u"%1 hidden"_s.arg(layout.hiddenCount));
    return words.join(u' ');
}

} // namespace

class CardLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void pages_data() {
        const Columns<quint32, quint32, int, QString> row("count", "page", "expanded", "words");
        row("no card", 0, 0, -1, "page 0 of 0");
        row("no card, late page", 0, 5, -1, "page 0 of 0");
        row("one", 1, 0, -1, "page 0 of 1");
        row("a full page", 3, 0, -1, "page 0 of 1");
        row("one more", 4, 0, -1, "page 0 of 2 label next");
        row("first of 7", 7, 0, -1, "page 0 of 3 label next");
        row("middle of 7", 7, 1, -1, "page 1 of 3 previous label next");
        row("last of 7", 7, 2, -1, "page 2 of 3 previous label");
        row("beyond the last", 7, 3, -1, "page 2 of 3 previous label");
        row("far beyond", 100, Huge, -1, "page 33 of 34 previous label");
        row("expanded on the middle page", 7, 1, 4, "page 1 of 3 6 hidden");
        row("the only card expanded", 1, 0, 0, "page 0 of 1");
    }

    void pages() {
        const auto [count, page, expanded, words] = Fetched<quint32, quint32, int, QString>();
        const auto index = expanded < 0 ? std::nullopt : std::optional(static_cast<quint32>(expanded));
        const std::optional<CardLayout> layout = LayOutCards(Request(count, page, index));
        QVERIFY(layout);
        QCOMPARE(Words(*layout), words);
    }

    void places() {
        const CardLayout second = *LayOutCards(Request(7, 1));
        QVERIFY(!second.PlaceOf(2));
        QCOMPARE(second.PlaceOf(3), (CardRect{10, 20, 780, 100}));
        QCOMPARE(second.PlaceOf(4), (CardRect{10, 140, 780, 100}));
        QCOMPARE(second.PlaceOf(5), (CardRect{10, 260, 780, 100}));
        QVERIFY(!second.PlaceOf(6));
        QCOMPARE(second.previousLink, (CardRect{550, 380, 70, 14}));
        QCOMPARE(second.pageLabel, (CardRect{630, 380, 70, 14}));
        QCOMPARE(second.nextLink, (CardRect{710, 380, 70, 14}));

        const CardLayout last = *LayOutCards(Request(7, 2));
        QCOMPARE(last.PlaceOf(6), (CardRect{10, 20, 780, 100}));
        QVERIFY(!last.PlaceOf(7));

        const CardLayout expanded = *LayOutCards(Request(7, 1, 4));
        QVERIFY(!expanded.PlaceOf(3));
        QCOMPARE(expanded.PlaceOf(4), (CardRect{10, 20, 780, 340}));
        QCOMPARE(expanded.hiddenLink, (CardRect{10, 380, 780, 14}));
    }

    void laysNothingOutWithoutRoom_data() {
        const Columns<quint32, quint32, quint32, quint32, bool> row("height", "topMargin", "cardHeight",
                                                                    "gap", "room");
        row("just fits", 160, 20, 100, 20, true);
        row("a pixel short", 159, 20, 100, 20, false);
        row("lower than its margins", 39, 20, 100, 20, false);
        row("no height", 0, 20, 100, 20, false);
        row("no stride", 400, 20, 0, 0, false);
        row("a stride beyond 32 bits", 400, 0, Huge, 1, false);
        row("margins beyond 32 bits", 400, 1U << 31, 100, 20, false);
    }

    void laysNothingOutWithoutRoom() {
        const auto [height, topMargin, cardHeight, gap] = Fetched<quint32, quint32, quint32, quint32>();
        CardLayoutRequest request = Request(7);
        request.height = height;
        request.geometry.topMargin = topMargin;
        request.geometry.cardHeight = cardHeight;
        request.geometry.gap = gap;
        QTEST(LayOutCards(request).has_value(), "room");
    }

    void nothingWraps() {
        CardLayoutRequest narrow = Request(7, 1);
        narrow.width = 15;
        const CardLayout paged = *LayOutCards(narrow);
        QCOMPARE(paged.PlaceOf(3)->width, 0U);
        QCOMPARE(paged.previousLink.x, 0U);
        QCOMPARE(paged.nextLink.x, 0U);

        narrow.expanded = 3;
        narrow.geometry.topMargin = 30;
        narrow.geometry.cardHeight = 1;
        narrow.geometry.gap = 0;
        narrow.height = 80;
        QCOMPARE(LayOutCards(narrow)->PlaceOf(3)->height, 0U);
        QCOMPARE(LayOutCards(narrow)->hiddenLink.width, 0U);
    }

    void expandedHeights_data() {
        const Columns<quint32, quint32, quint32> row("fixed", "least", "height");
        row("what is left", 0, 0, 340);
        row("fixed", 123, 200, 123);
        row("at least", 0, 500, 500);
        row("more than the least", 0, 200, 340);
    }

    void expandedHeights() {
        const auto [fixed, least] = Fetched<quint32, quint32>();
        CardLayoutRequest request = Request(7, 0, 0);
        request.geometry.expandedHeight = fixed;
        request.geometry.minExpandedHeight = least;
        QTEST(LayOutCards(request)->PlaceOf(0)->height, "height");
    }
};

BTASK_TEST(CardLayoutTest);
#include "CardLayoutTest.moc"
