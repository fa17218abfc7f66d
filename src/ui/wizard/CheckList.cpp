#include "wizard/CheckList.h"

#include "look/Look.h"

#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace {

constexpr int RowHeight = 24;

} // namespace

CheckList::CheckList(const QString& name, const std::vector<std::pair<QString, int>>& columns,
                     QWidget* parent)
    : QTreeWidget(parent) {
    setAccessibleName(name);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    setFont(Look::Font(Look::Small));
    Look::TintSelection(*this);
    setColumnCount(int(columns.size()));
    for (int column = 0; column < columnCount(); ++column) {
        headerItem()->setText(column, columns[std::size_t(column)].first);
        setColumnWidth(column, columns[std::size_t(column)].second);
    }
    setHeaderHidden(columns.size() == 1 && columns.front().first.isEmpty());
    connect(this, &QTreeWidget::itemChanged, this, &CheckList::Edited);
}

int CheckList::AddRow(const QStringList& cells, bool ticked) {
    auto* item = new QTreeWidgetItem(cells);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
                   Qt::ItemNeverHasChildren);
    item->setSizeHint(0, QSize(0, RowHeight));
    item->setCheckState(0, ticked ? Qt::Checked : Qt::Unchecked);
    for (int column = 0; column < cells.size(); ++column)
        item->setToolTip(column, Look::ToolTip(cells.at(column)));
    addTopLevelItem(item);
    return topLevelItemCount() - 1;
}

void CheckList::SetTicked(int row, bool ticked) {
    topLevelItem(row)->setCheckState(0, ticked ? Qt::Checked : Qt::Unchecked);
}

bool CheckList::IsTicked(int row) const {
    return topLevelItem(row)->checkState(0) == Qt::Checked;
}

std::vector<int> CheckList::TickedRows() const {
    std::vector<int> rows;
    for (int row = 0; row < topLevelItemCount(); ++row)
        if (IsTicked(row))
            rows.push_back(row);
    return rows;
}

void CheckList::ToggleSelected() {
    QList<QTreeWidgetItem*> items = selectedItems();
    if (items.isEmpty() && currentItem())
        items.append(currentItem());
    const bool all = std::all_of(items.begin(), items.end(), [](const QTreeWidgetItem* item) {
        return item->checkState(0) == Qt::Checked;
    });
    for (QTreeWidgetItem* item : items)
        item->setCheckState(0, all ? Qt::Unchecked : Qt::Checked);
}

void CheckList::keyPressEvent(QKeyEvent* event) {
    const bool ticks =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    if (!ticks) {
        QTreeWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat())
        ToggleSelected();
}
