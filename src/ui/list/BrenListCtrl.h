#pragma once

#include "list/BrenListModel.h"
#include "list/CellDelegate.h"
#include "list/HeaderCtrlCl.h"

#include <QElapsedTimer>
#include <QPersistentModelIndex>
#include <QTableView>

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

    /// Pixels; a column of width 0 is hidden. The last visible one with a title fills what is
    /// left.
    int AddColumn(const QString& title, int width, Qt::Alignment alignment = Qt::AlignLeft);
    void SetColumnWidth(int column, int width);
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

    /// Replaces all rows. Selection, focus and scroll stay with the rows that are found again by their ids.
    void SetRows(std::vector<ListRow> rows);
    /// Adds rows at the end, with ids that no row has yet.
    void AppendRows(std::vector<ListRow> rows);
    /// False when there is no such cell. An equal text is no change.
    bool SetCellText(int row, int column, const QString& text) {
        return m_model.SetCellText(row, column, text);
    }
    const BrenListModel& Rows() const { return m_model; }

    /// The selected rows' ids as displayed from top to bottom.
    QStringList SelectedIds() const;
    /// The id of the row that has the keyboard's focus; empty when none has.
    QString CurrentId() const;

    /// Leaves the rows with the words in a visible column; of no effect on fixed tables.
    void SetFilter(const QString& words);
    /// A column's next click: ascending, descending, as the producer gave them. Not for fixed tables.
    void SortByNext(int column);

    void keyboardSearch(const QString& search) override;

signals:
    // Queued, with what was true at the click or key. Clicks on column 0 and beside the rows tell nothing.
    void LeftClicked(int row, int column, const QString& rowId);  ///< notification 2026; by the Enter key too
    void RightClicked(int row, int column, const QString& rowId); ///< notification 2031
    void KeyReleased(int virtualKey, unsigned flags);             ///< notification 2032; Windows key codes

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
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

protected slots:
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;

private:
    using CellSignal = void (CBrenListCtrl::*)(int, int, const QString&);
    struct Anchor {
        QPersistentModelIndex cell;
        int offset;
    };

    void EndLoading();
    void Post(CellSignal signal, const QModelIndex& cell);
    std::vector<Anchor> VisibleRows() const;
    void ScrollBackTo(const std::vector<Anchor>& anchors);
    void FillWidth();
    int FilledColumn(const std::vector<int>& columns) const;
    void KeepWidths();
    std::vector<int> VisibleColumns() const;
    std::vector<int> SelectedRows() const;
    void SortBy(int column, std::optional<Qt::SortOrder> order);
    void AddSortMenu(QMenu& menu);

    UserPrompts& m_prompts;
    BrenListModel m_model;
    CellDelegate m_delegate;
    CHeaderCtrlCl* m_header;
    TableKind m_kind = TableKind::Fixed;
    std::vector<int> m_widths; ///< as asked for, before the last column fills the rest
    bool m_filling = false;
    QString m_name;
    QString m_emptyText;
    QString m_loadingText; ///< null while nothing is awaited
    QPersistentModelIndex m_pressed;
    QString m_typed;
    QElapsedTimer m_sinceTyped;
};
