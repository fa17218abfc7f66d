#pragma once

#include "service/DavListing.h"
#include "zep/Text.h"

#include <QByteArrayList>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <utility>

/// The rules of ParseMultistatus one after the other, each search from the start of its element: slow, and
/// what the quick scanner is compared with.
inline DavListing NaiveListing(QByteArray answer, const QString& folderPath, HiddenEntries hidden) {
    using Value = std::pair<const char*, const char*>; // either may be null
    const auto valueOf = [](const char* from, const char* property) {
        const char* found = std::strstr(from, property);
        const char* begin = found ? std::strchr(found + std::strlen(property), '>') : nullptr;
        return begin ? Value(begin + 1, std::strchr(begin + 1, '<')) : Value();
    };
    const auto decoded = [](const QByteArray& raw) {
        QByteArray octets;
        for (int i = 0; i < raw.size(); ++i) {
            const QByteArray digits = raw.mid(i + 1, 2);
            const bool escape = raw[i] == '%' && digits.size() == 2 && std::isxdigit(uchar(digits[0])) &&
                                std::isxdigit(uchar(digits[1]));
            octets += escape ? char(digits.toInt(nullptr, 16)) : raw[i];
            i += escape ? 2 : 0;
        }
        return HtmlDecode(octets);
    };

    answer.replace('\0', ' ');
    QByteArray marker = "<response";
    const qsizetype root = answer.indexOf(":multistatus");
    if (root > 0)
        marker = QByteArray("<") + answer[root - 1] + ":response";
    DavListing listing{folderPath, {}};
    char* position = answer.data();
    while (char* element = std::strstr(position, marker.constData())) {
        position = element + marker.size();
        const char* mark = std::strstr(position, "</a:mesffolder>");
        if (hidden == HiddenEntries::LeaveOut && mark && mark[-1] == '1')
            continue;

        const Value link = valueOf(position, "href");
        if (!link.second)
            continue;
        DavEntry entry;
        entry.href = decoded(QByteArray(link.first, link.second - link.first).left(1038));

        QByteArray name;
        if (std::strstr(position, "displayname")) {
            const Value shown = valueOf(position, "displayname");
            if (!shown.second)
                continue;
            name = QByteArray(shown.first, shown.second - shown.first);
        } else if (entry.href.contains('/')) {
            name = entry.href.mid(entry.href.lastIndexOf('/') + 1);
        } else {
            continue;
        }

        if (std::strstr(position, "iscollection")) {
            const Value flag = valueOf(position, "iscollection");
            if (!flag.first)
                continue;
            entry.isFolder = std::strtol(flag.first, nullptr, 10) != 0;
        } else {
            const Value type = valueOf(position, "getcontenttype");
            if (!type.second)
                continue;
            entry.isFolder = QByteArray(type.first, type.second - type.first).contains("directory");
        }

        const Value modified = valueOf(position, "getlastmodified");
        const char* end = modified.first ? std::strstr(modified.first, "response>") : nullptr;
        if (!end)
            continue;
        position = answer.data() + (end - answer.constData()) + 9;
        if (!modified.second || modified.second > end)
            continue;
        entry.lastModified = QByteArray(modified.first, modified.second - modified.first);

        entry.name = ZEPUTF8ToUnicode(name);
        const bool isSelf = folderPath.contains(QChar(u'/')) &&
                            folderPath.section(QChar(u'/'), -1).compare(entry.name, Qt::CaseInsensitive) == 0;
        if (!isSelf && !entry.name.isEmpty() &&
            entry.name.compare(QLatin1String("resources"), Qt::CaseInsensitive) != 0)
            listing.entries.push_back(entry);
    }
    return listing;
}

/// An answer of the pieces that the octets choose, mostly well-formed: random octets hardly ever are.
inline QByteArray ComposeListing(QByteArrayView choices) {
    static const QByteArrayList pieces{"<D:multistatus xmlns:D=\"DAV:\">",
                                       "<multistatus>",
                                       "<lp1:multistatus>",
                                       ":multistatus",
                                       "<D:response>",
                                       "<response>",
                                       "<1:response>",
                                       "</D:response>",
                                       "</response>",
                                       "<D:response",
                                       "<D:href>/resources/home/Docs</D:href>",
                                       "<href>/a%20%C3%A4%zz%4&amp;&#65;</href>",
                                       "<D:href>x</D:href>",
                                       "<D:href>/home/b/</D:href>",
                                       "<D:href/>",
                                       "href",
                                       "<D:href>/" + QByteArray(1040, 'h') + "</D:href>",
                                       "<D:displayname>Docs</D:displayname>",
                                       "<displayname>a&amp;b%41</displayname>",
                                       "<displayname/>",
                                       "<displayname>resources</displayname>",
                                       "displayname",
                                       "<displayname>\xC3\xFF</displayname>",
                                       "<D:iscollection>1</D:iscollection>",
                                       "<iscollection> +0</iscollection>",
                                       "iscollection",
                                       "<D:getcontenttype>httpd/unix-directory</D:getcontenttype>",
                                       "<getcontenttype>text</getcontenttype>",
                                       "getcontenttype",
                                       "<D:getlastmodified>Mon, 1</D:getlastmodified>",
                                       "<getlastmodified></getlastmodified>",
                                       "getlastmodified>",
                                       "<a:mesffolder>1</a:mesffolder>",
                                       "<a:mesffolder>0</a:mesffolder>",
                                       "</a:mesffolder>",
                                       ">",
                                       "<",
                                       "/",
                                       "%",
                                       QByteArray(1, '\0'),
                                       "\xFE"};
    QByteArray answer;
    for (const char choice : choices) {
        const auto number = uchar(choice);
        if (number < 3 * pieces.size())
            answer += pieces[number % pieces.size()];
        else // a whole element, or one with another piece in it
            answer +=
                "<D:response><D:href>/home/" + QByteArray::number(number) + "</D:href>" +
                (number % 2 ? "<D:displayname>n</D:displayname>" : pieces[number % pieces.size()]) +
                "<D:iscollection>1</D:iscollection><D:getlastmodified>t</D:getlastmodified></D:response>";
    }
    return answer;
}
