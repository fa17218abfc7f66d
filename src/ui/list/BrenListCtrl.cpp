#include "list/BrenListCtrl.h"

#include "lanes/PageLoader.h"
#include "list/CellMarkup.h"
#include "look/Look.h"
#include "page/UserPrompts.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int RowHeight = 24;

} // namespace

CBrenListCtrl::CBrenListCtrl(UserPrompts& prompts, QWidget* parent)
    : QTableView(parent), m_prompts(prompts), m_delegate(m_model), m_finder(*this, m_model),
      m_header(new CHeaderCtrlCl(this)), m_widths(*m_header, *viewport()) {
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
    connect(m_header, &CHeaderCtrlCl::DividerReleased, this, [this] {
        m_widths.Keep();
        updateGeometries();
    });
}

CBrenListCtrl::~CBrenListCtrl() = default;

void CBrenListCtrl::WorkOn(Reader& reader) {
    m_work = std::make_unique<PageLoader>(reader, *this);
    m_finder.WorkOn(reader);
}

int CBrenListCtrl::AddColumn(const QString& title, int width, Qt::Alignment alignment, const QString& name,
                             int least) {
    const int column = m_model.AddColumn(title, alignment, name);
    m_widths.Add(width, least);
    return column;
}

void CBrenListCtrl::RememberWidths(const QString& listName) {
    m_name = listName;
    m_widths.Remember(listName);
}

QString CBrenListCtrl::Title(int column) const {
    return m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
}

void CBrenListCtrl::SetTableKind(TableKind kind) {
    m_kind = kind;
    m_header->setSectionsClickable(kind == TableKind::Record);
    if (kind == TableKind::Fixed)
        Arrange({});
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
    if (m_model.TotalRows() == 0)
        return m_emptyText;
    const QString words = m_model.Arranged().words;
    return words.isEmpty() ? tr("All rows are hidden.") : tr("No row contains \"%1\"").arg(words);
}

void CBrenListCtrl::EndLoading() {
    if (!std::exchange(m_loadingText, QString()).isNull())
        viewport()->update();
}

void CBrenListCtrl::SetRows(RowSet rows) {
    m_wanted = std::move(rows);
    Update();
    EndLoading();
}

void CBrenListCtrl::AppendRows(const RowSet& rows) {
    m_wanted = rows;
    if (m_underWay || !m_wantedOrder.IsPlain())
        Update();
    else
        m_model.AppendRows(rows);
    EndLoading();
}

bool CBrenListCtrl::SetCellText(int row, int column, const QString& text) {
    if (row < 0 || row >= m_model.rowCount() || column < 0 || column >= m_model.columnCount())
        return false;
    const int place = m_model.Displayed()[size_t(row)];
    if (m_model.CellText(row, column) != text)
        SetRows(WithCell(m_wanted, place, column, text));
    return true;
}

void CBrenListCtrl::Arrange(const Arrangement& arrangement) {
    m_wantedOrder = arrangement;
    m_header->setSortIndicatorShown(arrangement.order.has_value());
    m_header->setSortIndicator(arrangement.sortColumn, arrangement.order.value_or(Qt::AscendingOrder));
    m_header->viewport()->update();
    if (m_underWay || !(arrangement == m_model.Arranged()))
        Update();
}

bool CBrenListCtrl::WorksAtOnce(int rows) const {
    return !m_work || rows <= MostRowsAtOnce;
}

void CBrenListCtrl::Update() {
    if (m_work)
        m_work->Cancel();
    // Rows of another subject must not stay until they are matched with none.
    m_underWay = m_wanted.Count() > 0 && !WorksAtOnce(m_wanted.Count() + m_model.TotalRows());
    if (!m_underWay)
        return Apply(MakeUpdate(m_model.AllRows(), m_wanted, m_wantedOrder));
    using Made = std::shared_ptr<const ListUpdate>;
    m_work->Load(
        Lane::Computing,
        [old = m_model.AllRows(), rows = m_wanted, order = m_wantedOrder](const std::stop_token& stop)
            -> Made { return std::make_shared<const ListUpdate>(MakeUpdate(old, rows, order, stop)); },
        [this](const Loaded<Made>& made) {
            if (made)
                Apply(**made);
        });
}

