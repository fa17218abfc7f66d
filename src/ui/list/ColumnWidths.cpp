#include "list/ColumnWidths.h"

#include "list/HeaderCtrlCl.h"
#include "page/StateFile.h"

#include <QSettings>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int MostWidth = 4000;

/// Empty when none are remembered for that many columns.
std::vector<int> ReadColumnWidths(const QString& listName, std::size_t columns) {
    QSettings state(StateFile(), QSettings::IniFormat);
    state.beginGroup(u"ColumnWidths"_s);
    const QStringList remembered = state.value(listName).toStringList();
    if (std::size_t(remembered.size()) != columns)
        return {};
    std::vector<int> widths;
    for (const QString& width : remembered)
        widths.push_back(qBound(0, width.toInt(), MostWidth));
    return widths;
}

void WriteColumnWidths(const QString& listName, const std::vector<int>& widths) {
    QSettings state(StateFile(), QSettings::IniFormat);
    state.beginGroup(u"ColumnWidths"_s);
    QStringList remembered;
    for (const int width : widths)
        remembered.append(QString::number(width));
    state.setValue(listName, remembered);
}

/// Where room lacks, each column gives up what it can, none more than to its least.
std::vector<int> FittedWidths(const std::vector<ColumnRoom>& columns, int filled, int room) {
    int wanted = 0;
    int slack = 0;
    for (const ColumnRoom& column : columns) {
        wanted += column.wanted;
        slack += column.wanted - column.least;
    }
    const int cut = std::clamp(wanted - room, 0, slack);
    std::vector<int> widths;
    int before = 0; // slack of the columns so far: rounding leaves no pixel over
    for (const ColumnRoom& column : columns) {
        const int after = before + column.wanted - column.least;
        const auto share = [&](int part) { return slack == 0 ? 0 : int(qint64(cut) * part / slack); };
        widths.push_back(column.wanted - share(after) + share(before));
        before = after;
    }
    if (filled >= 0)
        widths[std::size_t(filled)] += std::max(room - wanted, 0);
    return widths;
}

} // namespace

ColumnWidths::ColumnWidths(CHeaderCtrlCl& header, const QWidget& room) : m_header(header), m_room(room) {
    QObject::connect(&header, &QHeaderView::sectionResized, &header,
                     [this](int column, int, int width) { OnResized(column, width); });
}

void ColumnWidths::Add(int width, int least) {
    m_widths.push_back(width);
    m_least.push_back(least);
    Fit();
}

void ColumnWidths::Remember(const QString& listName) {
    m_name = listName;
    const std::vector<int> remembered = ReadColumnWidths(listName, m_widths.size());
    m_chosen = m_chosen || !remembered.empty();
    for (std::size_t column = 0; column < remembered.size(); ++column) {
        if (remembered[column] > 0)
            m_widths[column] = remembered[column];
    }
    Fit();
}

void ColumnWidths::Keep() {
    Fit();
    if (!m_name.isEmpty())
        WriteColumnWidths(m_name, m_widths);
}

/// The first width that a user chooses fixes the others as they are.
void ColumnWidths::OnResized(int column, int width) {
    if (m_fitting || width == 0 || std::size_t(column) >= m_widths.size())
        return;
    if (!std::exchange(m_chosen, true)) {
        for (int other = 0; other < m_header.count(); ++other)
            m_widths[std::size_t(other)] =
                std::min(m_widths[std::size_t(other)], m_header.sectionSize(other));
    }
    m_widths[std::size_t(column)] = width;
}

void ColumnWidths::Fit() {
    if (std::exchange(m_fitting, true))
        return;
    std::vector<ColumnRoom> columns;
    int least = 0;
    for (int column = 0; column < int(m_widths.size()); ++column) {
        columns.push_back(RoomOf(column, m_header.TitleWidth(column)));
        least += columns.back().least;
    }
    // Titles are broken in two only where they must be.
    for (int column = 0; column < int(columns.size()) && least > m_room.width(); ++column) {
        ColumnRoom& room = columns[std::size_t(column)];
        room = {room.least, RoomOf(column, m_header.WrappedTitleWidth(column)).least};
    }
    const std::vector<int> widths = FittedWidths(columns, FilledColumn(), m_room.width());
    for (std::size_t column = 0; column < widths.size(); ++column)
        m_header.resizeSection(int(column), widths[column]);
    m_fitting = false;
}

/// Of a column whose title needs `title` pixels.
ColumnRoom ColumnWidths::RoomOf(int column, int title) const {
    const int wanted = m_widths[std::size_t(column)];
    const int least = std::max(title, m_least[std::size_t(column)]);
    return {wanted, m_chosen || title == 0 ? wanted : std::min(wanted, least)};
}

/// The last one with a title: icons look lost in the middle of a wide column.
int ColumnWidths::FilledColumn() const {
    int column = int(m_widths.size()) - 1;
    while (column >= 0 && m_header.TitleWidth(column) == 0)
        --column;
    return column;
}
