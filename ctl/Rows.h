#pragma once

#include "ctl/Command.h"

#include <QStringConverter>

#include <functional>
#include <initializer_list>
#include <variant>

/// A value of a row, read before its text or list goes. A null text is JSON's null and an empty place of a
/// table.
using Cell = std::variant<QStringView, qint64, bool, const QStringList*>;

struct Column {
    QLatin1String key;        ///< of JSON's objects
    QLatin1String title = {}; ///< of the table; empty for a column that the table leaves out
};

enum class RowFormat { Table, Json, JsonLines };

/// Makes the text of rows as they come, in memory that does not grow with their number. A table's columns are
/// as wide as its first rows need, within bounds; what is wider pushes the rest of its line aside. Control
/// characters in a table become blanks, so that a value neither breaks its line nor commands the terminal.
class RowWriter {
public:
    /// Takes pieces of the text; false ends the writing.
    using Sink = std::function<bool(QByteArrayView)>;

    RowWriter(RowFormat format, std::vector<Column> columns, Sink sink);

    /// The cells stand in the order of the columns. False when no more rows are taken.
    bool Add(std::initializer_list<Cell> cells);
    /// Hands out all rows so far, for a reader who looks on. False when no more are taken.
    bool Push();
    /// Ends the text: that of JSON in any case, an empty table only when there are no rows and not because a
    /// read failed. False when not all was taken.
    bool Finish(bool whole);

private:
    void AddObject(std::initializer_list<Cell> cells);
    QStringList LineOf(std::initializer_list<Cell> cells) const;
    void BeginTable();
    void WriteLine(const QStringList& line);
    bool Flush(qsizetype least);

    RowFormat m_format;
    std::vector<Column> m_columns;
    std::vector<QByteArray> m_keys; ///< of JSON, as they stand before a value
    qsizetype m_keyOctets = 0;      ///< of all of them
    QStringEncoder m_utf8{QStringEncoder::Utf8, QStringEncoder::Flag::Stateless};
    Sink m_sink;
    QByteArray m_text;
    std::vector<QStringList> m_first; ///< lines that wait for the widths
    std::vector<qsizetype> m_widths;  ///< known when the table has begun
    bool m_empty = true;
    bool m_taken = true;
};

/// Writes the rows that `read` adds: as a JSON array where "--json" is given, otherwise as a table. `read`
/// says itself what went wrong; a short write is told, and no success.
CtlExit WriteRows(const Invocation& invocation, const std::vector<Column>& columns,
                  const std::function<CtlExit(RowWriter&)>& read);
