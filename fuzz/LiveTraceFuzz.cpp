#include "Require.h"
#include "zep/LiveTraceLayout.h"
#include "zep/Text.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

namespace {

QString Text(FuzzedDataProvider& data) {
    return ZEPUTF8ToUnicode(data.ConsumeRandomLengthString(20));
}

LiveTraceSnapshot Snapshot(FuzzedDataProvider& data) {
    LiveTraceSnapshot snapshot;
    snapshot.counters[TraceCounter::TaskTable] = data.ConsumeIntegral<quint32>();
    snapshot.netIoTotal.sent = data.ConsumeIntegral<quint64>();
    for (int tasks = data.ConsumeIntegralInRange(0, 4); tasks > 0; --tasks)
        snapshot.tasks[Text(data)] = {data.ConsumeIntegral<quint32>(), {}, 0, 1};
    for (int running = data.ConsumeIntegralInRange(0, 4); running > 0; --running)
        snapshot.running.push_back({Text(data), Text(data), {}, Text(data), {}, {}, 1, 2, Text(data)});
    return snapshot;
}

/// What is read is written and read again as the same.
void Check(const LiveTrace::Decoded& decoded) {
    const auto again = LiveTrace::Decode(LiveTrace::Encode(decoded.snapshot, decoded.instance));
    Require(again && again->instance == decoded.instance);
    Require(again->snapshot.netIoTotal.sent == decoded.snapshot.netIoTotal.sent);
    Require(again->snapshot.tasks.size() == decoded.snapshot.tasks.size());
    Require(again->snapshot.running.size() == decoded.snapshot.running.size());
    for (size_t i = 0; i < again->snapshot.running.size(); ++i) {
        Require(again->snapshot.running[i].fileName == decoded.snapshot.running[i].fileName);
        Require(again->snapshot.running[i].bytesTotal == decoded.snapshot.running[i].bytesTotal);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* octets, size_t size) {
    FuzzedDataProvider data(octets, size);
    std::vector<quint32> words = LiveTrace::Encode(Snapshot(data), 7);
    const auto whole = LiveTrace::Decode(words);
    Require(whole.has_value());
    Check(*whole);

    while (data.remaining_bytes() > 0) {
        const auto at = data.ConsumeIntegralInRange<size_t>(0, words.size() - 1);
        words[at] = data.ConsumeBool() ? data.ConsumeIntegral<quint32>() : data.ConsumeIntegral<quint8>();
    }
    if (const auto damaged = LiveTrace::Decode(words))
        Check(*damaged);
    return 0;
}
