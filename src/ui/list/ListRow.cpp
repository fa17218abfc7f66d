#include "list/ListRow.h"

#include "list/CellMarkup.h"

#include <algorithm>

namespace {

constexpr qsizetype CountUnits = 2;
constexpr qsizetype UnitsPerEnd = 2;

class TextBlock : public RowBlock {
public:
    explicit TextBlock(std::vector<ListRow> rows) : m_rows(std::move(rows)) {}

    int Count() const override { return int(m_rows.size()); }
    QString Cell(int row, int column) const override { return At(row).Cell(column).toString(); }
    SortKey KeyOf(int row, int column) const override { return {0, At(row).SortKey(column)}; }
    std::size_t IdHash(int row) const override { return qHash(At(row).Id()); }
    bool HasIdOf(int row, const RowBlock& other, int otherRow) const override {
        return At(row).Id() == static_cast<const TextBlock&>(other).At(otherRow).Id();
    }
    bool Equals(int row, const RowBlock& other, int otherRow) const override {
        return At(row) == static_cast<const TextBlock&>(other).At(otherRow);
    }

    const ListRow& At(int row) const { return m_rows[std::size_t(row)]; }

private:
    std::vector<ListRow> m_rows;
};

} // namespace

ListRow::ListRow(const QString& id, const QStringList& cells, const QStringList& sortKeys) {
    Pack(id, cells, sortKeys);
}

QStringView ListRow::Cell(int column) const {
    return column >= 0 && column < CellCount() ? Piece(column + 1) : QStringView();
}

QString ListRow::SortKey(int column) const {
    const QStringView key = Piece(CellCount() + 1 + column);
    return key.isEmpty() ? WordsOfCell(Cell(column)).toCaseFolded() : key.toString();
}

void ListRow::SetCell(int column, const QString& text) {
    const QString id = Id().toString();
    QStringList cells;
    QStringList sortKeys;
    for (int piece = 1; piece < PieceCount(); ++piece)
        (piece <= CellCount() ? cells : sortKeys).append(Piece(piece).toString());
    while (cells.size() <= column)
        cells.append(QString());
    cells[column] = text;
    Pack(id, cells, sortKeys);
}

qsizetype ListRow::End(int piece) const {
    const qsizetype at = CountUnits + piece * UnitsPerEnd;
    return qsizetype(m_packed.at(at).unicode()) << 16 | m_packed.at(at + 1).unicode();
}

QStringView ListRow::Piece(int piece) const {
    if (piece < 0 || piece >= PieceCount())
        return {};
    const qsizetype texts = CountUnits + PieceCount() * UnitsPerEnd;
    const qsizetype start = piece == 0 ? 0 : End(piece - 1);
    return QStringView(m_packed).mid(texts + start, End(piece) - start);
}

void ListRow::Pack(QStringView id, const QStringList& cells, const QStringList& sortKeys) {
    std::size_t units = 0;
    const qsizetype pieces = 1 + cells.size() + sortKeys.size();
    const qsizetype texts = CountUnits + pieces * UnitsPerEnd;
    qsizetype length = id.size();
    for (const QStringList* list : {&cells, &sortKeys})
        for (const QString& piece : *list)
            length += piece.size();
    m_packed = QString(texts + length, Qt::Uninitialized);
    QChar* head = m_packed.data();
    QChar* text = head + texts;
    *head++ = QChar(char16_t(cells.size()));
    *head++ = QChar(char16_t(pieces));
    const auto add = [&](QStringView piece) {
        text = std::copy(piece.begin(), piece.end(), text);
        units += std::size_t(piece.size());
        *head++ = QChar(char16_t(units >> 16));
        *head++ = QChar(char16_t(units & 0xFFFF));
    };
    add(id);
    for (const QStringList* list : {&cells, &sortKeys})
        for (const QString& piece : *list)
            add(piece);
}

QString NumberSortKey(qint64 number) {
    const quint64 ordered = quint64(number) ^ (quint64(1) << 63);
    QString key(4, Qt::Uninitialized);
    for (int unit = 0; unit < 4; ++unit)
        key[unit] = QChar(char16_t(ordered >> (48 - 16 * unit)));
    return key;
}

RowSet TextRows(std::vector<ListRow> rows) {
    return RowSet(std::make_shared<TextBlock>(std::move(rows)));
}

RowSet WithCell(const RowSet& rows, int row, int column, const QString& text) {
    std::vector<ListRow> changed;
    for (int place = 0; place < rows.Count(); ++place) {
        const TakenRow taken = rows.At(place);
        changed.push_back(static_cast<const TextBlock&>(*taken.block).At(taken.at));
    }
    changed[std::size_t(row)].SetCell(column, text);
    return TextRows(std::move(changed));
}
