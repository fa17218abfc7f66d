#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>

/// Text from UTF-8; each malformed sequence becomes U+FFFD. Zero octets and a leading byte order mark stay.
QString ZEPUTF8ToUnicode(QByteArrayView utf8);

/// UTF-8 of the text; a lone surrogate becomes U+FFFD.
QByteArray ZEPUnicodeToUTF8(QStringView text);

/// Percent-encodes everything but letters, digits and "-_.~".
QString ZEPUrlEncodeUnicode(QStringView text);

/// Decodes "%XX" as octets of UTF-8; a malformed escape stays as it stands. A plus sign stays a plus sign.
QString ZEPURLDecodeUTF8(QStringView text);
QByteArray ZEPURLDecodeUTF8(QByteArrayView encoded); ///< the octets themselves, whatever they are

/// Replaces character references (named of XML, decimal, hexadecimal); an unknown one stays as it stands.
QString HtmlDecode(const QString& text);
QByteArray HtmlDecode(QByteArray utf8); ///< malformed UTF-8 stays as it stands

QByteArray ZEPBase64Encode(QByteArrayView octets);

/// Text whose UTF-8 was encoded, blanks and line ends between the digits ignored; empty when `text` is not
/// Base64.
QString ZEPBase64DecodeUnicode(QStringView text);

/// As people read it, as in "12,400"; in the form of English where the computer's own has no name.
QString GroupedNumber(qint64 number);

/// A path from text, and the text of a path (which is lossy where the path's name is not Unicode).
std::filesystem::path ToPath(QStringView text);
QString FromPath(const std::filesystem::path& path);
