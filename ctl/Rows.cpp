#include "ctl/Rows.h"

#include "ctl/BackgroundOutput.h"

#include <algorithm>

namespace {

constexpr qsizetype PieceSize = 64 << 10;
constexpr size_t LinesForWidths = 500;
constexpr qsizetype WidestPadding = 40;

bool NeedsEscape(char octet) {
    return static_cast<unsigned char>(octet) < ' ' || octet == '"' || octet == '\\';
}

void AppendEscaped(QByteArray& json, char octet) {
    if (octet == '"' || octet == '\\') {
        json += '\\';
        json += octet;
        return;
    }
    constexpr char Digits[] = "0123456789abcdef";
    json += "\\u00";
    json += Digits[octet >> 4];
    json += Digits[octet & 15];
}

void AppendJson(QByteArray& json, const QString& text) {
    if (text.isNull()) {
        json += "null";
        return;
    }
    const QByteArray utf8 = text.toUtf8();
    json += '"';
    for (const char *at = utf8.cbegin(), *const end = utf8.cend(); at != end;) {
        const char* const special = std::find_if(at, end, NeedsEscape);
        json.append(at, special - at);
        at = special;
        if (at != end)
            AppendEscaped(json, *at++);
    }
    json += '"';
}

void AppendJson(QByteArray& json, qint64 number) {
    json += QByteArray::number(number);
}

void AppendJson(QByteArray& json, bool value) {
    json += value ? "true" : "false";
}

QString CellText(QString text) {
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = QLatin1Char(' ');
    }
    return text;
}

QString CellText(qint64 number) {
    return QString::number(number);
}

QString CellText(bool value) {
    return QLatin1String(value ? "yes" : "no");
}

} // namespace

RowWriter::RowWriter(RowFormat format, std::vector<Column> columns, Sink sink)
    : m_format(format), m_columns(std::move(columns)), m_sink(std::move(sink)) {
    m_text.reserve(PieceSize + PieceSize / 4);
    for (const Column& column : m_columns)
        m_keys.push_back((m_keys.empty() ? "{\"" : ",\"") + QByteArray(column.key.data(), column.key.size()) +
                         "\":");
}

bool RowWriter::Add(std::initializer_list<Cell> cells) {
    if (m_format == RowFormat::Json) {
        AddObject(cells);
    } else if (!m_widths.empty()) {
        WriteLine(LineOf(cells));
    } else {
        m_first.push_back(LineOf(cells));
        if (m_first.size() >= LinesForWidths)
            BeginTable();
    }
    m_empty = false;
    return Flush(PieceSize);
}

void RowWriter::AddObject(std::initializer_list<Cell> cells) {
    m_text += m_empty ? "[" : ",\n";
    auto key = m_keys.cbegin();
    for (const Cell& cell : cells) {
        m_text += *key++;
        std::visit([this](const auto& value) { AppendJson(m_text, value); }, cell);
    }
    m_text += '}';
}

QStringList RowWriter::LineOf(std::initializer_list<Cell> cells) const {
    QStringList line;
    auto column = m_columns.cbegin();
    for (const Cell& cell : cells) {
        if (!(column++)->title.isEmpty())
            line += std::visit([](const auto& value) { return CellText(value); }, cell);
    }
    return line;
}

void RowWriter::BeginTable() {
    QStringList titles;
    for (const Column& column : m_columns) {
        if (!column.title.isEmpty())
            titles += column.title;
    }
    m_widths.assign(static_cast<size_t>(titles.size()), 0);
    m_first.insert(m_first.begin(), titles);
    for (const QStringList& line : m_first) {
        for (size_t i = 0; i < m_widths.size(); ++i)
            m_widths[i] =
                std::max(m_widths[i], std::min(line[static_cast<qsizetype>(i)].size(), WidestPadding));
    }
    for (const QStringList& line : m_first)
        WriteLine(line);
    m_first.clear();
}

void RowWriter::WriteLine(const QStringList& line) {
    qsizetype blanks = 0; // that stand before the next text; none at the end of a line
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (!line[i].isEmpty()) {
            m_text.append(blanks, ' ');
            m_text += line[i].toUtf8();
            blanks = 0;
        }
        blanks += std::max<qsizetype>(m_widths[static_cast<size_t>(i)] - line[i].size(), 0) + 2;
    }
    m_text += '\n';
}

bool RowWriter::Flush(qsizetype least) {
    if (m_taken && m_text.size() >= least) {
        m_taken = m_sink(m_text);
        m_text.resize(0);
    }
    return m_taken;
}

bool RowWriter::Finish(bool whole) {
    if (m_format == RowFormat::Json)
        m_text += m_empty ? "[]\n" : "]\n";
    else if (m_widths.empty() && (whole || !m_empty))
        BeginTable();
    return Flush(1);
}

CtlExit WriteRows(const Invocation& invocation, const std::vector<Column>& columns,
                  const std::function<CtlExit(RowWriter&)>& read) {
    BackgroundOutput output(invocation.out);
    RowWriter writer(invocation.Has(JsonOption.name) ? RowFormat::Json : RowFormat::Table, columns,
                     [&output](QByteArray text) { return output.Write(std::move(text)); });
    const CtlExit exit = read(writer);
    const bool taken = writer.Finish(exit == CtlExit::Done);
    if (!output.Finish() || !taken)
        return invocation.End(CtlExit::Refused, QStringLiteral("The output could not be written."));
    return exit;
}
