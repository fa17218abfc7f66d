#include "look/Formatters.h"

#include <QCoreApplication>

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
        return FormatInUnit(bytes, TB) + QStringLiteral(" TB");
    if (bytes >= GB)
        return FormatInUnit(bytes, GB) + QStringLiteral(" GB");
    if (bytes > MB)
        return FormatInUnit(bytes, MB) + QStringLiteral(" MB");
    return FormatInUnit(bytes, KB) + QStringLiteral(" KB");
}

QString FormatDuration(quint32 seconds) {
    return QString::asprintf("%02u:%02u:%02u", seconds / 3600, seconds % 3600 / 60, seconds % 60);
}

QString FormatRemaining(const QString& size, const QString& duration) {
    return QCoreApplication::translate("Formatters", "%1 (%2) Remaining").arg(size, duration);
}
