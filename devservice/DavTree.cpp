#include "devservice/DavTree.h"

#include "devservice/WireText.h"
#include "platform/Folders.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

namespace devservice {

namespace fs = std::filesystem;

namespace {

const Answer Done{200, "OK"};
const Answer NotFound{404, "There is no such file or folder.\n"};
const Answer Refused{403, "This is not allowed here.\n"};
const Answer Conflict{409, "There is no folder to hold it.\n"};
const Answer Taken{405, "There is a file or folder of this name.\n"};
const Answer NoChange{507, "The storage cannot be changed.\n"};

std::vector<std::string> NamesOf(const std::string& path) {
    std::vector<std::string> names;
    for (size_t begin = 0; begin <= path.size();) {
        const size_t end = std::min(path.find('/', begin), path.size());
        if (end > begin)
            names.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return names;
}

std::string LastName(const std::string& path) {
    const std::vector<std::string> names = NamesOf(path);
    return names.empty() ? std::string() : names.back();
}

bool IsThere(const fs::path& place) {
    std::error_code error;
    const auto type = fs::symlink_status(place, error).type();
    return type == fs::file_type::directory || type == fs::file_type::regular;
}

/// The service's own folders and those that begin with a dot are not for people.
bool IsHidden(const std::string& name) {
    return StartsWith(name, ".") || name == VersionStore || name == BackupSets;
}

SimTime ModifiedAt(const fs::directory_entry& entry) {
    std::error_code error;
    const auto time = fs::file_time_type::clock::to_sys(entry.last_write_time(error));
    return error ? SimTime() : std::chrono::floor<std::chrono::milliseconds>(time);
}

/// As in "Tue, 04 Mar 2025 09:05:00 GMT".
std::string HttpDate(SimTime time) {
    static constexpr const char* days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
    char text[64];
    std::snprintf(text, sizeof text, "%s, %02u %s %04d %02d:%02d:%02d GMT",
                  days[std::chrono::weekday(day).c_encoding()], unsigned(date.day()),
                  months[unsigned(date.month()) - 1], int(date.year()), int(clock.hours().count()),
                  int(clock.minutes().count()), int(clock.seconds().count()));
    return text;
}

void SetModified(const fs::path& place, SimTime time) {
    std::error_code ignored;
    fs::last_write_time(place, fs::file_time_type::clock::from_sys(time), ignored);
}

Answer Content(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {200, std::string(std::istreambuf_iterator<char>(in), {}), "application/octet-stream"};
}

} // namespace

DavTree::DavTree(fs::path mounted, fs::path kept, const std::string& prefix)
    : m_mounted(std::move(mounted)), m_kept(std::move(kept)), m_tag(prefix.empty() ? prefix : prefix + ':'),
      m_namespace(prefix.empty() ? " xmlns=\"DAV:\"" : " xmlns:" + prefix + "=\"DAV:\"") {}

bool DavTree::IsPlainName(const std::string& name) {
    constexpr bool posix = fs::path::preferred_separator == '/';
    const bool odd = name.find('/') != std::string::npos || name.find('\0') != std::string::npos ||
                     (!posix && name.find_first_of("\\:*?\"<>|") != std::string::npos);
    return !name.empty() && name != "." && name != ".." && !odd;
}

std::optional<fs::path> DavTree::Place(const std::string& path) const {
    fs::path place = m_mounted;
    for (const std::string& name : NamesOf(path)) {
        if (!IsPlainName(name))
            return {};
        fs::path next = place / platform::PathFromUtf8(name);
        std::error_code error;
        if (place == m_mounted && !IsThere(next))
            for (const auto& entry : fs::directory_iterator(place, error))
                if (SameName(platform::Utf8FromPath(entry.path().filename()), name))
                    next = entry.path();
        if (fs::is_symlink(fs::symlink_status(next, error)))
            return {};
        place = next;
    }
    return place;
}

Answer DavTree::Handle(const std::string& verb, const std::string& path,
                       const std::string& destination) const {
    const auto place = Place(path);
    const bool top = NamesOf(path).size() < 2; // the tree itself, or a whole storage account
    if (!place)
        return NotFound;
    std::error_code error;
    if (verb == "MKCOL") {
        if (top)
            return Refused;
        if (IsThere(*place))
            return Taken;
        if (!fs::is_directory(place->parent_path()))
            return Conflict;
        return fs::create_directory(*place, error) ? Done : NoChange;
    }
    if (!IsThere(*place))
        return NotFound;
    if (verb == "PROPFIND")
        return fs::is_directory(*place) ? List(path, *place) : NotFound;
    if (verb == "GET")
        return fs::is_directory(*place) ? Refused : Content(*place);
    if (top || (verb != "DELETE" && verb != "MOVE"))
        return Refused;
    if (verb == "DELETE")
        return fs::remove_all(*place, error) != static_cast<uintmax_t>(-1) ? Done : NoChange;
    const auto target = NamesOf(destination).size() < 2 ? std::nullopt : Place(destination);
    if (!target || (IsThere(*target) && !fs::equivalent(*target, *place, error)))
        return target ? Taken : Refused;
    if (!fs::is_directory(target->parent_path()))
        return Conflict;
    fs::rename(*place, *target, error);
    return error ? NoChange : Done;
}

Answer DavTree::List(const std::string& path, const fs::path& folder) const {
    struct Child {
        std::string name;
        fs::directory_entry entry;
    };
    std::vector<Child> children;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (IsThere(entry.path()))
            children.push_back({platform::Utf8FromPath(entry.path().filename()), entry});
    std::sort(children.begin(), children.end(),
              [](const Child& a, const Child& b) { return a.name < b.name; });
    std::string base = "/resources";
    for (const std::string& name : NamesOf(path))
        base += '/' + name;
    const std::string own = LastName(path);
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?><" + m_tag + "multistatus" + m_namespace +
                       " xmlns:a=\"urn:brenvia:folders\">" +
                       Element(base + '/', own.empty() ? "resources" : own, fs::directory_entry(folder));
    for (const Child& child : children)
        text += Element(base + '/' + child.name + (child.entry.is_directory() ? "/" : ""), child.name,
                        child.entry);
    return {207, text + "</" + m_tag + "multistatus>", "text/xml; charset=utf-8"};
}

std::string DavTree::Element(const std::string& href, const std::string& name,
                             const fs::directory_entry& entry) const {
    std::error_code error;
    const bool folder = entry.is_directory(error);
    const auto element = [this](const char* tag, const std::string& value) {
        return '<' + m_tag + tag + '>' + value + "</" + m_tag + tag + '>';
    };
    // Readers take the name as it stands, so an ampersand in it stands as it is. They look for the mark of a
    // hidden folder without an end, so every element says yes or no.
    const std::string properties =
        element("displayname", name) + element("iscollection", folder ? "1" : "0") +
        element("getcontenttype", folder ? "httpd/unix-directory" : "application/octet-stream") +
        (folder ? std::string() : element("getcontentlength", std::to_string(entry.file_size(error)))) +
        element("getlastmodified", HttpDate(ModifiedAt(entry))) + "<a:mesffolder>" +
        (IsHidden(name) ? '1' : '0') + "</a:mesffolder>";
    return element("response", element("href", PercentEncodePath(href)) +
                                   element("propstat", element("prop", properties) +
                                                           element("status", "HTTP/1.1 200 OK")));
}

void DavTree::Mount(const std::string& name) {
    const auto place = Place('/' + name);
    std::error_code error;
    if (!place || !IsPlainName(name) || IsThere(*place))
        return;
    fs::create_directories(m_mounted, error);
    fs::rename(m_kept / platform::PathFromUtf8(name), *place, error);
    if (!error)
        return;
    const SimTime then = MakeTime(2024, 11, 5, 17, 20);
    Put('/' + name + "/Documents/", 0, then);
    Put('/' + name + "/Pictures/Garden/", 0, then);
    Put('/' + name + "/Read me.txt", 420, then);
}

void DavTree::Dismount(const std::string& name) {
    const auto place = Place('/' + name);
    std::error_code error;
    if (!place || !IsPlainName(name))
        return;
    fs::create_directories(m_kept, error);
    fs::remove_all(m_kept / platform::PathFromUtf8(name), error);
    fs::rename(*place, m_kept / platform::PathFromUtf8(name), error);
}

void DavTree::Rename(const std::string& name, const std::string& newName) {
    const auto place = Place('/' + name);
    std::error_code error;
    if (place && IsPlainName(name) && IsPlainName(newName))
        fs::rename(*place, m_mounted / platform::PathFromUtf8(newName), error);
}

void DavTree::Put(const std::string& path, size_t octets, SimTime modified) {
    const auto place = Place(path);
    if (!place)
        return;
    std::error_code error;
    if (path.back() == '/') {
        fs::create_directories(*place, error);
        SetModified(*place, modified);
        return;
    }
    static constexpr std::string_view line = "The quick brown fox jumps over the lazy dog, again.\n";
    std::string content;
    content.reserve(octets + line.size());
    while (content.size() < octets)
        content += line;
    content.resize(octets);
    Write(path, content, modified);
}

void DavTree::Write(const std::string& path, const std::string& content, SimTime modified) {
    const auto place = Place(path);
    std::error_code error;
    if (!place)
        return;
    fs::create_directories(place->parent_path(), error);
    std::ofstream(*place, std::ios::binary) << content;
    SetModified(*place, modified);
}

std::optional<std::string> DavTree::Find(const std::string& folder, const std::string& name) const {
    const auto place = Place(folder);
    std::error_code error;
    if (!place || !fs::is_directory(*place))
        return {};
    for (const auto& entry : fs::recursive_directory_iterator(*place, error))
        if (entry.is_regular_file(error) && platform::Utf8FromPath(entry.path().filename()) == name)
            return '/' +
                   platform::PathFromUtf8(platform::Utf8FromPath(entry.path().lexically_relative(m_mounted)))
                       .generic_string();
    return {};
}

uint64_t DavTree::Used(const std::string& name) const {
    uint64_t octets = 0;
    const auto place = Place('/' + name);
    std::error_code error;
    if (!place || !fs::is_directory(*place))
        return 0;
    for (const auto& entry : fs::recursive_directory_iterator(*place, error))
        octets += entry.is_regular_file(error) ? entry.file_size(error) : 0;
    return octets;
}

} // namespace devservice
