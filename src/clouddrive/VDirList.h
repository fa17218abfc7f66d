#pragma once

#include "cards/CardPanel.h"
#include "service/VDirRecord.h"

class ServiceClient;

/// A virtual directory as a card shows it.
struct VDirRow : CardEntry {
    VDirRecord record = {};
    char16_t drive = 0; ///< the letter of the drive that shows it; 0 while there is none
};

/// Reads the list with a request number of its own that grows from 1. An answer that is no list is a failed
/// read, none at all an unavailable one. The counters outlive it.
std::function<CardEntries(std::stop_token)> VDirListReader(const ServiceClient& service,
                                                           const LiveCounters& counters);