void CBrenListCtrl::Apply(const ListUpdate& update) {
    m_underWay = false;
    const bool atTop = verticalScrollBar()->value() == verticalScrollBar()->minimum();
    const std::vector<Anchor> anchors = atTop ? std::vector<Anchor>() : VisibleRows();
    m_finder.OnMoved();
    m_model.Apply(update);
    ScrollBackTo(anchors);
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

std::vector<TakenRow> CBrenListCtrl::SelectedRows() const {
    std::vector<TakenRow> rows;
    for (const int row : SelectedNumbers())
        rows.push_back(m_model.RowAt(row));
    return rows;
}

Places CBrenListCtrl::SelectedNumbers() const {
    Places rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    if (selectionModel()->selection().size() < 2)
        return rows;
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

std::vector<int> CBrenListCtrl::WordColumns() const {
    std::vector<int> columns(size_t(m_model.columnCount() - m_commandColumns));
    std::iota(columns.begin(), columns.end(), 0);
    return columns;
}

void CBrenListCtrl::SetFilter(const QString& words) {
    if (m_kind != TableKind::Record)
        return;
    Arrangement arrangement = m_wantedOrder;
    arrangement.words = words;
    arrangement.columns = WordColumns();
    Arrange(arrangement);
}

void CBrenListCtrl::HideRows(int column, const QStringList& cells) {
    if (m_kind != TableKind::Record)
        return;
    Arrangement arrangement = m_wantedOrder;
    arrangement.hidingColumn = column;
    arrangement.hidden = cells;
    Arrange(arrangement);
}

void CBrenListCtrl::SortByNext(int column) {
    if (m_kind != TableKind::Record)
        return;
    Arrangement arrangement = m_wantedOrder;
    const bool same = arrangement.sortColumn == column;
    if (same && arrangement.order == Qt::DescendingOrder)
        arrangement.order.reset();
    else
        arrangement.order = same ? Qt::DescendingOrder : Qt::AscendingOrder;
    arrangement.sortColumn = arrangement.order ? column : -1;
    Arrange(arrangement);
}

void CBrenListCtrl::keyboardSearch(const QString& search) {
    m_finder.Type(search, WordColumns());
}

void CBrenListCtrl::SelectNext(int column, const QString& words, bool up) {
    m_finder.Next(column, words, up);
}

ListExcerpt CBrenListCtrl::Excerpt(Places displayed) const {
    for (int& row : displayed)
        row = m_model.Displayed()[size_t(row)];
    return {m_model.AllRows(), std::move(displayed), WordColumns()};
}

/// Calls `done` with what `text` makes, off the UI thread for many rows.
template <typename Text, typename Done>
void CBrenListCtrl::WithText(int rows, Text text, Done done) {
    if (WorksAtOnce(rows))
        return done(text());
    m_work->Command(
        Lane::Computing, [text](std::stop_token) { return text(); },
        [done](const Loaded<QString>& made) {
            if (made)
                done(*made);
        });
}

void CBrenListCtrl::CopySelected() {
    Places rows = SelectedNumbers();
    if (rows.empty() && currentIndex().isValid())
        rows.push_back(currentIndex().row());
    if (rows.empty())
        return;
    const int count = int(rows.size());
    WithText(
        count, [excerpt = Excerpt(std::move(rows))] { return RowsAsLines(excerpt); },
        [this](const QString& text) { m_prompts.SetClipboardText(text); });
}

void CBrenListCtrl::ExportRows() {
    const PickRequest request{PickKind::FileToSave, tr("Export"),
                              (m_name.isEmpty() ? tr("List") : m_name) + u".csv"_s,
                              tr("CSV files (*.csv);;All files (*)"), u"csv"_s};
    m_prompts.PickPath(this, request, [this](const std::optional<QString>& file) {
        if (!file)
            return;
        const ListExcerpt excerpt{m_model.AllRows(), m_model.Displayed(), WordColumns()};
        QStringList titles;
        for (const int column : excerpt.columns)
            titles.append(m_model.headerData(column, Qt::Horizontal, Qt::AccessibleTextRole).toString());
        const auto write = [excerpt, titles, file] { return WriteCsv(excerpt, titles, *file); };
        WithText(m_model.rowCount(), write, [this](const QString& failure) {
            if (!failure.isEmpty())
                m_prompts.ShowMessage(this, tr("The file could not be written."), {}, failure);
        });
    });
}

void CBrenListCtrl::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    QPainter painter(viewport());
    if (hasFocus() && !currentIndex().isValid())
        Look::DrawFocusRing(painter, viewport()->rect());
    if (m_model.rowCount() > 0)
        return;
    painter.setPen(Look::Muted);
    painter.drawText(viewport()->rect().adjusted(Look::TextInset, 0, -Look::TextInset, 0),
                     Qt::AlignCenter | Qt::TextWordWrap, TextWithoutRows());
}

void CBrenListCtrl::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    m_widths.Fit();
}

/// What was under way when the page was left is begun again.
void CBrenListCtrl::showEvent(QShowEvent* event) {
    QTableView::showEvent(event);
    if (m_underWay && !m_work->IsReading())
        Update();
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
    const QString text = m_model.CellText(index.row(), index.column());
    const bool onIcon = CellMarkup::Parse(text).kind == CellKind::Icon;
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
        [this, signal, row = cell.row(), column = cell.column(), record = m_model.RowAt(cell.row())] {
            emit(this->*signal)(row, column, record);
        },
        Qt::QueuedConnection);
}

/// The list's find key is its own also where the page has one too.
bool CBrenListCtrl::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && m_kind == TableKind::Record &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Find)) {
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

void CBrenListCtrl::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->matches(QKeySequence::Copy))
        CopySelected();
    else if (event->matches(QKeySequence::Find) && m_kind == TableKind::Record)
        emit FindRequested();
    else if (enter && currentIndex().column() < 1 && m_model.rowCount() > 0)
        m_finder.Select(std::max(currentIndex().row(), 0)); // a fresh list's first row has the focus only
    else if (enter && !event->isAutoRepeat())
        Post(&CBrenListCtrl::LeftClicked, currentIndex());
    else
        QTableView::keyPressEvent(event);
}

void CBrenListCtrl::keyReleaseEvent(QKeyEvent* event) {
    QTableView::keyReleaseEvent(event);
    if (!event->isAutoRepeat())
        QMetaObject::invokeMethod(
            this, [this, key = event->key()] { emit KeyReleased(key); }, Qt::QueuedConnection);
}

/// Home and End go by row: what is beside the screen is seldom looked for.
QModelIndex CBrenListCtrl::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (action != MoveHome && action != MoveEnd)
        return QTableView::moveCursor(action, modifiers);
    const int row = action == MoveHome ? 0 : m_model.rowCount() - 1;
    return m_model.index(row, std::max(currentIndex().column(), 0));
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
    for (const int column : WordColumns()) {
        const QString title = Title(column);
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
