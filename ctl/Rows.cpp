#include "ctl/Rows.h"

#include <QJsonDocument>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString CellText(const QJsonValue& value) {
    QString text = value.isDouble() ? QString::number(value.toInteger()) : value.toString();
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return text;
}

QString Line(const QStringList& cells, const std::vector<qsizetype>& widths) {
    QString line;
    for (qsizetype i = 0; i < cells.size(); ++i)
        line += cells[i].leftJustified(widths[static_cast<size_t>(i)]) + u"  "_s;
    while (line.endsWith(u' '))
        line.chop(1);
    return line + u'\n';
}

} // namespace

QJsonValue JsonText(const QString& text) {
    return text.isNull() ? QJsonValue() : QJsonValue(text);
}

QString TextTable(const QJsonArray& rows, const std::vector<TextColumn>& columns) {
    std::vector<QStringList> lines(1);
    for (const TextColumn& column : columns)
        lines[0] += column.title;
    for (const QJsonValue row : rows) {
        QStringList& cells = lines.emplace_back();
        for (const TextColumn& column : columns)
            cells += CellText(row[column.key]);
    }
    std::vector<qsizetype> widths(columns.size());
    for (const QStringList& cells : lines) {
        for (size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], cells[static_cast<qsizetype>(i)].size());
    }
    QString table;
    for (const QStringList& cells : lines)
        table += Line(cells, widths);
    return table;
}

CtlExit WriteRows(const Invocation& invocation, const ReadResult& read, const QJsonArray& rows,
                  const std::vector<TextColumn>& columns) {
    if (!read)
        return invocation.End(read);
    return invocation.Write(invocation.Has("--json"_L1) ? QJsonDocument(rows).toJson()
                                                        : TextTable(rows, columns).toUtf8());
}
