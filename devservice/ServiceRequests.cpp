#include "devservice/ServiceRequests.h"

#include <algorithm>
#include <charconv>

namespace devservice {

namespace {

constexpr char SettingsPath[] = "/settings/";
constexpr char SchedulePath[] = "/schedule/";
constexpr char ProfilePath[] = "/profile/";

bool StartsWith(const std::string& text, const std::string& beginning) {
    return text.rfind(beginning, 0) == 0;
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

std::string XmlAttribute(const std::string& name, const std::string& value) {
    std::string escaped;
    for (const char c : value) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return ' ' + name + "=\"" + escaped + '"';
}

/// The query's parameter of this name, case ignored, decoded.
std::optional<std::string> Parameter(const std::string& query, const std::string& name) {
    for (size_t begin = 0; begin <= query.size();) {
        const size_t end = std::min(query.find('&', begin), query.size());
        const std::string part = query.substr(begin, end - begin);
        const size_t equals = part.find('=');
        if (equals != std::string::npos && Lower(part.substr(0, equals)) == Lower(name))
            return PercentDecode(part.substr(equals + 1));
        begin = end + 1;
    }
    return {};
}

const Answer NotFound{404, "There is no such thing here.\n"};
const Answer BadRequest{400, "This request cannot be understood.\n"};
const Answer Done{200, "OK"};

/// "TASK:NUMBER", split at the last colon.
std::optional<std::pair<std::string, int>> SubTaskOf(const std::string& text) {
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos)
        return {};
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data() + colon + 1, end, number);
    if (error != std::errc() || stopped != end)
        return {};
    return std::pair(text.substr(0, colon), number);
}

} // namespace

struct ServiceRequests::Parts {
    std::string path;  ///< decoded
    std::string query; ///< as it came
    std::string body;  ///< without its closing zero octet
};

Answer ServiceRequests::Handle(const ReceivedRequest& request) {
    const size_t mark = std::min(request.target.find('?'), request.target.size());
    Parts parts{PercentDecode(request.target.substr(0, mark)),
                request.target.substr(std::min(mark + 1, request.target.size())), request.body};
    if (!parts.body.empty() && parts.body.back() == '\0')
        parts.body.pop_back();
    if (StartsWith(parts.path, SettingsPath))
        return HandleSettings(request, parts);
    if (request.verb == "GET" && StartsWith(parts.path, SchedulePath))
        return HandleSchedule(parts);
    if (request.verb == "GET" && StartsWith(parts.path, ProfilePath))
        return HandleProfile(parts);
    return NotFound;
}

Answer ServiceRequests::HandleSettings(const ReceivedRequest& request, const Parts& parts) {
    const std::string name = parts.path.substr(sizeof SettingsPath - 1);
    if (request.verb == "GET") {
        const auto value = m_settings.Get(name);
        return value ? Answer{200, *value} : NotFound; // the reader has a default of its own
    }
    const auto type = Parameter(parts.query, "ValueType");
    const auto value = Parameter(parts.query, "Value");
    if (request.verb != "PUT" || name.empty() || !value || (type != "1" && type != "2" && type != "4"))
        return BadRequest;
    m_settings.Set(name, *type, *value);
    return Done;
}

Answer ServiceRequests::HandleSchedule(const Parts& parts) {
    const std::string command = Lower(parts.path.substr(sizeof SchedulePath - 1));
    const std::string argument = PercentDecode(parts.query);
    bool done = false;
    if (command == "startnow")
        done = m_engine.Start(argument);
    else if (command == "pausetask")
        done = m_engine.Pause(argument);
    else if (command == "resumetask")
        done = m_engine.Resume(argument);
    else if (command == "deletetask")
        done = m_engine.Delete(argument);
    else if (const auto subTask = command == "delsub" ? SubTaskOf(argument) : std::nullopt)
        done = m_engine.DeleteSubTask(subTask->first, subTask->second);
    return done ? Done : NotFound;
}

Answer ServiceRequests::HandleProfile(const Parts& parts) {
    const std::string method = Lower(Parameter(parts.query, "PMCMethod").value_or(""));
    if (method == "getvdirlist")
        return VirtualDirectoryList();
    if (method != "getvdirstatus")
        return NotFound;
    const auto found =
        std::find_if(m_directories.begin(), m_directories.end(),
                     [&](const VirtualDirectory& each) { return Lower(each.name) == Lower(parts.body); });
    return found == m_directories.end() ? NotFound : Answer{200, std::to_string(found->status)};
}

Answer ServiceRequests::VirtualDirectoryList() const {
    std::string list;
    for (const VirtualDirectory& each : m_directories)
        list += "<VDir" + XmlAttribute("Name", each.name) + XmlAttribute("SafeCardId", each.safeCardId) +
                XmlAttribute("Status", std::to_string(each.status)) + XmlAttribute("SPId", each.providerId) +
                "/>";
    return {200, "<?xml version=\"1.0\" encoding=\"utf-8\"?><Response><VDirs>" + list + "</VDirs></Response>",
            "text/xml"};
}

} // namespace devservice
