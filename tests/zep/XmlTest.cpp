#include "zep/Xml.h"

#include "support/TestMain.h"
#include "zep/Text.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

constexpr int hostileDepth = 100'000;

XmlNode Root(const QString& text, const QString& path) {
    const auto document = XmlDocument::FromText(text);
    return document ? document->NodeByPath(path) : XmlNode();
}

std::optional<XmlDocument> LoadOctets(const QTemporaryDir& folder, const QByteArray& octets) {
    QFile file(folder.filePath(QStringLiteral("document.xml")));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(octets) != octets.size())
        return std::nullopt;
    file.close();
    return XmlDocument::Load(file.filesystemFileName());
}

} // namespace

class XmlTest : public QObject {
    Q_OBJECT

private slots:
    void WalksElementsInOrder() {
        const XmlNode list =
            Root(QStringLiteral("<?xml version='1.0'?><Response><!-- none --><VDirs>text"
                                "<V Name='a&amp;b' Empty=''/><!-- gap --><V Name='\u20ac'/>"
                                "<![CDATA[x<y]]></VDirs><VDirs><V Name='second'/></VDirs></Response>"),
                 QStringLiteral("Response/VDirs"));
        QVERIFY(list);
        QCOMPARE(list.ChildCount(), 2);
        QCOMPARE(list.Text(), QStringLiteral("textx<y"));
        const XmlNode first = list.FirstChild();
        QCOMPARE(first.Attribute(QStringLiteral("Name")), QStringLiteral("a&b"));
        QCOMPARE(first.Attribute(QStringLiteral("Empty")), QString());
        QVERIFY(!first.Attribute(QStringLiteral("name")).has_value());
        const XmlNode second = first.NextSibling();
        QCOMPARE(second.Attribute(QStringLiteral("Name")), QStringLiteral("\u20ac"));
        QVERIFY(!second.NextSibling());
        QVERIFY(!second.FirstChild());
    }

    void Paths_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("text");
        QTest::newRow("steps") << QStringLiteral("R/A/B") << QStringLiteral("1");
        QTest::newRow("slashes to spare") << QStringLiteral("/R//A/B/") << QStringLiteral("1");
        QTest::newRow("first of its name, no second try") << QStringLiteral("R/A/C") << QString();
        QTest::newRow("other case") << QStringLiteral("R/a/B") << QString();
        QTest::newRow("without the root") << QStringLiteral("A/B") << QString();
    }
    void Paths() {
        QFETCH(QString, path);
        QTEST(Root(QStringLiteral("<R><A><B>1</B></A><A><C>2</C></A></R>"), path).Text(), "text");
    }

    void NodesKeepTheirDocument() {
        XmlNode node = Root(QStringLiteral("<R><A><B k='v'>text</B></A></R>"), QStringLiteral("R/A"));
        node = node.FirstChild();
        QCOMPARE(node.Name(), QStringLiteral("B"));
        QCOMPARE(node.Xml(), QStringLiteral("<B k=\"v\">text</B>"));
    }

    void NoNodeAnswersNothing() {
        const XmlNode none;
        QVERIFY(!none && !none.FirstChild() && !none.NextSibling() && !none.NodeByPath(QStringLiteral("R")));
        QCOMPARE(none.Name() + none.Text() + none.Xml(), QString());
        QVERIFY(!none.Attribute(QStringLiteral("a")));
        QCOMPARE(none.ChildCount(), 0);
    }

    void RejectsWhatIsNotWellFormed_data() {
        QTest::addColumn<QString>("text");
        for (const char* text :
             {"", "   ", "text", "<R>", "<R></S>", "<R a=1/>", "<R/><R/>", "<R/>text", "text<R/>",
              "<!-- only -->", "<R", "<R><![CDATA[</R>", "<?xml version='1.0'?>", "</R>"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void RejectsWhatIsNotWellFormed() {
        QFETCH(QString, text);
        QVERIFY(!XmlDocument::FromText(text).has_value());
    }

    void HostileDepth() {
        const QString text = QStringLiteral("<a>").repeated(hostileDepth) + u'x' +
                             QStringLiteral("</a>").repeated(hostileDepth);
        XmlNode node = Root(text, QStringLiteral("a"));
        QVERIFY(node);
        QCOMPARE(node.Text(), QString());
        QCOMPARE(node.Xml(), text);
        XmlNode deepest = Root(text, QStringLiteral("a/").repeated(hostileDepth));
        QCOMPARE(deepest.Text(), QStringLiteral("x"));
        int depth = 0;
        for (; node; node = node.FirstChild())
            ++depth;
        QCOMPARE(depth, hostileDepth);
    }

    void HostileWidth() {
        constexpr int count = 100'000;
        QString attributes;
        for (int i = 0; i < count; ++i)
            attributes += QStringLiteral(" a%1='%1'").arg(i);
        const XmlNode root = Root(QStringLiteral("<R") + attributes + u'>' +
                                      QStringLiteral("<c/>").repeated(count) + QStringLiteral("</R>"),
                                  QStringLiteral("R"));
        QCOMPARE(root.Attribute(QStringLiteral("a99999")), QStringLiteral("99999"));
        QCOMPARE(root.ChildCount(), count);
    }

    void DocumentTypesFetchAndExpandNothing() {
        const QTemporaryDir folder;
        QVERIFY(LoadOctets(folder, "<R>secret</R>"));
        const XmlNode root = Root(
            QStringLiteral("<!DOCTYPE R [<!ENTITY file SYSTEM 'file://%1/document.xml'><!ENTITY a 'aaaa'>"
                           "<!ENTITY b '&a;&a;&a;&a;'>]><R>&file;&b;</R>")
                .arg(folder.path()),
            QStringLiteral("R"));
        QCOMPARE(root.Text(), QStringLiteral("&file;&b;"));
    }

    void FilesInAnyEncoding_data() {
        QTest::addColumn<QByteArray>("octets");
        QTest::addColumn<QString>("text");
        const QString euro = QStringLiteral("<R>\u20ac</R>");
        const QString marked = QChar(QChar::ByteOrderMark) + euro;
        QTest::newRow("UTF-8") << euro.toUtf8() << QStringLiteral("\u20ac");
        QTest::newRow("UTF-8 with mark") << marked.toUtf8() << QStringLiteral("\u20ac");
        QTest::newRow("UTF-16") << QByteArray(reinterpret_cast<const char*>(marked.utf16()),
                                              marked.size() * 2)
                                << QStringLiteral("\u20ac");
        QTest::newRow("Latin-1") << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><R>\xE9</R>")
                                 << QStringLiteral("\u00e9");
        QTest::newRow("broken UTF-8") << QByteArray("<R>a\xFFz</R>") << QStringLiteral("a\uFFFDz");
        QTest::newRow("blanks only") << QByteArray("<R>  </R>") << QStringLiteral("  ");
    }
    void FilesInAnyEncoding() {
        QFETCH(QByteArray, octets);
        const QTemporaryDir folder;
        const auto document = LoadOctets(folder, octets);
        QVERIFY(document);
        QTEST(document->NodeByPath(QStringLiteral("R")).Text(), "text");
    }

    void MissingFilesAndFoldersAreNoDocument() {
        const QTemporaryDir folder;
        QVERIFY(!XmlDocument::Load(ToPath(folder.path())));
        QVERIFY(!XmlDocument::Load(ToPath(folder.filePath(QStringLiteral("missing.xml")))));
    }
};

BTASK_TEST(XmlTest);
#include "XmlTest.moc"
