#pragma once

#include "service/ServiceClient.h"

/// What the home storage may hold and holds, in octets.
struct AccountQuota {
    qint64 used = 0;
    qint64 allocated = 0;

    /// Negative when more is used than allocated.
    qint64 Available() const;
};

ServiceAnswer RequestQuota(const ServiceClient& service, std::stop_token stop = {});

/// None when the answer does not name both numbers.
std::optional<AccountQuota> ParseQuota(QByteArrayView answer);

/// In the unit that the allocated size is told in; all empty for a size too small to be told.
struct QuotaTexts {
    QString total;
    QString used;
    QString available;
};
QuotaTexts TextsOf(const AccountQuota& quota);
