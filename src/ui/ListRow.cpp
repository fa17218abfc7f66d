#include "ui/ListRow.h"

#include "ui/CellMarkup.h"

namespace {

constexpr qsizetype CountUnits = 2;
constexpr qsizetype UnitsPerEnd = 2;

} // namespace

ListRow::ListRow(const QString& id, const QStringList& cells, const QStringList& sortKeys) {
    Pack(QStringList(id) + cells + sortKeys, int(cells.size()));
}

QStringView ListRow::Cell(int column) const {
    return column >= 0 && column < CellCount() ? Piece(column + 1) : QStringView();
}

QString ListRow::SortKey(int column) const {
    const QStringView key = Piece(CellCount() + 1 + column);
    return key.isEmpty() ? CellMarkup::Parse(Cell(column)).Words().toCaseFolded() : key.toString();
}

void ListRow::SetCell(int column, const QString& text) {
    QStringList pieces;
    for (int piece = 0; piece < PieceCount(); ++piece)
        pieces.append(Piece(piece).toString());
    if (pieces.isEmpty())
        pieces.append(QString());
    int cells = CellCount();
    for (; cells <= column; ++cells)
        pieces.insert(cells + 1, QString());
    pieces[column + 1] = text;
    Pack(pieces, cells);
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

void ListRow::Pack(const QStringList& pieces, int cells) {
    qsizetype length = 0;
    for (const QString& piece : pieces)
        length += piece.size();
    m_packed = QString();
    m_packed.reserve(CountUnits + pieces.size() * UnitsPerEnd + length);
    m_packed += QChar(char16_t(cells));
    m_packed += QChar(char16_t(pieces.size()));
    qsizetype end = 0;
    for (const QString& piece : pieces) {
        end += piece.size();
        m_packed += QChar(char16_t(end >> 16));
        m_packed += QChar(char16_t(end & 0xFFFF));
    }
    for (const QString& piece : pieces)
        m_packed += piece;
}

QString NumberSortKey(qint64 number) {
    const quint64 ordered = quint64(number) ^ (quint64(1) << 63);
    QString key(4, Qt::Uninitialized);
    for (int unit = 0; unit < 4; ++unit)
        key[unit] = QChar(char16_t(ordered >> (48 - 16 * unit)));
    return key;
}
