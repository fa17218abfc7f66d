#include "zep/Text.h"

#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

const QString replacement(QChar::ReplacementCharacter);

class TextTest : public QObject {
    Q_OBJECT

private slots:
    void utf8_data() {
        const Columns<QByteArray, QString> row("octets", "text");
        row("nothing", {}, {});
        row("up to four octets", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "a\u00e9\u20ac\U0001F600");
        row("zero octet", QByteArray("a\0b", 3), u"a"_s + QChar(0) + u'b');
        row("byte order mark", "\xEF\xBB\xBFx", u"\uFEFFx"_s);
        row("stray continuation", "a\x80z", u'a' + replacement + u'z');
        row("cut short", "a\xC3", u'a' + replacement);
        row("overlong", "\xC0\xAF", replacement + replacement);
        row("surrogate", "\xED\xA0\x80z", replacement.repeated(3) + u'z');
        row("beyond Unicode", "\xF5\x80z", replacement.repeated(2) + u'z');
    }
    void utf8() {
        const auto [octets, text] = Fetched<QByteArray, QString>();
        QCOMPARE(ZEPUTF8ToUnicode(octets), text);
        if (!text.contains(QChar::ReplacementCharacter))
            QCOMPARE(ZEPUnicodeToUTF8(text), octets);
    }

    void loneSurrogatesAreShown() {
        const QChar high(0xD83D);
        const QChar low(0xDE00);
        const QString pair = QString(high) + low;
        QCOMPARE(ZEPUnicodeToUTF8(QString(high)), replacement.toUtf8());
        QCOMPARE(ZEPUnicodeToUTF8(QString(low) + high + pair + high + u'z'),
                 QString(replacement + replacement + pair + replacement + u'z').toUtf8());
    }

    void url_data() {
        const Columns<QString, QString, bool> row("encoded", "decoded", "canonical");
        row("plain", "aZ09-_.~", "aZ09-_.~", true);
        row("markup", "%3CVDir%3E%26%2F%25", "<VDir>&/%", true);
        row("plus and blank", "a+b%20c", "a+b c", false);
        row("octets of one character", "%E2%82%AC%F0%9F%98%80", "\u20ac\U0001F600", true);
        row("lower-case digits", "%c3%a9", "\u00e9", false);
        row("not escaped", "\u20ac%20", "\u20ac ", false);
        row("cut short", "100%", "100%", false);
        row("one digit", "%4", "%4", false);
        row("no digits", "%G1%%41", "%G1%A", false);
        row("decoded once", "%2541", "%41", true);
        row("not UTF-8", "a%FFb", u'a' + replacement + u'b', false);
    }
    void url() {
        const auto [encoded, decoded, canonical] = Fetched<QString, QString, bool>();
        QCOMPARE(ZEPURLDecodeUTF8(encoded), decoded);
        if (canonical)
            QCOMPARE(ZEPUrlEncodeUnicode(decoded), encoded);
    }

    void html_data() {
        const Columns<QString, QString> row("text", "decoded");
        row("named", "&lt;a&gt;&amp;&quot;&apos;", "<a>&\"'");
        row("decoded once", "&amp;lt;", "&lt;");
        row("numbers", "&#65;&#x42;&#X1f600;", "AB\U0001F600");
        row("leading zeros", "&#0000065;", "A");
        for (const char* kept : {"&bogus;", "&AMP;", "&amp", "&;", "&#;", "&#x;", "&#12a;", "&#xG;", "&#0;",
                                 "&#xD800;", "&#x110000;", "&#99999999999999999999;", "a & b; c", "&#-65;"})
            row(kept, kept, kept);
        row("after an ampersand", "&&amp;", "&&");
    }
    void html() {
        QFETCH(QString, text);
        QTEST(HtmlDecode(text), "decoded");
    }

    void base64_data() {
        const Columns<QString, QString> row("digits", "text");
        row("nothing", {}, {});
        row("padded", "cMOkc3M=", "p\u00e4ss");
        row("in lines", "cMOk\r\n c3M=\n", "p\u00e4ss");
        row("not UTF-8", "/w==", replacement);
        row("foreign digit", "cMO*", {});
        row("wide digit", "cMO\u0141", {});
        row("pad inside", "c=M=", {});
    }
    void base64() {
        QFETCH(QString, digits);
        QTEST(ZEPBase64DecodeUnicode(digits), "text");
    }

    void base64RoundTrip() {
        const QString text = u"user@example.org\n\u20ac\U0001F600"_s;
        QCOMPARE(ZEPBase64DecodeUnicode(QString::fromLatin1(ZEPBase64Encode(ZEPUnicodeToUTF8(text)))), text);
    }

    void pathsKeepEveryCharacter() {
        const QString name = u"B\u00fccher \u20ac \U0001F600.db"_s;
        QCOMPARE(FromPath(ToPath(name)), name);
    }
};

BTASK_TEST(TextTest);
#include "TextTest.moc"
