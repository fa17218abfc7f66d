#pragma once

#include "list/BrenListModel.h"
#include "list/CellDelegate.h"
#include "list/ColumnWidths.h"
#include "list/HeaderCtrlCl.h"
#include "list/ListRow.h"
#include "list/ListText.h"
#include "list/RowFinder.h"

#include <QPersistentModelIndex>
#include <QTableView>

#include <memory>

class QMenu;

class UserPrompts;

/// Fixed tables keep the producer's order and all of their rows. The rows of record tables can be sorted
/// and filtered.
enum class TableKind { Fixed, Record };

/// A list of rows and columns whose cells are texts in the cell markup. Rows are known by the displayed row's
/// number, columns by the number that adding them gave. UI thread.
class CBrenListCtrl : public QTableView {
    Q_OBJECT

public:
    /// The prompts take what is copied and ask for the file of an export; they outlive the list.
    explicit CBrenListCtrl(UserPrompts& prompts, QWidget* parent = nullptr);
    ~CBrenListCtrl() override;

    /// What takes long with many rows is done on the reader's computing lane from now on, and shown when it
    /// is done, the newest wish alone. Without a reader all is done at once.
    void WorkOn(Reader& reader);

    /// Pixels. The last column with a title fills what is left; where room lacks, columns that the user has
    /// not drawn wider shrink to their titles, and to `least` at most. `name` is heard for a column without a
    /// title.
    int AddColumn(const QString& title, int width, Qt::Alignment alignment = Qt::AlignLeft,
                  const QString& name = {}, int least = 0);
    /// So many columns at the end hold the icons of commands: they are not found, copied or exported.
    void SetCommandColumns(int count) { m_commandColumns = count; }
    /// Takes the widths that the user gave this list last time, now that it has its columns, and keeps new
    /// ones.
    void RememberWidths(const QString& listName);

    void SetTableKind(TableKind kind);
    TableKind Kind() const { return m_kind; }
    void SetCustomHeader(bool custom);
    void SetUnshadedColumn(int column);
    void SetAccentColumn(int column);
    void SetRowShading(bool shading);
    void SetMultiSelection(bool multi);

    /// What stands in a list without rows.
    void SetEmptyText(const QString& text);
    /// Stands there instead until rows are set.
    void SetLoading(const QString& text);
    /// What stands in the list while it shows no row.
    QString TextWithoutRows() const;

    /// Replaces all rows. Selection, focus and scroll stay with the rows that are found again by their ids; a
    /// list at its top stays there.
    void SetRows(RowSet rows);
    void SetRows(std::vector<ListRow> rows) { SetRows(TextRows(std::move(rows))); }
    /// The rows there are, and more after them with ids that no row has yet.
    void AppendRows(const RowSet& rows);
    /// Of a fixed table of texts. False when there is no such cell. An equal text is no change.
    bool SetCellText(int row, int column, const QString& text);
    const BrenListModel& Rows() const { return m_model; }
    /// Whether other rows, a sort or a filter are still on their way.
    bool IsWorking() const { return m_underWay; }

    /// The selected rows as displayed from top to bottom.
    std::vector<TakenRow> SelectedRows() const;

    /// Leaves the rows with the words in a column; of no effect on fixed tables.
    void SetFilter(const QString& words);
    /// Leaves out the rows with one of the cells in the column; of no effect on fixed tables.
    void HideRows(int column, const QStringList& cells);
    /// Goes to the next row, or the one before, whose words in the column start so, and round again.
    void SelectNext(int column, const QString& words, bool up = false);
    /// A column's next click: ascending, descending, as the producer gave them. Not for fixed tables.
    void SortByNext(int column);

    void keyboardSearch(const QString& search) override;

signals:
    // Queued, with what was true at the click or key. Clicks on column 0 and beside the rows tell nothing.
    void LeftClicked(int row, int column,
                     const TakenRow& record); ///< notification 2026; by the Enter key too
    void RightClicked(int row, int column, const TakenRow& record); ///< notification 2031
    void KeyReleased(int key);                                      ///< notification 2032; a Qt::Key

    /// How many rows there are or are displayed has changed.
    void CountsChanged();
    /// The find key was pressed in a record table.
    void FindRequested();

public slots:
    /// The selected rows, or the current one, as lines of words between tabs.
    void CopySelected();
    /// Asks for a file and writes all displayed rows.
    void ExportRows();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

protected slots:
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;

private:
    using CellSignal = void (CBrenListCtrl::*)(int, int, const TakenRow&);
    struct Anchor {
        QPersistentModelIndex cell;
        int offset;
    };

    void EndLoading();
    void Post(CellSignal signal, const QModelIndex& cell);
    void Arrange(const Arrangement& arrangement);
    void Update();
    void Apply(const ListUpdate& update);
    bool WorksAtOnce(int rows) const;
    std::vector<Anchor> VisibleRows() const;
    void ScrollBackTo(const std::vector<Anchor>& anchors);
    QString Title(int column) const;
    std::vector<int> WordColumns() const;
    Places SelectedNumbers() const;
    ListExcerpt Excerpt(Places displayed) const;
    template <typename Text, typename Done>
    void WithText(int rows, Text text, Done done);
    void AddSortMenu(QMenu& menu);

    UserPrompts& m_prompts;
    BrenListModel m_model;
    RowSet m_wanted; ///< the rows and their arrangement that the model has or is on its way to
    Arrangement m_wantedOrder;
    bool m_underWay = false;
    CellDelegate m_delegate;
    RowFinder m_finder;
    CHeaderCtrlCl* m_header;
    ColumnWidths m_widths;
    TableKind m_kind = TableKind::Fixed;
    int m_commandColumns = 0;
    QString m_name;
    QString m_emptyText;
    QString m_loadingText; ///< null while nothing is awaited
    QPersistentModelIndex m_pressed;
    std::unique_ptr<PageLoader> m_work; ///< null while all is done at once
};
