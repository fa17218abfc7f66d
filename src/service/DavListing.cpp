#include "service/DavListing.h"

#include "service/RequestText.h"
#include "zep/Text.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(DavListing)
};

constexpr int Ok = 200;
constexpr int Multistatus = 207;
constexpr qsizetype SmallEntry = 256; // octets: few answers have smaller ones, and room unused costs nothing
constexpr qsizetype Block = 64 * 1024;
constexpr qsizetype LongestHref = 1038;
constexpr qsizetype NoPlace = std::numeric_limits<qsizetype>::max();

/// Finds a pattern at or behind positions that never go back, so that all searches together look at each
/// octet once.
class NextPlace {
public:
    /// The octets of the text and of the pattern stay where they are. `rare` is the place in the pattern of
    /// an octet that answers seldom hold: it is what is looked for first.
    NextPlace(QByteArrayView text, QByteArrayView pattern, qsizetype rare = 0)
        : m_text(text.data()), m_end(text.size() - pattern.size() + rare + 1), m_pattern(pattern),
          m_rare(rare) {}

    /// NoPlace when there is none.
    qsizetype From(qsizetype position) { return m_place < position ? m_place = Find(position) : m_place; }

    /// Where the pattern ends.
    qsizetype EndFrom(qsizetype position) {
        const qsizetype place = From(position);
        return place == NoPlace ? NoPlace : place + m_pattern.size();
    }

    /// Whether it is at `begin` or behind. Where it is not is not searched again.
    bool IsBehind(qsizetype begin) {
        if (Find(begin) != NoPlace)
            return true;
        m_end = std::min(m_end, begin + m_rare);
        return false;
    }

private:
    qsizetype Find(qsizetype from) const {
        const char rare = m_pattern[m_rare];
        for (qsizetype at = from + m_rare; at < m_end; ++at) {
            if (m_text[at] != rare) {
                const void* found = std::memchr(m_text + at, rare, static_cast<std::size_t>(m_end - at));
                if (!found)
                    break;
                at = static_cast<const char*>(found) - m_text;
            }
            const char* place = m_text + at - m_rare;
            if (*place == m_pattern.front() &&
                std::memcmp(place, m_pattern.data(), static_cast<std::size_t>(m_pattern.size())) == 0)
                return at - m_rare;
        }
        return NoPlace;
    }

    const char* m_text;
    qsizetype m_end; ///< of where the rare octet may stand
    QByteArrayView m_pattern;
    qsizetype m_rare;
    qsizetype m_place = -1;
};

/// Finds out which patterns are missing from somewhere on: begins at the end, where they soon turn up if
/// entries have them, and goes back block by block with all of them, so that a long text is read from memory
/// once.
void LookFromTheEnd(qsizetype length, std::vector<NextPlace*> patterns) {
    for (qsizetype end = length; end > 0 && !patterns.empty(); end -= Block)
        std::erase_if(patterns, [begin = std::max(end - Block, qsizetype(0))](NextPlace* pattern) {
            return pattern->IsBehind(begin);
        });
}

bool IsBlank(char c) {
    return c == '\0' || c == ' ' || (c >= '\t' && c <= '\r');
}

/// Reads octets, zero ones as blanks.
template <typename Read>
auto ReadWithBlanks(QByteArrayView octets, Read read) {
    return octets.contains('\0') ? read(octets.toByteArray().replace('\0', ' ')) : read(octets);
}

/// The value that follows the next place of a property's name: from the first ">" to the first "<" behind it.
class NextValue {
public:
    NextValue(QByteArrayView text, QByteArrayView property, qsizetype rare)
        : m_property(text, property, rare), m_open(text, ">"), m_close(text, "<") {}

    struct Value {
        bool named = false;        ///< the property's name was found
        qsizetype begin = NoPlace; ///< none when the name or the ">" is missing
        qsizetype end = NoPlace;   ///< none when begin or the "<" is missing
    };

    Value From(qsizetype position) {
        Value value = BeginFrom(position);
        value.end = value.begin == NoPlace ? NoPlace : m_close.From(value.begin);
        return value;
    }

    NextPlace& Property() { return m_property; }

