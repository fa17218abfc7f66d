#include "list/BrenListCtrl.h"

#include "list/CellMarkup.h"
#include "list/ColumnWidths.h"
#include "list/ListText.h"
#include "list/VirtualKey.h"
#include "look/Look.h"
#include "page/UserPrompts.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QSaveFile>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int RowHeight = 24;

} // namespace

CBrenListCtrl::CBrenListCtrl(UserPrompts& prompts, QWidget* parent)
    : QTableView(parent), m_prompts(prompts), m_delegate(m_model), m_header(new CHeaderCtrlCl(this)) {
    setModel(&m_model);
    setItemDelegate(&m_delegate);
    setHorizontalHeader(m_header);
    setFont(Look::Font(Look::Small));
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(RowHeight);
    verticalHeader()->setDefaultSectionSize(RowHeight);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    connect(&m_model, &BrenListModel::CountsChanged, this, &CBrenListCtrl::CountsChanged);
    connect(m_header, &QHeaderView::sectionClicked, this, &CBrenListCtrl::SortByNext);
    connect(m_header, &CHeaderCtrlCl::DividerReleased, this, &CBrenListCtrl::KeepWidths);
    connect(m_header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (!m_filling && width > 0)
            m_widths[size_t(column)] = width;
    });
}

int CBrenListCtrl::AddColumn(const QString& title, int width, Qt::Alignment alignment) {
    m_widths.push_back(width);
    const int column = m_model.AddColumn(title, alignment);
    SetColumnWidth(column, width);
    return column;
}

void CBrenListCtrl::SetColumnWidth(int column, int width) {
    setColumnHidden(column, width == 0);
    m_widths[size_t(column)] = width;
    FillWidth();
}

void CBrenListCtrl::RememberWidths(const QString& listName) {
    m_name = listName;
    const std::vector<int> widths = ReadColumnWidths(listName, m_widths.size());
    for (size_t column = 0; column < widths.size(); ++column) {
        if (widths[column] > 0 && m_widths[column] > 0)
            m_widths[column] = widths[column];
    }
    FillWidth();
}

void CBrenListCtrl::KeepWidths() {
    FillWidth();
    updateGeometries();
    if (!m_name.isEmpty())
        WriteColumnWidths(m_name, m_widths);
}

void CBrenListCtrl::FillWidth() {
    if (std::exchange(m_filling, true))
        return;
    const std::vector<int> columns = VisibleColumns();
    int left = viewport()->width();
    for (const int column : columns)
        left -= m_widths[size_t(column)];
    const int filled = FilledColumn(columns);
    for (const int column : columns)
        setColumnWidth(column, m_widths[size_t(column)] + (column == filled ? std::max(left, 0) : 0));
    m_filling = false;
}

/// The last one with a title: icons look lost in the middle of a wide column.
int CBrenListCtrl::FilledColumn(const std::vector<int>& columns) const {
    const auto titled = std::find_if(columns.rbegin(), columns.rend(), [this](int column) {
        return !m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().isEmpty();
    });
    return titled == columns.rend() ? -1 : *titled;
}

void CBrenListCtrl::SetTableKind(TableKind kind) {
    m_kind = kind;
    m_header->setSectionsClickable(kind == TableKind::Record);
    if (kind == TableKind::Fixed) {
        m_model.SetFilter({}, {});
        SortBy(-1, {});
    }
}

void CBrenListCtrl::SetCustomHeader(bool custom) {
    m_header->SetCustom(custom);
    updateGeometries();
    viewport()->update();
}

void CBrenListCtrl::SetUnshadedColumn(int column) {
    m_delegate.colours.unshadedColumn = column;
    viewport()->update();
}

void CBrenListCtrl::SetAccentColumn(int column) {
    m_delegate.colours.accentColumn = column;
    viewport()->update();
}

void CBrenListCtrl::SetRowShading(bool shading) {
    m_delegate.colours.rowShading = shading;
    viewport()->update();
}

void CBrenListCtrl::SetMultiSelection(bool multi) {
    setSelectionMode(multi ? ExtendedSelection : SingleSelection);
}

void CBrenListCtrl::SetEmptyText(const QString& text) {
    if (std::exchange(m_emptyText, text) != text)
        viewport()->update();
}

void CBrenListCtrl::SetLoading(const QString& text) {
    m_loadingText = text;
    viewport()->update();
}

QString CBrenListCtrl::TextWithoutRows() const {
    if (!m_loadingText.isNull())
        return m_loadingText;
    const bool filteredOut = m_model.TotalRows() > 0;
    return filteredOut ? tr("No row contains \"%1\"").arg(m_model.Filter()) : m_emptyText;
}

void CBrenListCtrl::EndLoading() {
    if (!std::exchange(m_loadingText, QString()).isNull())
        viewport()->update();
}

void CBrenListCtrl::AppendRows(std::vector<ListRow> rows) {
    m_model.AppendRows(std::move(rows));
    EndLoading();
}

