#include "service/DavListing.h"

#include "service/RequestText.h"
#include "zep/Text.h"

#include <algorithm>
#include <cstring>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Ok = 200;
constexpr int Multistatus = 207;
constexpr qsizetype LongestHref = 1038;
constexpr qsizetype NoPlace = std::numeric_limits<qsizetype>::max();

constexpr int Block = 64;
constexpr int Part = 16;

/// Whether a pattern of this length may begin in the block: three of its octets stand where they should. The
/// loop has no branches, so that the compiler compares many octets at once.
template <int Size>
bool MayBeginIn(const char* block, QByteArrayView pattern) {
    const char first = pattern.front();
    const char second = pattern[pattern.size() / 2];
    const char third = pattern.back();
    const char* seconds = block + pattern.size() / 2;
    const char* thirds = block + pattern.size() - 1;
    unsigned char least = 255; // of what differs; zero where all three stand
    for (int at = 0; at < Size; ++at) {
        const int differs = (block[at] ^ first) | (seconds[at] ^ second) | (thirds[at] ^ third);
        least = std::min(least, static_cast<unsigned char>(differs));
    }
    return least == 0;
}

/// The first place of the pattern, which begins before `end`; null when there is none.
const char* FindBefore(const char* begin, const char* end, QByteArrayView pattern) {
    const auto room = [&] { return static_cast<std::size_t>(end - begin); };
    while (begin < end && (begin = static_cast<const char*>(std::memchr(begin, pattern.front(), room())))) {
        if (begin[pattern.size() - 1] == pattern.back() &&
            std::memcmp(begin, pattern.data(), static_cast<std::size_t>(pattern.size())) == 0)
            return begin;
        ++begin;
    }
    return nullptr;
}

const char* Find(QByteArrayView text, qsizetype from, QByteArrayView pattern) {
    const char* at = text.data() + std::min(from, text.size());
    const char* end = text.data() + std::max(text.size() - pattern.size() + 1, qsizetype(0));
    for (; pattern.size() > 1 && end - at >= Block; at += Block)
        if (MayBeginIn<Block>(at, pattern))
            for (const char* part = at; part < at + Block; part += Part)
                if (const char* found =
                        MayBeginIn<Part>(part, pattern) ? FindBefore(part, part + Part, pattern) : nullptr)
                    return found;
    return at < end ? FindBefore(at, end, pattern) : nullptr;
}

/// Finds a pattern at or behind positions that never go back, so that all searches together look at each
/// octet once.
class NextPlace {
public:
    NextPlace(QByteArrayView text, const QByteArray& pattern) : m_text(text), m_pattern(pattern) {}

    /// NoPlace when there is none.
    qsizetype From(qsizetype position) {
        if (m_place < position) {
            const char* found = Find(m_text, position, m_pattern);
            m_place = found ? found - m_text.data() : NoPlace;
        }
        return m_place;
    }

    /// Where the pattern ends.
    qsizetype EndFrom(qsizetype position) {
        const qsizetype place = From(position);
        return place == NoPlace ? NoPlace : place + m_pattern.size();
    }

private:
    QByteArrayView m_text;
    QByteArray m_pattern;
    qsizetype m_place = -1;
};

/// The value that follows the next place of a property's name: from the first ">" to the first "<" behind it.
class NextValue {
public:
    NextValue(QByteArrayView text, const QByteArray& property)
        : m_property(text, property), m_open(text, ">"), m_close(text, "<") {}

    struct Value {
        bool named = false;        ///< the property's name was found
        qsizetype begin = NoPlace; ///< none when the name or the ">" is missing
        qsizetype end = NoPlace;   ///< none when begin or the "<" is missing
    };

    Value From(qsizetype position) {
        Value value;
        const qsizetype name = m_property.EndFrom(position);
        value.named = name != NoPlace;
        value.begin = value.named ? m_open.EndFrom(name) : NoPlace;
        value.end = value.begin == NoPlace ? NoPlace : m_close.From(value.begin);
        return value;
    }

private:
    NextPlace m_property;
    NextPlace m_open;
    NextPlace m_close;
};

/// What was made of the value at a place. A property that many elements lack is the same far-off value for
/// all of them: it is read once and its octets are shared.
template <typename T>
class Remembered {
public:
    template <typename Make>
    const T& Of(qsizetype place, Make make) {
        if (place != m_place)
            m_made = make();
        m_place = place;
        return m_made;
    }

private:
    qsizetype m_place = -1;
    T m_made = {};
};

/// The start of a response element. Prefixes have one character here: of a longer one the last counts.
QByteArray ElementMarker(QByteArrayView text) {
    const qsizetype place = text.indexOf(":multistatus");
    return place > 0 ? QByteArray("<") + text.at(place - 1) + ":response" : QByteArray("<response");
}

