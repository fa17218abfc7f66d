#pragma once

#include "lanes/ProgressNote.h"
#include "lanes/Reader.h"
#include "list/RowStream.h"
#include "service/ServiceClient.h"
#include "stores/ReadResult.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

class RecordView;

template <typename Record>
struct RecordTable;

/// What a table says, and how often it is read again.
struct RecordPage {
    QString name;   ///< for screen readers
    QString widths; ///< the name that its column widths are kept under; empty: they are not
    QString status = {};
    QString empty = {};
    QString loading = {}; ///< until the first row has come; empty: "Loading..."
    std::shared_ptr<const ProgressNote> steps =
        {};                             ///< what is read now, in place of "Loading..."; none: it is not told
    QString listing = {};               ///< as the status, until all rows have come; empty: none
    QString failure = {};               ///< in a list whose read failed; empty: the read's own sentence
    std::chrono::milliseconds period{}; ///< of reading again by itself; 0: never
    /// A counter of changes: reading by itself is left out while it stands still. Any thread calls it.
    std::function<std::optional<quint32>()> changes = {};
    Lane lane = Lane::Databases;
    QString subject = {};  ///< what the rows are about: those of another one are forgotten
    QString edition = {};  ///< of the subject: another one is read at once
    bool tellsAge = false; ///< the status says since when the rows stand still
    QString reload = {};   ///< the caption of the button that reads again; empty: "Refresh"
};

struct ListColumn {
    QString title;
    int width = 0;
    Qt::Alignment alignment = Qt::AlignLeft;
    QString name = {};
    int least = 0;
};

struct RowDeletionTexts {
    QString one;     ///< the question for one row
    QString several; ///< the question for several rows
    QString failed;
    /// What the question says of the rows, given all that there are. None: the row by its words, several by
    /// number.
    std::function<QString(const std::vector<TakenRow>& rows, const RowSet& all)> subject = {};
    /// Which of two rows is deleted first; one that fails then keeps the others, which hang on it. None: in
    /// the order of the list.
    std::function<bool(const TakenRow& one, const TakenRow& other)> before = {};
};

/// What can be done with rows: the clicked one or all selected ones, by the command's own cell at the row's
/// end, its key or the menu. It is given the rows as they were at the click.
struct RowCommand {
    static constexpr int ColumnWidth = 24;

    QString caption; ///< in the menu, and of the cells' column for screen readers
    int icon = 0;    ///< of the cells; 0: there are none
    QString words = {};
    std::function<void(RecordView&, const std::vector<TakenRow>&)> run = {};
    bool single = false; ///< is given one row: the clicked one, or the first that is selected

    // Of a deletion, in place of `run`: called on the service's lane, once for each row.
    std::function<ServiceAnswer(const ServiceClient&, const TakenRow&, std::stop_token)> remove = {};
    RowDeletionTexts deletion = {};
    int key = 0; ///< a Qt::Key; 0: none
};

/// A button of a page that acts on its whole table. It is busy until it calls `done`.
struct TableAction {
    enum Needs { Rows, AllRows }; ///< some rows, or those of a read that has ended

    QString caption;
    int image = 0;
    Needs needs = Rows;
    std::function<void(RecordView&, std::function<void()> done)> run;
};

/// A table whose kind of record does not matter any more.
struct ListTable {
    template <typename Record>
    ListTable(RecordTable<Record> table);

    RecordPage page;
    std::vector<ListColumn> columns; ///< those of commands at the end
    std::vector<RowCommand> commands;
    std::vector<TableAction> actions;
    std::function<std::shared_ptr<RowStream>()> makeStream;
    std::function<ReadResult(RowStream&, std::stop_token)> read;
};
