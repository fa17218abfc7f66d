#include "list/ListText.h"

#include "list/CellMarkup.h"
#include "look/Look.h"

#include <QSaveFile>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString OnOneLine(QString words) {
    std::replace_if(
        words.begin(), words.end(), [](QChar c) { return c == u'\t' || c == u'\n' || c == u'\r'; },
        QChar(u' '));
    return words;
}

QString Quoted(const QString& words) {
    const bool plain = std::none_of(words.begin(), words.end(), [](QChar c) {
        return c == u',' || c == u'"' || c == u'\n' || c == u'\r';
    });
    if (plain && words.trimmed().size() == words.size())
        return words;
    return u'"' + QString(words).replace(u'"', "\"\""_L1) + u'"';
}

/// Appends the row's words, each by `write`.
template <typename Write>
void AddRow(QString& text, const ListExcerpt& excerpt, int place, const QString& separator, Write write) {
    for (size_t at = 0; at < excerpt.columns.size(); ++at) {
        if (at > 0)
            text += separator;
        text += write(WordsOfCell(excerpt.rows.Cell(place, excerpt.columns[at])));
    }
}

template <typename Write>
QString Joined(const ListExcerpt& excerpt, const QString& separator, const QString& lineEnd, Write write) {
    QString text;
    for (size_t row = 0; row < excerpt.places.size(); ++row) {
        if (row > 0)
            text += lineEnd;
        AddRow(text, excerpt, excerpt.places[row], separator, write);
    }
    return text;
}

QString RowsAsCsv(const ListExcerpt& excerpt, const QStringList& titles) {
    QStringList head;
    for (const QString& title : titles)
        head.append(Quoted(title));
    QString text = head.join(u',') + u"\r\n"_s;
    for (const int place : excerpt.places) {
        AddRow(text, excerpt, place, u","_s, Quoted);
        text += u"\r\n"_s;
    }
    return text;
}

} // namespace

QString JoinedWords(const ListExcerpt& excerpt, const QString& separator, const QString& lineEnd) {
    return Joined(excerpt, separator, lineEnd, [](QString words) { return words; });
}

QString RowsAsLines(const ListExcerpt& excerpt) {
    return Joined(excerpt, u"\t"_s, u"\n"_s, OnOneLine);
}

QString WriteCsv(const ListExcerpt& excerpt, const QStringList& titles, const QString& file) {
    // The mark tells spreadsheets that the text is UTF-8.
    const QByteArray octets = (QChar(QChar::ByteOrderMark) + RowsAsCsv(excerpt, titles)).toUtf8();
    QSaveFile saved(file);
    const bool written =
        saved.open(QIODevice::WriteOnly) && saved.write(octets) == octets.size() && saved.commit();
    return written ? QString() : file + u'\n' + saved.errorString();
}
