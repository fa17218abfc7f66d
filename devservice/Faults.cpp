#include "devservice/Faults.h"

#include "devservice/WireText.h"

#include <algorithm>

namespace devservice {

namespace {

/// "NAME:NUMBER@REST" in its three pieces; the number is -1 where there is none.
struct FaultText {
    std::string_view name;
    std::string_view rest;
    int number = -1;
};

std::optional<FaultText> Split(std::string_view text) {
    FaultText result;
    if (const size_t at = text.find('@'); at != std::string_view::npos) {
        result.rest = text.substr(at + 1);
        text = text.substr(0, at);
    }
    const size_t colon = text.find(':');
    result.name = text.substr(0, colon);
    if (colon == std::string_view::npos)
        return result;
    const std::optional<int> number = NumberOf(text.substr(colon + 1));
    result.number = number.value_or(-1);
    return number ? std::optional(result) : std::nullopt;
}

enum class Number { No, Maybe, Must };

template <typename Fault>
struct FaultName {
    std::string_view name;
    Fault fault;
    Number number;
};

constexpr FaultName<HttpFault> HttpNames[] = {
    {"none", HttpFault::None, Number::No},    {"refuse", HttpFault::Refuse, Number::Maybe},
    {"hang", HttpFault::Hang, Number::No},    {"delay", HttpFault::Delay, Number::Must},
    {"drip", HttpFault::Drip, Number::Must},  {"fin", HttpFault::CutByFin, Number::No},
    {"rst", HttpFault::CutByRst, Number::No}, {"status", HttpFault::WrongStatus, Number::Must},
    {"deny", HttpFault::Deny, Number::Must},  {"garbage", HttpFault::GarbageHeaders, Number::No},
};

constexpr FaultName<DatabaseFault> DatabaseNames[] = {
    {"db-none", DatabaseFault::None, Number::No},
    {"db-locked", DatabaseFault::Locked, Number::Maybe},
    {"db-truncated", DatabaseFault::Truncated, Number::No},
    {"db-garbage", DatabaseFault::Garbage, Number::No},
    {"db-missing", DatabaseFault::Missing, Number::No},
    {"db-schema", DatabaseFault::OtherSchema, Number::No},
    {"db-writer", DatabaseFault::FastWriter, Number::Must},
};

template <typename Fault, size_t N>
std::optional<Fault> FaultOf(const FaultText& text, const FaultName<Fault> (&names)[N]) {
    for (const FaultName<Fault>& entry : names) {
        const bool given = text.number >= 0;
        if (entry.name == text.name &&
            (entry.number == Number::Maybe || given == (entry.number == Number::Must)))
            return entry.fault;
    }
    return {};
}

} // namespace

std::optional<HttpFaultSwitch> ParseHttpFault(std::string_view text) {
    const auto parts = Split(text);
    const auto fault = parts ? FaultOf(*parts, HttpNames) : std::nullopt;
    if (!fault)
        return {};
    HttpFaultSwitch result;
    result.fault = *fault;
    result.target = parts->rest;
    if (*fault == HttpFault::WrongStatus || *fault == HttpFault::Deny)
        result.status = parts->number;
    else if (parts->number > 0)
        result.time = std::chrono::milliseconds(parts->number);
    return result;
}

std::optional<NamedDatabaseFault> ParseDatabaseFault(std::string_view text) {
    const auto parts = Split(text);
    const auto fault = parts ? FaultOf(*parts, DatabaseNames) : std::nullopt;
    if (!fault)
        return {};
    return NamedDatabaseFault{*fault, std::string(parts->rest),
                              std::chrono::milliseconds(std::max(parts->number, 0))};
}

} // namespace devservice
