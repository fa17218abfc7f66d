#include "list/ListText.h"

#include "list/BrenListModel.h"
#include "list/CellMarkup.h"
#include "look/Look.h"

#include <algorithm>

namespace {

QString Words(const BrenListModel& model, int row, int column) {
    return CellMarkup::Parse(model.CellText(row, column)).Words();
}

QString Quoted(const QString& words) {
    const bool plain = std::none_of(words.begin(), words.end(), [](QChar c) {
        return c == u',' || c == u'"' || c == u'\n' || c == u'\r';
    });
    if (plain && words.trimmed().size() == words.size())
        return words;
    return u'"' + QString(words).replace(u'"', QLatin1String("\"\"")) + u'"';
}

} // namespace

QStringList WordsOfRow(const ListRow& row) {
    QStringList words;
    for (int column = 0; column < row.CellCount(); ++column)
        words.append(CellMarkup::Parse(row.Cell(column)).Words());
    return words;
}

QString RowsAsLines(const BrenListModel& model, const std::vector<int>& rows,
                    const std::vector<int>& columns) {
    QStringList lines;
    for (const int row : rows) {
        QStringList cells;
        for (const int column : columns)
            cells.append(Look::OneLine(Words(model, row, column)));
        lines.append(cells.join(u'\t'));
    }
    return lines.join(u'\n');
}

QString RowsAsCsv(const BrenListModel& model, const std::vector<int>& columns) {
    QString text;
    const auto add = [&](const auto& wordsOf) {
        for (size_t at = 0; at < columns.size(); ++at) {
            if (at > 0)
                text += u',';
            text += Quoted(wordsOf(columns[at]));
        }
        text += QLatin1String("\r\n");
    };
    add([&](int column) { return model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(); });
    for (int row = 0; row < model.rowCount(); ++row)
        add([&](int column) { return Words(model, row, column); });
    return text;
}
