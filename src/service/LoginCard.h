#pragma once

#include "service/ServiceClient.h"

/// A field of a login card as it may be shown: the value of an encrypted one is hidden.
struct CardField {
    QString name;
    QString value;

    bool operator==(const CardField&) const = default;
};

/// None without an answer. The identifier stands in a query: one that a query cannot carry is not sent.
ServiceAnswer RequestLoginCard(const ServiceClient& service, const QString& safeCardId,
                               std::stop_token stop = {});

/// The fields that are shown, in the card's order; none when the answer is no card.
std::optional<std::vector<CardField>> ParseLoginCard(QByteArrayView answer);
