#include "list/ColumnWidths.h"

#include "platform/Folders.h"

#include <QSettings>

namespace {

constexpr int MostWidth = 4000;

QString StateFile() {
    return QString::fromStdString(platform::Utf8FromPath(platform::ConsoleStateFile()));
}

} // namespace

std::vector<int> ReadColumnWidths(const QString& listName, size_t columns) {
    QSettings state(StateFile(), QSettings::IniFormat);
    state.beginGroup(QStringLiteral("ColumnWidths"));
    const QStringList remembered = state.value(listName).toStringList();
    if (size_t(remembered.size()) != columns)
        return {};
    std::vector<int> widths;
    for (const QString& width : remembered)
        widths.push_back(qBound(0, width.toInt(), MostWidth));
    return widths;
}

void WriteColumnWidths(const QString& listName, const std::vector<int>& widths) {
    QSettings state(StateFile(), QSettings::IniFormat);
    state.beginGroup(QStringLiteral("ColumnWidths"));
    QStringList remembered;
    for (const int width : widths)
        remembered.append(QString::number(width));
    state.setValue(listName, remembered);
}