    /// Its end is not looked for.
    Value BeginFrom(qsizetype position) {
        const qsizetype name = m_property.EndFrom(position);
        return {name != NoPlace, name == NoPlace ? NoPlace : m_open.EndFrom(name), NoPlace};
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
    if (place <= 0)
        return "<response";
    const char prefix = text.at(place - 1);
    return QByteArray("<") + (prefix == '\0' ? ' ' : prefix) + ":response";
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
          m_elementBegin(ElementMarker(text)), m_marker(text, m_elementBegin) {
        m_listing.folderPath = folderPath;
        m_listing.entries.reserve(static_cast<std::size_t>(text.size() / SmallEntry));
        LookFromTheEnd(text.size(), {&m_hidden, &m_displayName.Property(), &m_collection.Property()});
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
                {name->text, *href, *isFolder, ReadModified(Octets(modified.begin, modified.end))});
    }

    /// Neighbours of the same time share its octets: a large listing costs most where it touches new memory.
    const QByteArray& ReadModified(QByteArrayView octets) {
        if (m_lastModified != octets)
            m_lastModified = octets.toByteArray().replace('\0', ' ');
        return m_lastModified;
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
            return ReadWithBlanks(Octets(value.begin, end),
                                  [](QByteArrayView octets) { return HtmlDecode(ZEPURLDecodeUTF8(octets)); });
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
            if (value.end == NoPlace)
                return Name();
            return ReadWithBlanks(Octets(value.begin, value.end),
                                  [this](QByteArrayView octets) { return MakeName(octets); });
        });
    }

    Name MakeName(QByteArrayView utf8) const {
        const QString text = ZEPUTF8ToUnicode(utf8);
        const auto is = [&text](const auto& name) {
            return text.size() == name.size() && text.compare(name, Qt::CaseInsensitive) == 0;
        };
        return {true, !text.isEmpty() && !is(m_self) && !is("resources"_L1), text};
    }

    std::optional<bool> ReadIsFolder() {
        const NextValue::Value flag = m_collection.BeginFrom(m_position);
        if (flag.named && flag.begin == NoPlace)
            return std::nullopt;
        if (flag.named)
            return m_flag.Of(flag.begin, [&] { return ReadNumber(flag.begin) != 0; });
        const NextValue::Value type = m_contentType.From(m_position);
        if (type.end == NoPlace)
            return std::nullopt;
        return m_isDirectory.Of(type.begin,
                                [&] { return Octets(type.begin, type.end).contains("directory"); });
    }

    int ReadNumber(qsizetype begin) const {
        const QByteArrayView rest = m_text.sliced(begin);
        const auto* number = std::find_if_not(rest.begin(), rest.end(), IsBlank);
        return LeadingNumber({number, rest.end()});
    }

    QByteArrayView Octets(qsizetype begin, qsizetype end) const { return m_text.sliced(begin, end - begin); }

    static constexpr QByteArrayView ElementEnd = "response>";

    QByteArrayView m_text;
    bool m_showHidden;
    QString m_self; ///< the name of the folder's own entry
    qsizetype m_position = 0;
    QByteArray m_elementBegin;
    NextPlace m_marker;
    NextPlace m_hidden{m_text, "</a:mesffolder>", 4};
    NextValue m_href{m_text, "href", 3};
    NextValue m_displayName{m_text, "displayname", 6};
    NextValue m_collection{m_text, "iscollection", 4};
    NextValue m_contentType{m_text, "getcontenttype", 11};
    NextValue m_modified{m_text, "getlastmodified", 7};
    NextPlace m_elementEnd{m_text, ElementEnd, 6};
    qsizetype m_hrefBegin = NoPlace;
    Remembered<QByteArray> m_decodedHref;
    Remembered<Name> m_hrefName;
    Remembered<Name> m_shownName;
    Remembered<bool> m_flag;
    Remembered<bool> m_isDirectory;
    QByteArray m_lastModified; ///< of the entry before
    DavListing m_listing;
};

} // namespace

DavListing ParseMultistatus(QByteArrayView answer, const QString& folderPath, HiddenEntries hidden) {
    return Scanner(answer, folderPath, hidden).Scan();
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

QString ListingFailure(const ServiceAnswer& answer) {
    if (answer.outcome == ServiceOutcome::OtherStatus)
        return Words::tr("The service does not list this folder (status %1).").arg(answer.status);
    if (!answer)
        return Words::tr("The service does not answer.");
    return answer.length ? QString() : Words::tr("The service's answer broke off in the middle.");
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
