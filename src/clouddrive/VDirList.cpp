#include "clouddrive/VDirList.h"

#include "service/VirtualDirectories.h"

std::function<CardEntries(std::stop_token)> VDirListReader(const ServiceClient& service,
                                                           const LiveCounters& counters) {
    // The reads are copies of this one, and go on counting.
    return [service, &counters, number = std::make_shared<int>(0)](std::stop_token stop) {
        const ServiceAnswer answer = RequestVdirListAs(service, ++*number, std::move(stop));
        const auto records = answer ? ParseVdirList(answer.body) : std::nullopt;
        if (!records)
            return CardEntries::Of<VDirRow>({answer ? ReadOutcome::Failed : ReadOutcome::Unavailable, {}},
                                            {});
        const auto letter = counters.ZEPTraceCounterGet(TraceCounter::DriveLetter).value_or(0);
        std::vector<VDirRow> rows;
        rows.reserve(records->size());
        for (const VDirRecord& record : *records)
            rows.push_back(
                {{record.name, record.name, {}, static_cast<int>(MeaningOfStatus(record.status).state)},
                 record,
                 static_cast<char16_t>(letter)});
        return CardEntries::Of({}, std::move(rows));
    };
}
