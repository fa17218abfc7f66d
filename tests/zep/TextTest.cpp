#include "zep/Text.h"

#include "support/TestMain.h"

namespace {

const QString replacement(QChar::ReplacementCharacter);

} // namespace

class TextTest : public QObject {
    Q_OBJECT

private slots:
    void Utf8_data() {
        QTest::addColumn<QByteArray>("octets");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QByteArray() << QString();
        QTest::newRow("up to four octets") << QByteArray("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80")
                                           << QStringLiteral("a\u00e9\u20ac\U0001F600");
        QTest::newRow("zero octet") << QByteArray("a\0b", 3)
                                    << QString(QStringLiteral("a") + QChar(0) + u'b');
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBFx") << QStringLiteral("\uFEFFx");
        QTest::newRow("stray continuation") << QByteArray("a\x80z") << QString(u'a' + replacement + u'z');
        QTest::newRow("cut short") << QByteArray("a\xC3") << QString(u'a' + replacement);
        QTest::newRow("overlong") << QByteArray("\xC0\xAF") << QString(replacement + replacement);
        QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80z") << replacement.repeated(3) + u'z';
        QTest::newRow("beyond Unicode") << QByteArray("\xF5\x80z") << replacement.repeated(2) + u'z';
    }
    void Utf8() {
        QFETCH(QByteArray, octets);
        QFETCH(QString, text);
        QCOMPARE(ZEPUTF8ToUnicode(octets), text);
        if (!text.contains(QChar::ReplacementCharacter))
            QCOMPARE(ZEPUnicodeToUTF8(text), octets);
    }

    void LoneSurrogatesAreShown() {
        const QChar high(0xD83D);
        const QChar low(0xDE00);
        const QString pair = QString(high) + low;
        QCOMPARE(ZEPUnicodeToUTF8(QString(high)), replacement.toUtf8());
        QCOMPARE(ZEPUnicodeToUTF8(QString(low) + high + pair + high + u'z'),
                 QString(replacement + replacement + pair + replacement + u'z').toUtf8());
    }

    void Url_data() {
        QTest::addColumn<QString>("encoded");
        QTest::addColumn<QString>("decoded");
        QTest::addColumn<bool>("canonical");
        QTest::newRow("plain") << QStringLiteral("aZ09-_.~") << QStringLiteral("aZ09-_.~") << true;
        QTest::newRow("markup") << QStringLiteral("%3CVDir%3E%26%2F%25") << QStringLiteral("<VDir>&/%")
                                << true;
        QTest::newRow("plus and blank") << QStringLiteral("a+b%20c") << QStringLiteral("a+b c") << false;
        QTest::newRow("octets of one character")
            << QStringLiteral("%E2%82%AC%F0%9F%98%80") << QStringLiteral("\u20ac\U0001F600") << true;
        QTest::newRow("lower-case digits") << QStringLiteral("%c3%a9") << QStringLiteral("\u00e9") << false;
        QTest::newRow("not escaped") << QStringLiteral("\u20ac%20") << QStringLiteral("\u20ac ") << false;
        QTest::newRow("cut short") << QStringLiteral("100%") << QStringLiteral("100%") << false;
        QTest::newRow("one digit") << QStringLiteral("%4") << QStringLiteral("%4") << false;
        QTest::newRow("no digits") << QStringLiteral("%G1%%41") << QStringLiteral("%G1%A") << false;
        QTest::newRow("decoded once") << QStringLiteral("%2541") << QStringLiteral("%41") << true;
        QTest::newRow("not UTF-8") << QStringLiteral("a%FFb") << QString(u'a' + replacement + u'b') << false;
    }
    void Url() {
        QFETCH(QString, encoded);
        QFETCH(QString, decoded);
        QFETCH(bool, canonical);
        QCOMPARE(ZEPURLDecodeUTF8(encoded), decoded);
        if (canonical)
            QCOMPARE(ZEPUrlEncodeUnicode(decoded), encoded);
    }

    void Html_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("decoded");
        QTest::newRow("named") << QStringLiteral("&lt;a&gt;&amp;&quot;&apos;") << QStringLiteral("<a>&\"'");
        QTest::newRow("decoded once") << QStringLiteral("&amp;lt;") << QStringLiteral("&lt;");
        QTest::newRow("numbers") << QStringLiteral("&#65;&#x42;&#X1f600;") << QStringLiteral("AB\U0001F600");
        QTest::newRow("leading zeros") << QStringLiteral("&#0000065;") << QStringLiteral("A");
        for (const char* kept : {"&bogus;", "&AMP;", "&amp", "&;", "&#;", "&#x;", "&#12a;", "&#xG;", "&#0;",
                                 "&#xD800;", "&#x110000;", "&#99999999999999999999;", "a & b; c", "&#-65;"})
            QTest::newRow(kept) << QString::fromLatin1(kept) << QString::fromLatin1(kept);
        QTest::newRow("after an ampersand") << QStringLiteral("&&amp;") << QStringLiteral("&&");
    }
    void Html() {
        QFETCH(QString, text);
        QTEST(HtmlDecode(text), "decoded");
    }

    void Base64_data() {
        QTest::addColumn<QString>("digits");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString() << QString();
        QTest::newRow("padded") << QStringLiteral("cMOkc3M=") << QStringLiteral("p\u00e4ss");
        QTest::newRow("in lines") << QStringLiteral("cMOk\r\n c3M=\n") << QStringLiteral("p\u00e4ss");
        QTest::newRow("not UTF-8") << QStringLiteral("/w==") << replacement;
        QTest::newRow("foreign digit") << QStringLiteral("cMO*") << QString();
        QTest::newRow("wide digit") << QStringLiteral("cMO\u0141") << QString();
        QTest::newRow("pad inside") << QStringLiteral("c=M=") << QString();
    }
    void Base64() {
        QFETCH(QString, digits);
        QTEST(ZEPBase64DecodeUnicode(digits), "text");
    }

    void Base64RoundTrip() {
        const QString text = QStringLiteral("user@example.org\n\u20ac\U0001F600");
        QCOMPARE(ZEPBase64DecodeUnicode(QString::fromLatin1(ZEPBase64Encode(ZEPUnicodeToUTF8(text)))), text);
    }

    void PathsKeepEveryCharacter() {
        const QString name = QStringLiteral("B\u00fccher \u20ac \U0001F600.db");
        QCOMPARE(FromPath(ToPath(name)), name);
    }
};

BTASK_TEST(TextTest);
#include "TextTest.moc"
