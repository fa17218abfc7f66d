#include "look/Formatters.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint64 KB = quint64(1) << 10;
constexpr quint64 MB = KB << 10;
constexpr quint64 GB = MB << 10;
constexpr quint64 TB = GB << 10;

} // namespace

QString FormatInUnit(quint64 bytes, quint64 unit) {
    return QString::asprintf("%6.3f", static_cast<double>(bytes) / static_cast<double>(unit));
}

QString FormatSize(quint64 bytes) {
    if (bytes > TB)
        return FormatInUnit(bytes, TB) + u" TB"_s;
    if (bytes >= GB)
        return FormatInUnit(bytes, GB) + u" GB"_s;
    if (bytes > MB)
        return FormatInUnit(bytes, MB) + u" MB"_s;
    return FormatInUnit(bytes, KB) + u" KB"_s;
}

QString FormatDuration(quint32 seconds) {
    return QString::asprintf("%02u:%02u:%02u", seconds / 3600, seconds % 3600 / 60, seconds % 60);
}

QString FormatRemaining(const QString& size, const QString& duration) {
    return QCoreApplication::translate("Formatters", "%1 (%2) Remaining").arg(size, duration);
}

QString Isolated(const QString& name) {
    constexpr QChar LeftToRight(0x2066);
    constexpr QChar RightToLeft(0x2067);
    constexpr QChar End(0x2069);
    const auto turns = [](QChar character) {
        const QChar::Direction direction = character.direction();
        return direction == QChar::DirR || direction == QChar::DirAL ||
               character.category() == QChar::Other_Format;
    };
    if (std::none_of(name.begin(), name.end(), turns))
        return name;
    // Marks have a direction too: the first letter tells that of the name.
    const auto letter = std::find_if(name.begin(), name.end(), [](QChar c) { return c.isLetter(); });
    return (letter != name.end() && turns(*letter) ? RightToLeft : LeftToRight) + name + End;
}
