#include "Require.h"
#include "zep/Text.h"
#include "zep/Xml.h"

#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Walks all elements without a stack of its own depth: down the first children, along each one's siblings.
void Walk(XmlNode node) {
    for (; node; node = node.FirstChild()) {
        node.Text();
        node.Attribute(u"Name"_s);
        int siblings = 0;
        for (XmlNode sibling = node; sibling; sibling = sibling.NextSibling()) {
            Require(!sibling.Name().isEmpty());
            ++siblings;
        }
        Require(node.ChildCount() == 0 || node.FirstChild());
        Require(siblings > 0);
    }
}

/// A document of the pieces that the octets choose, mostly well-formed: random octets hardly ever are.
QString Compose(QByteArrayView choices) {
    static const QStringList pieces{u"text"_s,
                                    u"&lt;"_s,
                                    u"&#65;"_s,
                                    u" "_s,
                                    u"&x;"_s,
                                    u"<![CDATA[]]]]>"_s,
                                    u"<!---->"_s,
                                    u"<?p q?>"_s,
                                    u"<b c='&amp;' c=\"\n\"/>"_s,
                                    u"<"_s,
                                    u"]]>"_s,
                                    u"&"_s,
                                    u"<!DOCTYPE a [<!ENTITY x 'y'>]>"_s};
    QString text;
    QString open;
    for (const char choice : choices) {
        const auto number = uchar(choice);
        if (number < 96) {
            open += QChar(u'a' + number % 4);
            text += u"<%1 Name='%2'>"_s.arg(open.back()).arg(number);
        } else if (number < 192 && !open.isEmpty()) {
            text += u"</%1>"_s.arg(open.back());
            open.chop(1);
        } else {
            text += pieces.at(number % pieces.size());
        }
    }
    while (!open.isEmpty()) {
        text += u"</%1>"_s.arg(open.back());
        open.chop(1);
    }
    return text;
}

void Check(const QString& text) {
    const auto document = XmlDocument::FromText(text);
    if (!document)
        return;
    const XmlNode top = document->NodeByPath({});
    Require(top.ChildCount() == 1);
    const XmlNode root = top.FirstChild();
    Walk(root);
    Require(bool(document->NodeByPath(root.Name())));
    document->NodeByPath(text.left(200));
    // What is written is read again as the same.
    const auto again = XmlDocument::FromText(root.Xml());
    Require(again && again->NodeByPath({}).FirstChild().Xml() == root.Xml());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArrayView octets(data, qsizetype(size));
    Check(ZEPUTF8ToUnicode(octets));
    Check(Compose(octets));
    return 0;
}