void CBrenListCtrl::SetRows(std::vector<ListRow> rows) {
    const std::vector<Anchor> anchors = VisibleRows();
    m_model.SetRows(std::move(rows));
    ScrollBackTo(anchors);
    EndLoading();
}

std::vector<CBrenListCtrl::Anchor> CBrenListCtrl::VisibleRows() const {
    std::vector<Anchor> anchors;
    const int first = rowAt(0);
    for (int row = first; row >= 0 && row < m_model.rowCount(); ++row) {
        const int offset = rowViewportPosition(row);
        if (offset >= viewport()->height())
            break;
        anchors.push_back({m_model.index(row, 0), offset});
    }
    return anchors;
}

void CBrenListCtrl::ScrollBackTo(const std::vector<Anchor>& anchors) {
    const auto anchor =
        std::find_if(anchors.begin(), anchors.end(), [](const Anchor& row) { return row.cell.isValid(); });
    if (anchor == anchors.end())
        return;
    executeDelayedItemsLayout();
    QScrollBar* bar = verticalScrollBar();
    bar->setValue(bar->value() + rowViewportPosition(anchor->cell.row()) - anchor->offset);
}

QStringList CBrenListCtrl::SelectedIds() const {
    QStringList ids;
    for (const int row : SelectedRows())
        ids.append(m_model.RowId(row));
    return ids;
}

QString CBrenListCtrl::CurrentId() const {
    return m_model.RowId(currentIndex().row());
}

std::vector<int> CBrenListCtrl::SelectedRows() const {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

std::vector<int> CBrenListCtrl::VisibleColumns() const {
    std::vector<int> columns;
    for (int column = 0; column < m_model.columnCount(); ++column) {
        if (!isColumnHidden(column))
            columns.push_back(column);
    }
    return columns;
}

void CBrenListCtrl::SetFilter(const QString& words) {
    if (m_kind == TableKind::Record)
        m_model.SetFilter(words, VisibleColumns());
}

void CBrenListCtrl::SortByNext(int column) {
    if (m_kind != TableKind::Record)
        return;
    if (m_model.SortColumn() != column)
        SortBy(column, Qt::AscendingOrder);
    else if (m_model.SortOrder() == Qt::AscendingOrder)
        SortBy(column, Qt::DescendingOrder);
    else
        SortBy(-1, {});
}

void CBrenListCtrl::SortBy(int column, std::optional<Qt::SortOrder> order) {
    m_model.SortBy(column, order);
    m_header->setSortIndicatorShown(order.has_value());
    m_header->setSortIndicator(order ? column : -1, order.value_or(Qt::AscendingOrder));
    m_header->viewport()->update();
}

void CBrenListCtrl::keyboardSearch(const QString& search) {
    const int rows = m_model.rowCount();
    const std::vector<int> columns = VisibleColumns();
    if (rows == 0 || columns.empty() || search.isEmpty())
        return;
    if (!m_sinceTyped.isValid() || m_sinceTyped.hasExpired(QApplication::keyboardInputInterval()))
        m_typed.clear();
    m_sinceTyped.start();
    m_typed += search;
    const bool sameAgain = m_typed.count(m_typed.front()) == m_typed.size();
    const QString wanted = sameAgain ? m_typed.left(1) : m_typed;
    const int from = std::max(currentIndex().row(), 0) + (sameAgain && currentIndex().isValid() ? 1 : 0);
    for (int step = 0; step < rows; ++step) {
        const int row = (from + step) % rows;
        const bool starts = std::any_of(columns.begin(), columns.end(), [&](int column) {
            const QString words = CellMarkup::Parse(m_model.CellText(row, column)).Words();
            return words.startsWith(wanted, Qt::CaseInsensitive);
        });
        if (starts) {
            setCurrentIndex(m_model.index(row, std::max(currentIndex().column(), columns.front())));
            return;
        }
    }
}

void CBrenListCtrl::CopySelected() {
    std::vector<int> rows = SelectedRows();
    if (rows.empty() && currentIndex().isValid())
        rows.push_back(currentIndex().row());
    if (!rows.empty())
        m_prompts.SetClipboardText(RowsAsLines(m_model, rows, VisibleColumns()));
}

void CBrenListCtrl::ExportRows() {
    const PickRequest request{PickKind::FileToSave, tr("Export"),
                              (m_name.isEmpty() ? tr("List") : m_name) + QStringLiteral(".csv"),
                              tr("CSV files (*.csv);;All files (*)")};
    m_prompts.PickPath(this, request, [this](const std::optional<QString>& path) {
        if (!path)
            return;
        QSaveFile file(*path);
        // The mark tells spreadsheets that the text is UTF-8.
        const QByteArray octets =
            (QChar(QChar::ByteOrderMark) + RowsAsCsv(m_model, VisibleColumns())).toUtf8();
        if (!file.open(QIODevice::WriteOnly) || file.write(octets) != octets.size() || !file.commit())
            m_prompts.ShowMessage(this, tr("The file could not be written."), {},
                                  *path + u'\n' + file.errorString());
    });
}

void CBrenListCtrl::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (m_model.rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(Look::Muted);
    painter.drawText(viewport()->rect().adjusted(Look::TextInset, 0, -Look::TextInset, 0),
                     Qt::AlignCenter | Qt::TextWordWrap, TextWithoutRows());
}

void CBrenListCtrl::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    FillWidth();
}

