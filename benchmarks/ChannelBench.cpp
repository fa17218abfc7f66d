#include "benchmarks/BenchTable.h"
#include "benchmarks/Home.h"
#include "service/ServiceClient.h"

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <memory>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Rounds = 2000;
constexpr size_t BigBody = size_t{64} << 20;

size_t Append(const char* data, size_t size, size_t count, void* body) {
    static_cast<std::string*>(body)->append(data, size * count);
    return size * count;
}

/// The plainest exchange that libcurl can do: a handle made afresh for the call.
void FetchBare(const std::string& url, std::string& body) {
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle(curl_easy_init(), curl_easy_cleanup);
    curl_easy_setopt(handle.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_NOPROXY, "*");
    curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, Append);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, &body);
    if (curl_easy_perform(handle.get()) != CURLE_OK)
        throw std::runtime_error("the bare handle got no answer");
    benchmark::DoNotOptimize(body.data());
}

void Ask(const QString& path) {
    const ServiceAnswer answer =
        ServiceClient().SendRequest(path, u"GET"_s, 200, {}, {}, ServiceClient::MaxListing);
    if (!answer)
        throw std::runtime_error("the client got no answer");
    benchmark::DoNotOptimize(answer.body.constData());
}

std::string UrlOf(const BenchHome& home, const char* path) {
    return "http://127.0.0.1:" + std::to_string(home.Service().Port()) + path;
}

void MeasureSmallAnswer(BenchTable& table) {
    BenchHome home("empty");
    home.Service().SetAnswer("/settings/Kilobyte", devservice::Answer{200, std::string(1024, 'x')});
    const std::string url = UrlOf(home, "/settings/Kilobyte");
    const PairSamples samples = MeasurePair(
        Rounds, [] { Ask(u"/settings/Kilobyte"_s); },
        [&] {
            std::string body;
            FetchBare(url, body);
        });
    table.Add({.name = "SendRequest, 1 KB answer, p50",
               .unit = "ms",
               .ours = samples.ours.Median(),
               .reference = samples.reference.Median(),
               .maxRatio = 1.3});
    table.Add({.name = "SendRequest, 1 KB answer, p99",
               .unit = "ms",
               .ours = samples.ours.Percentile(99),
               .reference = samples.reference.Percentile(99)});
}

void MeasureBigAnswer(BenchTable& table) {
    BenchHome home("empty");
    home.Service().SetAnswer("/settings/Big", devservice::Answer{200, std::string(BigBody, 'x')});
    const std::string url = UrlOf(home, "/settings/Big");
    const auto ours = [] { Ask(u"/settings/Big"_s); };
    const auto bare = [&] {
        std::string body;
        FetchBare(url, body);
    };
    const PairSamples samples = MeasurePair(5, ours, bare);
    table.Add({.name = "SendRequest, 64 MB answer, time",
               .unit = "ms",
               .ours = samples.ours.Median(),
               .reference = samples.reference.Median()});
    table.Add({.name = "SendRequest, 64 MB answer, peak memory",
               .unit = "MiB",
               .ours = PeakMemoryOf(ours),
               .reference = double(BigBody) / (1 << 20),
               .maxRatio = 2.2});
}

const BenchRegistration Small("channel small", MeasureSmallAnswer);
const BenchRegistration Big("channel big", MeasureBigAnswer);

} // namespace
