#pragma once

#include <QString>

#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

namespace pugi {
struct xml_node_struct;
}

/// A place in an XmlDocument, which it keeps alive; empty when there is no such place. Any thread may read.
class XmlNode {
public:
    XmlNode() = default;
    explicit operator bool() const { return m_node != nullptr; }

    QString Name() const;
    QString Text() const; ///< the text directly below the node
    QString Xml() const;  ///< the node itself as a document text
    std::optional<QString> Attribute(const QString& name) const;

    XmlNode FirstChild() const;  ///< elements only
    XmlNode NextSibling() const; ///< elements only
    int ChildCount() const;      ///< elements only

    /// The node at a slash path below this one; the first of its name at each step.
    XmlNode NodeByPath(const QString& path) const;

private:
    friend class XmlDocument;
    using Handle = std::shared_ptr<pugi::xml_node_struct>; ///< shares the whole document
    explicit XmlNode(Handle node) : m_node(std::move(node)) {}

    XmlNode At(pugi::xml_node_struct* node) const;

    Handle m_node;
};

/// Why a file is no document.
struct XmlFailure {
    int line = 0; ///< counted from 1; 0 when the file was not read at all
    QString reason;
};

/// A parsed document. Documents of any depth are read; what is not well-formed is no document. Nothing that a
/// document type names is fetched or expanded.
class XmlDocument {
public:
    /// `failure` is filled when the result is none.
    static std::optional<XmlDocument> Load(const std::filesystem::path& file, XmlFailure* failure = nullptr);
    static std::optional<XmlDocument> FromText(const QString& text);

    /// The node at a slash path from the root, as in "Response/VDirs"; the first of its name at each step.
    XmlNode NodeByPath(const QString& path) const { return m_top.NodeByPath(path); }

private:
    explicit XmlDocument(XmlNode top) : m_top(std::move(top)) {}
    static std::optional<XmlDocument> Parse(const QByteArray& octets, int encoding, XmlFailure* failure);

    XmlNode m_top; ///< whose only element is the root
};
