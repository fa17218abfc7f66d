#pragma once

#include "list/CellMarkup.h"
#include "list/ListTable.h"

#include <QHashFunctions>

#include <functional>
#include <type_traits>

/// Writes a cell from a record: a member of it, which is data, or a function of it, which returns cell
/// markup. Numbers are written in digits and sorted as numbers.
template <typename Record>
struct CellWriter {
    template <typename Writer>
    CellWriter(Writer writer) {
        if constexpr (std::is_integral_v<std::remove_cvref_t<std::invoke_result_t<Writer, const Record&>>>) {
            text = [writer](const Record& record) { return QString::number(std::invoke(writer, record)); };
            key = [writer](const Record& record) { return SortKey{qint64(std::invoke(writer, record))}; };
        } else if constexpr (std::is_member_object_pointer_v<Writer>) {
            text = [writer](const Record& record) { return Cell::Plain(record.*writer); };
        } else {
            text = std::move(writer);
        }
    }

    /// Sorted by a number of the record and not by what is written.
    template <typename Writer, typename Number>
    CellWriter(Writer writer, Number number)
        : text(std::move(writer)),
          key([number](const Record& record) { return SortKey{qint64(std::invoke(number, record))}; }) {}

    std::function<QString(const Record&)> text;
    std::function<SortKey(const Record&)> key; ///< none: the cell's words
};

template <typename Record>
struct RecordColumn {
    QString title;
    int width = 0; ///< pixels
    CellWriter<Record> cell;
    Qt::Alignment alignment = Qt::AlignLeft;
    QString name = {}; ///< for screen readers, of a column without a title
    int least = 0;     ///< pixels that its cells need where room lacks; its title's are kept in any case
};

/// The members or functions of a record that make it this row, also after a refresh.
template <typename Record>
struct RowId {
    template <typename... Parts>
    RowId(Parts... parts)
        : hash([parts...](const Record& record) { return qHashMulti(0, std::invoke(parts, record)...); }),
          same([parts...](const Record& a, const Record& b) {
              return ((std::invoke(parts, a) == std::invoke(parts, b)) && ...);
          }) {}

    std::function<std::size_t(const Record&)> hash;
    std::function<bool(const Record&, const Record&)> same;
};

template <typename Record>
class RecordStream;

/// What keeps the records of a block: another kind of container for records that there are very many of,
/// which may hand them out by value.
template <typename Record>
struct RecordsOf {
    using Type = std::vector<Record>;
};

/// A table, said once. `Record` can be copied and compared.
template <typename Record>
struct RecordTable {
    RecordPage page;
    std::vector<RecordColumn<Record>> columns;
    RowId<Record> id;
    /// Puts the records into the stream until it is told to stop. Runs on the page's lane: it holds values
    /// and parts of the console, never a widget.
    std::function<ReadResult(RecordStream<Record>&, std::stop_token)> read;
    std::vector<RowCommand> commands = {};
    std::vector<TableAction> actions = {};
};

/// What blocks need of their table.
template <typename Record>
struct RecordShape {
    std::vector<RecordColumn<Record>> columns;
    RowId<Record> id;
};

template <typename Record>
class RecordBlock : public RowBlock {
public:
    using Shape = std::shared_ptr<const RecordShape<Record>>;
    using Records = typename RecordsOf<Record>::Type;

    RecordBlock(Shape shape, Records records) : m_shape(std::move(shape)), m_records(std::move(records)) {}

    int Count() const override { return int(m_records.size()); }
    QString Cell(int row, int column) const override {
        return HasColumn(column) ? m_shape->columns[std::size_t(column)].cell.text(At(row)) : QString();
    }
    SortKey KeyOf(int row, int column) const override {
        if (!HasColumn(column))
            return {};
        const CellWriter<Record>& cell = m_shape->columns[std::size_t(column)].cell;
        return cell.key ? cell.key(At(row)) : SortKey{0, WordsOfCell(cell.text(At(row))).toCaseFolded()};
    }
    std::size_t IdHash(int row) const override { return m_shape->id.hash(At(row)); }
    bool HasIdOf(int row, const RowBlock& other, int otherRow) const override {
        return m_shape->id.same(At(row), static_cast<const RecordBlock&>(other).At(otherRow));
    }
    bool Equals(int row, const RowBlock& other, int otherRow) const override {
        return At(row) == static_cast<const RecordBlock&>(other).At(otherRow);
    }

    decltype(auto) At(int row) const { return m_records[std::size_t(row)]; }

private:
    bool HasColumn(int column) const { return column >= 0 && std::size_t(column) < m_shape->columns.size(); }

    Shape m_shape;
    Records m_records;
};

template <typename Record>
class RecordStream : public RowStream {
    using Records = typename RecordBlock<Record>::Records;

public:
    explicit RecordStream(typename RecordBlock<Record>::Shape shape) : m_shape(std::move(shape)) {}

    void Put(Record record) {
        const std::lock_guard lock(m_mutex);
        m_open.push_back(std::move(record));
        if (m_open.size() == BlockSize)
            m_sealed.Append(Seal());
    }

    void PutAll(Records records) {
        const std::lock_guard lock(m_mutex);
        if (!m_open.empty())
            m_sealed.Append(Seal());
        m_sealed.Append(std::make_shared<RecordBlock<Record>>(m_shape, std::move(records)));
    }

protected:
    int OpenCount() const override { return int(m_open.size()); }
    std::shared_ptr<const RowBlock> Seal() override {
        m_open.shrink_to_fit();
        return std::make_shared<RecordBlock<Record>>(m_shape, std::exchange(m_open, Records()));
    }

private:
    static constexpr std::size_t BlockSize = 4096;

    typename RecordBlock<Record>::Shape m_shape;
    Records m_open;
};

/// The record of a row of a table of such records.
template <typename Record>
decltype(auto) RecordOf(const TakenRow& row) {
    return static_cast<const RecordBlock<Record>&>(*row.block).At(row.at);
}

/// A command that deletes rows after a question, by one request for each.
template <typename Record, typename Remove>
RowCommand DeleteCommand(RowCommand look, RowDeletionTexts texts, Remove remove) {
    look.key = Qt::Key_Delete;
    look.remove = [remove](const ServiceClient& service, const TakenRow& row, std::stop_token stop) {
        return remove(service, RecordOf<Record>(row), stop);
    };
    look.deletion = std::move(texts);
    return look;
}

template <typename Record>
ListTable::ListTable(RecordTable<Record> table)
    : page(std::move(table.page)), commands(std::move(table.commands)), actions(std::move(table.actions)) {
    for (const RowCommand& command : commands) {
        if (command.icon != 0)
            table.columns.push_back(
                {.title = {},
                 .width = RowCommand::ColumnWidth,
                 .cell = [cell = Cell::Icon(command.icon, command.words)](const Record&) { return cell; },
                 .name = command.caption});
    }
    for (const RecordColumn<Record>& column : table.columns)
        columns.push_back({column.title, column.width, column.alignment, column.name, column.least});
    auto shape = std::make_shared<const RecordShape<Record>>(
        RecordShape<Record>{std::move(table.columns), std::move(table.id)});
    makeStream = [shape] { return std::make_shared<RecordStream<Record>>(shape); };
    read = [read = std::move(table.read)](RowStream& rows, std::stop_token stop) {
        return read(static_cast<RecordStream<Record>&>(rows), std::move(stop));
    };
}
