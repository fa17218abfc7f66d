#include "service/AccountQuota.h"

#include <charconv>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 MB = qint64(1) << 20;
constexpr qint64 GB = MB << 10;
constexpr qint64 TB = GB << 10;

/// The number behind the next ">" after the word; 0 when none stands there, none without word or sign.
std::optional<qint64> NumberAfter(QByteArrayView text, QByteArrayView word) {
    const qsizetype at = text.indexOf(word);
    const qsizetype sign = at < 0 ? -1 : text.indexOf('>', at + word.size());
    if (sign < 0)
        return {};
    const char* begin = text.data() + sign + 1;
    const char* end = text.data() + text.size();
    while (begin != end && (*begin == ' ' || (*begin >= '\t' && *begin <= '\r')))
        ++begin;
    qint64 number = 0;
    const auto [last, error] = std::from_chars(begin, end, number);
    if (error == std::errc::result_out_of_range)
        return *begin == '-' ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    return number;
}

QString InUnit(qint64 octets, qint64 unit, const char* name) {
    return QString::asprintf("%6.3f %s", static_cast<double>(octets) / static_cast<double>(unit), name);
}

} // namespace

qint64 AccountQuota::Available() const {
    qint64 rest = 0;
    if (__builtin_sub_overflow(allocated, used, &rest))
        return used < 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
    return rest;
}

ServiceAnswer RequestQuota(const ServiceClient& service, std::stop_token stop) {
    constexpr int multiStatus = 207;
    return service.SendRequest(u"/resources/home/quota"_s, u"PROPFIND"_s, multiStatus, {}, std::move(stop));
}

std::optional<AccountQuota> ParseQuota(QByteArrayView answer) {
    const auto used = NumberAfter(answer, "used-");
    const auto allocated = NumberAfter(answer, "allocated-");
    return used && allocated ? std::optional(AccountQuota{*used, *allocated}) : std::nullopt;
}

QuotaTexts TextsOf(const AccountQuota& quota) {
    // The bounds differ on purpose: exactly 1024 GB and exactly 1 GB are told in GB, exactly 1 MB not at all.
    const qint64 unit = quota.allocated > TB    ? TB
                        : quota.allocated >= GB ? GB
                        : quota.allocated > MB  ? MB
                                                : 0;
    if (unit == 0)
        return {};
    const char* name = unit == TB ? "TB" : unit == GB ? "GB" : "MB";
    return {InUnit(quota.allocated, unit, name), InUnit(quota.used, unit, name),
            InUnit(quota.Available(), unit, name)};
}
