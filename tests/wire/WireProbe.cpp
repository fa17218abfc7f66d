#include "platform/HttpTransport.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

struct Probe {
    std::string verb;
    std::string target;
    std::vector<std::pair<std::string, std::string>> headers{};
    std::optional<std::string> body{};
    bool refresh = false;
    std::string userAgent{};
};

} // namespace

/// wire_probe PORT: sends one request of each kind to a listener on the loopback address, which keeps the
/// octets. tools/compare-octets holds those of the two systems against each other.
int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    const std::string xml = "<?xml version=\"1.0\"?><propfind xmlns=\"DAV:\"/>";
    const Probe probes[] = {
        {.verb = "GET", .target = "/settings/Dummy"},
        {.verb = "GET", .target = "/settings/Dummy", .refresh = true},
        {.verb = "GET", .target = "/profile/%d?PMCMethod=GetVdirList", .body = "<Request/>"},
        {.verb = "GET", .target = "/schedule/pausetask?{0A1B-2C}", .body = ""},
        {.verb = "PUT", .target = "/settings/DropFolders", .body = std::string("one\ntwo\0three", 13)},
        {.verb = "PUT", .target = "/settings/Empty", .body = ""},
        {.verb = "PUT", .target = "/settings/Large", .body = std::string(3'000'000, 'x')},
        {.verb = "POST", .target = "/mysafe/a b", .headers = {{"Content-Type", "text/xml"}}, .body = xml},
        {.verb = "PROPFIND",
         .target = "/resources/Gr\xC3\xB6\xC3\x9F"
                   "e/\xF0\x9F\x93\x81/",
         .headers = {{"Depth", "1"}, {"Accept", "*/*"}},
         .body = xml},
        {.verb = "MKCOL", .target = "/resources/new folder"},
        {.verb = "MOVE",
         .target = "/resources/a",
         .headers = {{"Destination", "/resources/b"}, {"Overwrite", "F"}}},
        {.verb = "DELETE", .target = "/resources/a/../b/./c"},
        {.verb = "GET", .target = "/x?a=\x01\x1F !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~\x7F"},
        {.verb = "GET", .target = "/x?value=line\nline%0Aline%zz"},
        {.verb = "GET", .target = "/"},
        {.verb = "GET", .target = "/x", .userAgent = "BTaskMMC"},
    };
    for (const Probe& probe : probes) {
        platform::HttpRequest request;
        request.host = "127.0.0.1";
        request.port = static_cast<uint16_t>(std::strtoul(argv[1], nullptr, 10));
        request.verb = probe.verb;
        request.target = probe.target;
        request.headers = probe.headers;
        request.body = probe.body;
        request.refresh = probe.refresh;
        request.userAgent = probe.userAgent;
        if (platform::SendHttp(request).status != 200)
            return 1;
    }
    return 0;
}
