#include "zep/Text.h"

#include "platform/Folders.h"

#include <QLocale>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <optional>

namespace {

/// The value of a hexadecimal digit, -1 of any other octet.
int HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

/// The character that the digits after "&#" or "&#x" name; none when there is no such character.
std::optional<char32_t> NumberedCharacter(QStringView digits) {
    const bool hexadecimal = digits.startsWith(u'x') || digits.startsWith(u'X');
    if (hexadecimal)
        digits = digits.sliced(1);
    if (digits.isEmpty())
        return std::nullopt;
    const uint base = hexadecimal ? 16 : 10;
    char32_t code = 0;
    for (const QChar c : digits) {
        const int digit = HexDigit(c.toLatin1());
        if (digit < 0 || uint(digit) >= base)
            return std::nullopt;
        code = code * base + uint(digit);
        if (code > QChar::LastValidCodePoint)
            return std::nullopt;
    }
    if (code == 0 || QChar::isSurrogate(code))
        return std::nullopt;
    return code;
}

/// The character that stands for "&" + `name` + ";".
std::optional<char32_t> ReferencedCharacter(QStringView name) {
    struct Named {
        QStringView name;
        char32_t character;
    };
    static constexpr std::array<Named, 5> named{
        {{u"amp", U'&'}, {u"lt", U'<'}, {u"gt", U'>'}, {u"quot", U'"'}, {u"apos", U'\''}}};
    if (name.startsWith(u'#'))
        return NumberedCharacter(name.sliced(1));
    for (const Named& candidate : named) {
        if (name == candidate.name)
            return candidate.character;
    }
    return std::nullopt;
}

QStringView Wide(QStringView text) {
    return text;
}

QString Wide(QByteArrayView octets) {
    return QString::fromLatin1(octets);
}

/// Replaces the references of a text by what `encode` makes of their characters.
template <typename String, typename View, typename Encode>
String DecodeReferences(View text, Encode encode) {
    // Leading zeros make a reference long; beyond this it is no reference, so that a text of ampersands
    // costs no more than its length.
    constexpr qsizetype longestReference = 32;
    using Unit = typename String::value_type;
    String decoded;
    decoded.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == Unit(u'&')) {
            const View behind = text.sliced(i + 1);
            const View rest = behind.first(std::min(behind.size(), longestReference));
            const qsizetype end = rest.indexOf(Unit(u';'));
            const auto character = end < 0 ? std::nullopt : ReferencedCharacter(Wide(rest.first(end)));
            if (character) {
                decoded.append(encode(*character));
                i += end + 1;
                continue;
            }
        }
        decoded.append(text.at(i));
    }
    return decoded;
}

} // namespace

QString ZEPUTF8ToUnicode(QByteArrayView utf8) {
    constexpr char bomStart = '\xEF';
    if (!utf8.isEmpty() && utf8.front() != bomStart)
        return QString::fromUtf8(utf8); // much quicker, and the same but for a byte order mark at the front
    using Flag = QStringConverter::Flag;
    QStringDecoder decoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    return decoder(utf8);
}

QByteArray ZEPUnicodeToUTF8(QStringView text) {
    if (text.isValidUtf16())
        return text.toUtf8();
    QString valid = text.toString();
    for (qsizetype i = 0; i < valid.size(); ++i) {
        if (!valid.at(i).isSurrogate())
            continue;
        const bool pair =
            valid.at(i).isHighSurrogate() && i + 1 < valid.size() && valid.at(i + 1).isLowSurrogate();
        if (pair)
            ++i;
        else
            valid[i] = QChar::ReplacementCharacter;
    }
    return valid.toUtf8();
}

QString ZEPUrlEncodeUnicode(QStringView text) {
    return QString::fromLatin1(ZEPUnicodeToUTF8(text).toPercentEncoding());
}

QString ZEPURLDecodeUTF8(QStringView text) {
    return ZEPUTF8ToUnicode(ZEPURLDecodeUTF8(QByteArrayView(ZEPUnicodeToUTF8(text))));
}

QByteArray ZEPURLDecodeUTF8(QByteArrayView encoded) {
    QByteArray decoded(encoded.size(), Qt::Uninitialized);
    char* end = decoded.data();
    for (qsizetype i = 0; i < encoded.size();) {
        const qsizetype mark = std::find(encoded.begin() + i, encoded.end(), '%') - encoded.begin();
        end = std::copy(encoded.begin() + i, encoded.begin() + mark, end);
        i = mark;
        if (mark == encoded.size())
            break;
        const int high = mark + 2 < encoded.size() ? HexDigit(encoded[mark + 1]) : -1;
        const int low = high >= 0 ? HexDigit(encoded[mark + 2]) : -1;
        *end++ = low >= 0 ? char(high * 16 + low) : '%';
        i += low >= 0 ? 3 : 1;
    }
    decoded.truncate(end - decoded.constData());
    return decoded;
}

QString HtmlDecode(const QString& text) {
    return DecodeReferences<QString, QStringView>(
        text, [](char32_t character) { return QStringView(QChar::fromUcs4(character)).toString(); });
}

QByteArray HtmlDecode(QByteArray utf8) {
    if (!utf8.contains('&'))
        return utf8;
    return DecodeReferences<QByteArray, QByteArrayView>(
        utf8, [](char32_t character) { return QStringView(QChar::fromUcs4(character)).toUtf8(); });
}

QByteArray ZEPBase64Encode(QByteArrayView octets) {
    return QByteArray::fromRawData(octets.data(), octets.size()).toBase64();
}

QString ZEPBase64DecodeUnicode(QStringView text) {
    QByteArray digits = text.toLatin1();
    digits.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    const auto result = QByteArray::fromBase64Encoding(digits, QByteArray::AbortOnBase64DecodingErrors);
    return result ? ZEPUTF8ToUnicode(*result) : QString();
}

QString GroupedNumber(qint64 number) {
    const QLocale locale;
    return (locale.language() == QLocale::C ? QLocale(QLocale::English) : locale).toString(number);
}

std::filesystem::path ToPath(QStringView text) {
    return platform::PathFromUtf8(ZEPUnicodeToUTF8(text).toStdString());
}

QString FromPath(const std::filesystem::path& path) {
    return ZEPUTF8ToUnicode(platform::Utf8FromPath(path));
}