QString LastSegment(const QString& path) {
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

/// A forgiving search for the octets of known properties, and no reader of XML: the service's answers are
/// made for it. A property missing in one element is taken from a later one.
class Scanner {
public:
    Scanner(QByteArrayView text, const QString& folderPath, HiddenEntries hidden)
        : m_text(text), m_showHidden(hidden == HiddenEntries::Show),
          m_self(folderPath.contains(u'/') ? LastSegment(folderPath) : QString()),
          m_marker(text, ElementMarker(text)) {
        m_listing.folderPath = folderPath;
    }

    DavListing Scan() {
        while ((m_position = m_marker.EndFrom(m_position)) != NoPlace)
            ReadElement();
        return std::move(m_listing);
    }

private:
    struct Name {
        bool isThere = false;
        bool isListed = false; ///< neither empty, nor the folder itself or the root
        QString text = {};
    };

    /// Moves the position behind the element when all but its name and value were found.
    void ReadElement() {
        if (!m_showHidden && IsHidden())
            return;
        const QByteArray* href = ReadHref();
        const Name* name = href ? &ReadName(*href) : nullptr;
        if (!name || !name->isThere)
            return;
        const std::optional<bool> isFolder = ReadIsFolder();
        if (!isFolder)
            return;
        const NextValue::Value modified = m_modified.From(m_position);
        const qsizetype end = modified.begin == NoPlace ? NoPlace : m_elementEnd.From(modified.begin);
        if (end == NoPlace)
            return;
        m_position = end + ElementEnd.size();
        if (modified.end < end && name->isListed)
            m_listing.entries.push_back(
                {name->text, *href, *isFolder, Octets(modified.begin, modified.end).toByteArray()});
    }

    bool IsHidden() {
        const qsizetype place = m_hidden.From(m_position);
        return place != NoPlace && m_text.at(place - 1) == '1';
    }

    const QByteArray* ReadHref() {
        const NextValue::Value value = m_href.From(m_position);
        m_hrefBegin = value.begin;
        if (value.end == NoPlace)
            return nullptr;
        return &m_decodedHref.Of(value.begin, [&] {
            const qsizetype end = std::min(value.end, value.begin + LongestHref);
            return HtmlDecode(ZEPURLDecodeUTF8(Octets(value.begin, end)));
        });
    }

    const Name& ReadName(const QByteArray& href) {
        const NextValue::Value value = m_displayName.From(m_position);
        if (!value.named)
            return m_hrefName.Of(m_hrefBegin, [&] {
                const qsizetype slash = href.lastIndexOf('/');
                return slash < 0 ? Name() : MakeName(QByteArrayView(href).sliced(slash + 1));
            });
        return m_shownName.Of(value.begin, [&] {
            return value.end == NoPlace ? Name() : MakeName(Octets(value.begin, value.end));
        });
    }

    Name MakeName(QByteArrayView utf8) const {
        const QString text = ZEPUTF8ToUnicode(utf8);
        const bool isListed = !text.isEmpty() && text.compare(m_self, Qt::CaseInsensitive) != 0 &&
                              text.compare("resources"_L1, Qt::CaseInsensitive) != 0;
        return {true, isListed, text};
    }

    std::optional<bool> ReadIsFolder() {
        const NextValue::Value flag = m_collection.From(m_position);
        if (flag.named && flag.begin == NoPlace)
            return std::nullopt;
        if (flag.named)
            return m_flag.Of(flag.begin, [&] { return LeadingNumber(m_text.sliced(flag.begin)) != 0; });
        const NextValue::Value type = m_contentType.From(m_position);
        if (type.end == NoPlace)
            return std::nullopt;
        return m_isDirectory.Of(type.begin,
                                [&] { return Octets(type.begin, type.end).contains("directory"); });
    }

    QByteArrayView Octets(qsizetype begin, qsizetype end) const { return m_text.sliced(begin, end - begin); }

    inline static const QByteArray ElementEnd = "response>";

    QByteArrayView m_text;
    bool m_showHidden;
    QString m_self; ///< the name of the folder's own entry
    qsizetype m_position = 0;
    NextPlace m_marker;
    NextPlace m_hidden{m_text, "</a:mesffolder>"};
    NextValue m_href{m_text, "href"};
    NextValue m_displayName{m_text, "displayname"};
    NextValue m_collection{m_text, "iscollection"};
    NextValue m_contentType{m_text, "getcontenttype"};
    NextValue m_modified{m_text, "getlastmodified"};
    NextPlace m_elementEnd{m_text, ElementEnd};
    qsizetype m_hrefBegin = NoPlace;
    Remembered<QByteArray> m_decodedHref;
    Remembered<Name> m_hrefName;
    Remembered<Name> m_shownName;
    Remembered<bool> m_flag;
    Remembered<bool> m_isDirectory;
    DavListing m_listing;
};

} // namespace

DavListing ParseMultistatus(QByteArrayView answer, const QString& folderPath, HiddenEntries hidden) {
    if (!answer.contains('\0'))
        return Scanner(answer, folderPath, hidden).Scan();
    return Scanner(answer.toByteArray().replace('\0', ' '), folderPath, hidden).Scan();
}

ServiceAnswer RequestDavListing(const ServiceClient& service, const QString& folderPath,
                                std::stop_token stop) {
    return service.SendRequest(u"/resources"_s + folderPath, u"PROPFIND"_s, Multistatus, {}, std::move(stop),
                               ServiceClient::MaxListing);
}

std::optional<DavListing> FetchDavListing(const ServiceClient& service, const QString& folderPath,
                                          std::stop_token stop, HiddenEntries hidden) {
    const ServiceAnswer answer = RequestDavListing(service, folderPath, std::move(stop));
    if (!answer || !answer.length)
        return std::nullopt;
    return ParseMultistatus(answer.body, folderPath, hidden);
}

ServiceAnswer CreateDavFolder(const ServiceClient& service, const QString& parent, const QString& name,
                              std::stop_token stop) {
    if (!NewFolderRefusal(parent, name).isEmpty())
        return {};
    return service.SendRequest(u"/resources"_s + parent + u'/' + name, u"MKCOL"_s, Ok, {}, std::move(stop));
}

ServiceAnswer DeleteDavPath(const ServiceClient& service, const QString& path, std::stop_token stop) {
    if (!DeletedPathRefusal(path).isEmpty())
        return {};
    return service.SendRequest(u"/resources"_s + path, u"DELETE"_s, Ok, {}, std::move(stop));
}