void CBrenListCtrl::mousePressEvent(QMouseEvent* event) {
    m_pressed = indexAt(event->pos());
    QTableView::mousePressEvent(event);
}

void CBrenListCtrl::mouseReleaseEvent(QMouseEvent* event) {
    // A refresh between press and release may have moved another row below the pointer.
    const QModelIndex cell = indexAt(event->pos());
    const bool clicked = cell.isValid() && cell == m_pressed;
    m_pressed = QModelIndex();
    QTableView::mouseReleaseEvent(event);
    if (clicked && event->button() == Qt::LeftButton)
        Post(&CBrenListCtrl::LeftClicked, cell);
}

/// A click on an icon acts on the row, or on all selected ones when it is one of them: they stay selected.
QItemSelectionModel::SelectionFlags CBrenListCtrl::selectionCommand(const QModelIndex& index,
                                                                    const QEvent* event) const {
    const bool click =
        event && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease);
    const auto* mouse = click ? static_cast<const QMouseEvent*>(event) : nullptr;
    const bool onIcon =
        index.isValid() &&
        CellMarkup::Parse(m_model.CellText(index.row(), index.column())).kind == CellKind::Icon;
    if (mouse && mouse->modifiers() == Qt::NoModifier && onIcon && selectionModel()->isSelected(index))
        return QItemSelectionModel::NoUpdate;
    return QTableView::selectionCommand(index, event);
}

void CBrenListCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
    m_pressed = QModelIndex();
    QTableView::mouseDoubleClickEvent(event);
}

void CBrenListCtrl::Post(CellSignal signal, const QModelIndex& cell) {
    if (cell.column() < 1)
        return;
    QMetaObject::invokeMethod(
        this,
        [this, signal, row = cell.row(), column = cell.column(), id = m_model.RowId(cell.row())] {
            emit(this->*signal)(row, column, id);
        },
        Qt::QueuedConnection);
}

void CBrenListCtrl::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->matches(QKeySequence::Copy))
        CopySelected();
    else if (event->matches(QKeySequence::Find) && m_kind == TableKind::Record)
        emit FindRequested();
    else if (enter && currentIndex().column() > 0 && !event->isAutoRepeat())
        Post(&CBrenListCtrl::LeftClicked, currentIndex());
    else
        QTableView::keyPressEvent(event);
}

void CBrenListCtrl::keyReleaseEvent(QKeyEvent* event) {
    QTableView::keyReleaseEvent(event);
    if (event->isAutoRepeat())
        return;
    QMetaObject::invokeMethod(
        this,
        [this, key = VirtualKeyOf(*event), flags = ReleasedKeyFlags(*event)] {
            emit KeyReleased(key, flags);
        },
        Qt::QueuedConnection);
}

void CBrenListCtrl::contextMenuEvent(QContextMenuEvent* event) {
    // Told here and not at the button's release, which the menu takes where it opens at the press.
    if (event->reason() == QContextMenuEvent::Mouse)
        Post(&CBrenListCtrl::RightClicked, indexAt(event->pos()));
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(actions());
    menu->addSeparator();
    menu->addAction(tr("Copy"), QKeySequence::Copy, this, &CBrenListCtrl::CopySelected)
        ->setEnabled(currentIndex().isValid());
    if (m_kind == TableKind::Record) {
        menu->addAction(tr("Find..."), QKeySequence::Find, this, &CBrenListCtrl::FindRequested);
        AddSortMenu(*menu);
    }
    menu->addAction(tr("Export as CSV..."), this, &CBrenListCtrl::ExportRows)
        ->setEnabled(m_model.rowCount() > 0);
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid();
    menu->popup(byKey ? viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft())
                      : event->globalPos());
}

void CBrenListCtrl::AddSortMenu(QMenu& menu) {
    QMenu* sorts = menu.addMenu(tr("Sort By"));
    for (const int column : VisibleColumns()) {
        const QString title = m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        if (!title.isEmpty())
            sorts->addAction(title, this, [this, column] { SortByNext(column); });
    }
}

void CBrenListCtrl::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
    // The view would select a neighbour in the place of a selected row that goes, for commands to act upon.
    const QModelIndex current = currentIndex();
    if (current.row() >= start && current.row() <= end) {
        const int neighbour = end + 1 < m_model.rowCount() ? end + 1 : start - 1;
        selectionModel()->setCurrentIndex(m_model.index(neighbour, current.column()),
                                          QItemSelectionModel::NoUpdate);
    }
    QTableView::rowsAboutToBeRemoved(parent, start, end);
}
