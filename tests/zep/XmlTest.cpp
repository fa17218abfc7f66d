#include "zep/Xml.h"

#include "support/TestMain.h"
#include "zep/Text.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int hostileDepth = 100'000;

XmlNode Root(const QString& text, const QString& path) {
    const auto document = XmlDocument::FromText(text);
    return document ? document->NodeByPath(path) : XmlNode();
}

std::optional<XmlDocument> LoadOctets(const QTemporaryDir& folder, const QByteArray& octets) {
    QFile file(folder.filePath(u"document.xml"_s));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(octets) != octets.size())
        return std::nullopt;
    file.close();
    return XmlDocument::Load(file.filesystemFileName());
}

} // namespace

class XmlTest : public QObject {
    Q_OBJECT

private slots:
    void walksElementsInOrder() {
        const XmlNode list = Root(u"<?xml version='1.0'?><Response><!-- none --><VDirs>text"
                                  "<V Name='a&amp;b' Empty=''/><!-- gap --><V Name='\u20ac'/>"
                                  "<![CDATA[x<y]]></VDirs><VDirs><V Name='second'/></VDirs></Response>"_s,
                                  u"Response/VDirs"_s);
        QVERIFY(list);
        QCOMPARE(list.ChildCount(), 2);
        QCOMPARE(list.Text(), u"textx<y"_s);
        const XmlNode first = list.FirstChild();
        QCOMPARE(first.Attribute(u"Name"_s), u"a&b"_s);
        QCOMPARE(first.Attribute(u"Empty"_s), QString());
        QVERIFY(!first.Attribute(u"name"_s).has_value());
        const XmlNode second = first.NextSibling();
        QCOMPARE(second.Attribute(u"Name"_s), u"\u20ac"_s);
        QVERIFY(!second.NextSibling());
        QVERIFY(!second.FirstChild());
    }

    void paths_data() {
        const Columns<QString, QString> row("path", "text");
        row("steps", "R/A/B", "1");
        row("slashes to spare", "/R//A/B/", "1");
        row("first of its name, no second try", "R/A/C", {});
        row("other case", "R/a/B", {});
        row("without the root", "A/B", {});
    }
    void paths() {
        QFETCH(QString, path);
        QTEST(Root(u"<R><A><B>1</B></A><A><C>2</C></A></R>"_s, path).Text(), "text");
    }

    void nodesKeepTheirDocument() {
        XmlNode node = Root(u"<R><A><B k='v'>text</B></A></R>"_s, u"R/A"_s);
        node = node.FirstChild();
        QCOMPARE(node.Name(), u"B"_s);
        QCOMPARE(node.Xml(), u"<B k=\"v\">text</B>"_s);
    }

    void noNodeAnswersNothing() {
        const XmlNode none;
        QVERIFY(!none && !none.FirstChild() && !none.NextSibling() && !none.NodeByPath(u"R"_s));
        QCOMPARE(none.Name() + none.Text() + none.Xml(), QString());
        QVERIFY(!none.Attribute(u"a"_s));
        QCOMPARE(none.ChildCount(), 0);
    }

    void rejectsWhatIsNotWellFormed() {
        for (const char* text :
             {"", "   ", "text", "<R>", "<R></S>", "<R a=1/>", "<R/><R/>", "<R/>text", "text<R/>",
              "<!-- only -->", "<R", "<R><![CDATA[</R>", "<?xml version='1.0'?>", "</R>"})
            QVERIFY2(!XmlDocument::FromText(QString::fromLatin1(text)), text);
    }

    void keepsHostileDepth() {
        const QString text = u"<a>"_s.repeated(hostileDepth) + u'x' + u"</a>"_s.repeated(hostileDepth);
        XmlNode node = Root(text, u"a"_s);
        QVERIFY(node);
        QCOMPARE(node.Text(), QString());
        QCOMPARE(node.Xml(), text);
        XmlNode deepest = Root(text, u"a/"_s.repeated(hostileDepth));
        QCOMPARE(deepest.Text(), u"x"_s);
        int depth = 0;
        for (; node; node = node.FirstChild())
            ++depth;
        QCOMPARE(depth, hostileDepth);
    }

    void hostileWidth() {
        constexpr int count = 100'000;
        QString attributes;
        for (int i = 0; i < count; ++i)
            attributes += u" a%1='%1'"_s.arg(i);
        const XmlNode root =
            Root(u"<R"_s + attributes + u'>' + u"<c/>"_s.repeated(count) + u"</R>"_s, u"R"_s);
        QCOMPARE(root.Attribute(u"a99999"_s), u"99999"_s);
        QCOMPARE(root.ChildCount(), count);
    }

    void documentTypesFetchAndExpandNothing() {
        const QTemporaryDir folder;
        QVERIFY(LoadOctets(folder, "<R>secret</R>"));
        const XmlNode root =
            Root(u"<!DOCTYPE R [<!ENTITY file SYSTEM 'file://%1/document.xml'><!ENTITY a 'aaaa'>"
                 "<!ENTITY b '&a;&a;&a;&a;'>]><R>&file;&b;</R>"_s.arg(folder.path()),
                 u"R"_s);
        QCOMPARE(root.Text(), u"&file;&b;"_s);
    }

    void filesInAnyEncoding_data() {
        const Columns<QByteArray, QString> row("octets", "text");
        const QString euro = u"<R>\u20ac</R>"_s;
        const QString marked = QChar(QChar::ByteOrderMark) + euro;
        row("UTF-8", euro.toUtf8(), "\u20ac");
        row("UTF-8 with mark", marked.toUtf8(), "\u20ac");
        row("UTF-16", QByteArray(reinterpret_cast<const char*>(marked.utf16()), marked.size() * 2), "\u20ac");
        row("Latin-1", "<?xml version='1.0' encoding='ISO-8859-1'?><R>\xE9</R>", "\u00e9");
        row("broken UTF-8", "<R>a\xFFz</R>", "a\uFFFDz");
        row("blanks only", "<R>  </R>", "  ");
    }
    void filesInAnyEncoding() {
        QFETCH(QByteArray, octets);
        const QTemporaryDir folder;
        const auto document = LoadOctets(folder, octets);
        QVERIFY(document);
        QTEST(document->NodeByPath(u"R"_s).Text(), "text");
    }

    void missingFilesAndFoldersAreNoDocument() {
        const QTemporaryDir folder;
        QVERIFY(!XmlDocument::Load(ToPath(folder.path())));
        QVERIFY(!XmlDocument::Load(ToPath(folder.filePath(u"missing.xml"_s))));
    }
};

BTASK_TEST(XmlTest);
#include "XmlTest.moc"
