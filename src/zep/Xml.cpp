#include "zep/Xml.h"

#include "zep/Text.h"

#include <QList>

#include <pugixml.hpp>

#include <algorithm>
#include <fstream>
#include <sstream>

using namespace Qt::Literals::StringLiterals;

namespace {

bool IsText(const pugi::xml_node& node) {
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

/// The node itself when it is an element, otherwise the next of its siblings that is.
pugi::xml_node ElementFrom(pugi::xml_node node) {
    while (node && node.type() != pugi::node_element)
        node = node.next_sibling();
    return node;
}

class ByteWriter : public pugi::xml_writer {
public:
    QByteArray octets;

    void write(const void* data, size_t size) override {
        octets.append(static_cast<const char*>(data), qsizetype(size));
    }
};

/// Whether the document has one root element and no text beside it.
bool HasOneRootOnly(const pugi::xml_document& document) {
    const pugi::xml_node root = ElementFrom(document.first_child());
    const auto nodes = document.children();
    return root && !ElementFrom(root.next_sibling()) && std::none_of(nodes.begin(), nodes.end(), IsText);
}

} // namespace

XmlNode XmlNode::At(pugi::xml_node_struct* node) const {
    return node ? XmlNode(Handle(m_node, node)) : XmlNode();
}

QString XmlNode::Name() const {
    return ZEPUTF8ToUnicode(pugi::xml_node(m_node.get()).name());
}

QString XmlNode::Text() const {
    QByteArray text;
    for (const pugi::xml_node child : pugi::xml_node(m_node.get()).children()) {
        if (IsText(child))
            text.append(child.value());
    }
    return ZEPUTF8ToUnicode(text);
}

QString XmlNode::Xml() const {
    ByteWriter writer;
    // Raw: indents would make the text of a deep tree grow with the square of its depth.
    pugi::xml_node(m_node.get()).print(writer, "", pugi::format_raw, pugi::encoding_utf8);
    return ZEPUTF8ToUnicode(writer.octets);
}

std::optional<QString> XmlNode::Attribute(const QString& name) const {
    const pugi::xml_attribute attribute =
        pugi::xml_node(m_node.get()).attribute(ZEPUnicodeToUTF8(name).constData());
    return attribute ? std::optional(ZEPUTF8ToUnicode(attribute.value())) : std::nullopt;
}

XmlNode XmlNode::FirstChild() const {
    return At(ElementFrom(pugi::xml_node(m_node.get()).first_child()).internal_object());
}

XmlNode XmlNode::NextSibling() const {
    return At(ElementFrom(pugi::xml_node(m_node.get()).next_sibling()).internal_object());
}

int XmlNode::ChildCount() const {
    int count = 0;
    pugi::xml_node child = ElementFrom(pugi::xml_node(m_node.get()).first_child());
    for (; child; child = ElementFrom(child.next_sibling()))
        ++count;
    return count;
}

XmlNode XmlNode::NodeByPath(const QString& path) const {
    const QList<QByteArray> steps = ZEPUnicodeToUTF8(path).split('/');
    pugi::xml_node node(m_node.get());
    for (const QByteArray& name : steps) {
        if (!name.isEmpty())
            node = node.child(name.constData());
    }
    return At(node.internal_object());
}

std::optional<XmlDocument> XmlDocument::Load(const std::filesystem::path& file, XmlFailure* failure) {
    std::ifstream input(file, std::ios::binary); // Qt's files lose what is no text in a path
    std::ostringstream octets;
    octets << input.rdbuf();
    if (input.is_open())
        return Parse(QByteArray::fromStdString(octets.str()), pugi::encoding_auto, failure);
    if (failure)
        *failure = {0, u"it cannot be opened."_s};
    return std::nullopt;
}

std::optional<XmlDocument> XmlDocument::FromText(const QString& text) {
    return Parse(ZEPUnicodeToUTF8(text), pugi::encoding_utf8, nullptr);
}

std::optional<XmlDocument> XmlDocument::Parse(const QByteArray& octets, int encoding, XmlFailure* failure) {
    const auto document = std::make_shared<pugi::xml_document>();
    // As a fragment, text outside of the root is kept and can be told.
    constexpr unsigned flags = pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_fragment;
    const pugi::xml_parse_result result =
        document->load_buffer(octets.constData(), size_t(octets.size()), flags, pugi::xml_encoding(encoding));
    if (result && HasOneRootOnly(*document))
        return XmlDocument(XmlNode(XmlNode::Handle(document, document->internal_object())));
    if (failure) {
        const qsizetype read = std::clamp<qsizetype>(result.offset, 0, octets.size());
        *failure = {static_cast<int>(1 + octets.first(read).count('\n')),
                    QString::fromLatin1(result ? "there is not one element around all others."
                                               : result.description())};
    }
    return std::nullopt;
}
