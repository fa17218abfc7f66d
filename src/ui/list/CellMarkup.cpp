#include "list/CellMarkup.h"

#include "look/IconRegistry.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QStringView IconMarker = u"#ICON:";
constexpr QStringView ProgressMarker = u"#Progress:";
constexpr QStringView StruckMarker = u"##";
/// Before data that begins like markup; its second character is in no text.
constexpr QStringView PlainMarker = u"#\uFDD0";
constexpr QStringView CaptionMarker = u"@@";

struct NamedSwatch {
    QStringView marker;
    SwatchColour colour;
    const char* words;
};
constexpr std::array<NamedSwatch, 3> Swatches{{
    {u"#COLOR:GREEN", SwatchColour::Green, QT_TRANSLATE_NOOP("CellMarkup", "Information")},
    {u"#COLOR:RED", SwatchColour::Red, QT_TRANSLATE_NOOP("CellMarkup", "Error")},
    {u"#COLOR:YELLOW", SwatchColour::Yellow, QT_TRANSLATE_NOOP("CellMarkup", "Warning")},
}};

bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

/// Takes blanks, a sign and decimal digits off the front of `text`. Nothing when there are no digits;
/// numbers beyond 64 bits become the largest or smallest one.
std::optional<qint64> TakeNumber(QStringView& text) {
    qsizetype at = 0;
    while (at < text.size() && (text[at] == u' ' || (text[at] >= u'\t' && text[at] <= u'\r')))
        ++at;
    const bool negative = at < text.size() && text[at] == u'-';
    if (at < text.size() && (negative || text[at] == u'+'))
        ++at;
    const qsizetype first = at;
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    qint64 value = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) {
        const int digit = text[at].unicode() - u'0';
        value = value > (most - digit) / 10 ? most : value * 10 + digit;
    }
    if (at == first)
        return std::nullopt;
    text = text.mid(at);
    return negative ? -value : value;
}

int ReadIconNumber(QStringView text) {
    const qint64 number = TakeNumber(text).value_or(0);
    return int(std::clamp<qint64>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// Producers print byte counts as signed 32-bit numbers, so those beyond 2 GiB arrive negative: the low 32
/// bits are what was meant.
quint32 LowBits(std::optional<qint64> number) {
    return quint32(quint64(number.value_or(0)));
}

void ReadProgress(QStringView text, CellMarkup& cell) {
    const std::optional<qint64> position = TakeNumber(text);
    const std::optional<qint64> maximum = position ? TakeNumber(text) : std::nullopt;
    cell.maximum = LowBits(maximum);
    cell.position = qMin(LowBits(position), cell.maximum);
}

void ReadCaption(QStringView text, CellMarkup& cell) {
    const qsizetype at = text.indexOf(CaptionMarker);
    cell.hasCaption = at >= 0;
    cell.text = cell.hasCaption ? text.mid(at + CaptionMarker.size()) : QStringView();
}

CellMarkup PlainCell(QStringView text) {
    CellMarkup cell;
    cell.text = text;
    cell.ellipsis = text.contains(u"...");
    return cell;
}

QString WordsOfIcon(const CellMarkup& cell) {
    if (cell.icon == 0)
        return {};
    if (cell.text.trimmed().isEmpty())
        return IconRegistry::Name(cell.icon).replace(u'-', u' ');
    constexpr QStringView invitation = u"click to ";
    const bool invites = cell.text.startsWith(invitation, Qt::CaseInsensitive);
    return (invites ? cell.text.mid(invitation.size()) : cell.text).toString();
}

QString WordsOfProgress(const CellMarkup& cell) {
    if (cell.maximum == 0)
        return {};
    const QString percent = QString::number(cell.position * 100.0 / cell.maximum, 'f', 2) + u" %"_s;
    return cell.hasCaption ? u"%1 (%2)"_s.arg(percent, cell.text) : percent;
}

} // namespace

CellMarkup CellMarkup::Parse(QStringView text) {
    CellMarkup cell;
    if (!text.startsWith(u'#'))
        return PlainCell(text);
    if (text.startsWith(PlainMarker))
        return PlainCell(text.mid(PlainMarker.size()));
    if (text.startsWith(IconMarker, Qt::CaseInsensitive)) {
        cell.kind = CellKind::Icon;
        cell.icon = ReadIconNumber(text.mid(IconMarker.size()));
        ReadCaption(text, cell);
        return cell;
    }
    if (text.startsWith(ProgressMarker, Qt::CaseInsensitive)) {
        cell.kind = CellKind::Progress;
        ReadProgress(text.mid(ProgressMarker.size()), cell);
        ReadCaption(text, cell);
        return cell;
    }
    if (text.startsWith(StruckMarker)) {
        cell.kind = CellKind::Struck;
        cell.text = text.mid(StruckMarker.size());
        return cell;
    }
    for (const NamedSwatch& swatch : Swatches) {
        if (text.compare(swatch.marker, Qt::CaseInsensitive) == 0) {
            cell.kind = CellKind::Swatch;
            cell.swatch = swatch.colour;
            return cell;
        }
    }
    return PlainCell(text);
}

QString CellMarkup::Caption() const {
    if (maximum == 0)
        return {};
    const QString percent = u"%1%"_s.arg(position * 100.0 / maximum, 5, 'f', 2);
    return hasCaption ? u"%1 (%2)"_s.arg(percent, text) : percent;
}

QString CellMarkup::Words() const {
    switch (kind) {
    case CellKind::Icon:
        return WordsOfIcon(*this);
    case CellKind::Progress:
        return WordsOfProgress(*this);
    case CellKind::Swatch:
        return QCoreApplication::translate("CellMarkup", Swatches[size_t(swatch)].words);
    case CellKind::Plain:
    case CellKind::Struck:
        break;
    }
    return text.toString();
}

QString Cell::Plain(const QString& data) {
    return data.startsWith(u'#') ? PlainMarker.toString() + data : data;
}

QString Cell::Icon(int icon, const QString& words) {
    return u"#ICON:%1@@"_s.arg(icon) + words;
}

QString Cell::ActivityIcon(int icon, const QString& activity) {
    return u"#ICON:%1#@@"_s.arg(icon) + activity + u"..."_s;
}

QString Cell::Progress(quint64 done, quint64 total, const QString& caption) {
    if (total == 0)
        return {};
    done = std::min(done, total);
    while (total > quint64(std::numeric_limits<qint32>::max())) {
        done >>= 1;
        total >>= 1;
    }
    const QString bar = u"#Progress:%1 %2"_s.arg(done).arg(total);
    return caption.isEmpty() ? bar : bar + u"@@"_s + caption;
}

QString Cell::Swatch(SwatchColour colour) {
    return Swatches[size_t(colour)].marker.toString();
}
