#include "ctl/Rows.h"

#include "ctl/BackgroundOutput.h"

#include <algorithm>
#include <charconv>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype PieceSize = 256 << 10;
constexpr size_t LinesForWidths = 500;
constexpr qsizetype WidestPadding = 40;

bool NeedsEscape(char octet) {
    return static_cast<unsigned char>(octet) < ' ' || octet == '"' || octet == '\\';
}

/// Looks at all octets, which compilers do many at a time.
bool AnyNeedsEscape(const char* at, const char* end) {
    bool any = false;
    for (; at != end; ++at)
        any |= NeedsEscape(*at);
    return any;
}

char* WriteEscaped(char* at, char octet) {
    constexpr char Digits[] = "0123456789abcdef";
    *at++ = '\\';
    if (octet == '"' || octet == '\\') {
        *at++ = octet;
        return at;
    }
    for (const char each : {'u', '0', '0', Digits[octet >> 4], Digits[octet & 15]})
        *at++ = each;
    return at;
}

char* Write(char* at, QByteArrayView octets) {
    return std::copy(octets.begin(), octets.end(), at);
}

// The writers below are given room enough: rows come by the hundred thousand, and octet by octet that shows.
constexpr qsizetype MostOctetsOfUnit = 6;  ///< of UTF-16, as in "\u001f"
constexpr qsizetype MostOctetsAround = 24; ///< quotation marks, a number

qsizetype RoomFor(QStringView text) {
    return MostOctetsAround + text.size() * MostOctetsOfUnit;
}

qsizetype RoomFor(const Cell& cell) {
    if (const auto* const* list = std::get_if<const QStringList*>(&cell))
        return std::accumulate(
            (*list)->begin(), (*list)->end(), MostOctetsAround,
            [](qsizetype room, const QString& text) { return room + RoomFor(QStringView(text)); });
    const auto* text = std::get_if<QStringView>(&cell);
    return RoomFor(text ? *text : QStringView());
}

char* WriteJson(char* at, QStringView text, QStringEncoder& utf8) {
    if (text.isNull())
        return Write(at, "null");
    *at++ = '"';
    char* const end = utf8.appendToBuffer(at, text);
    if (!AnyNeedsEscape(at, end)) {
        at = end;
    } else {
        for (const char octet : QByteArray(at, end - at)) {
            if (NeedsEscape(octet))
                at = WriteEscaped(at, octet);
            else
                *at++ = octet;
        }
    }
    *at++ = '"';
    return at;
}

char* WriteJson(char* at, qint64 number, QStringEncoder&) {
    return std::to_chars(at, at + MostOctetsAround, number).ptr;
}

char* WriteJson(char* at, bool value, QStringEncoder&) {
    return Write(at, value ? QByteArrayView("true") : QByteArrayView("false"));
}

char* WriteJson(char* at, const QStringList* list, QStringEncoder& utf8) {
    *at++ = '[';
    for (const QString& text : *list) {
        if (&text != &list->front())
            *at++ = ',';
        at = WriteJson(at, QStringView(text), utf8);
    }
    *at++ = ']';
    return at;
}

QString CellText(QStringView view) {
    QString text = view.toString();
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

QString CellText(const QStringList* list) {
    return CellText(list->join(u", "_s));
}

} // namespace

RowWriter::RowWriter(RowFormat format, std::vector<Column> columns, Sink sink)
    : m_format(format), m_columns(std::move(columns)), m_sink(std::move(sink)) {
    m_text.reserve(PieceSize + PieceSize / 4);
    for (const Column& column : m_columns) {
        m_keys.push_back((m_keys.empty() ? "{\"" : ",\"") + QByteArray(column.key.data(), column.key.size()) +
                         "\":");
        m_keyOctets += m_keys.back().size();
    }
}

bool RowWriter::Add(std::initializer_list<Cell> cells) {
    if (m_format != RowFormat::Table) {
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
    qsizetype room = m_keyOctets + MostOctetsAround;
    for (const Cell& cell : cells)
        room += RoomFor(cell);
    const qsizetype before = m_text.size();
    m_text.resize(before + room);
    char* at = m_text.data() + before;
    if (m_format == RowFormat::Json)
        at = Write(at, m_empty ? QByteArrayView("[") : QByteArrayView(",\n"));
    auto key = m_keys.cbegin();
    for (const Cell& cell : cells) {
        at = Write(at, *key++);
        at = std::visit([&](const auto& value) { return WriteJson(at, value, m_utf8); }, cell);
    }
    *at++ = '}';
    if (m_format == RowFormat::JsonLines)
        *at++ = '\n';
    m_text.resize(at - m_text.constData());
}

bool RowWriter::Push() {
    if (!m_first.empty())
        BeginTable();
    return Flush(1);
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
        m_text.resize(0); // keeps its memory
    }
    return m_taken;
}

bool RowWriter::Finish(bool whole) {
    if (m_format == RowFormat::Json)
        m_text += m_empty ? "[]\n" : "]\n";
    else if (m_format == RowFormat::Table && m_widths.empty() && (whole || !m_empty))
        BeginTable();
    return Flush(1);
}

CtlExit WriteRows(const Invocation& invocation, const std::vector<Column>& columns,
                  const std::function<CtlExit(RowWriter&)>& read) {
    BackgroundOutput output(invocation.out);
    const RowFormat json = invocation.Has(FollowOption.name) ? RowFormat::JsonLines : RowFormat::Json;
    RowWriter writer(invocation.Has(JsonOption.name) ? json : RowFormat::Table, columns,
                     [&output](QByteArrayView text) { return output.Write(text); });
    const CtlExit exit = read(writer);
    const bool taken = writer.Finish(exit == CtlExit::Done);
    if (!output.Finish() || !taken)
        return invocation.End(CtlExit::Refused, u"The output could not be written."_s);
    return exit;
}
