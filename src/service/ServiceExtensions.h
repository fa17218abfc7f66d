#pragma once

#include "service/ServiceClient.h"

/// Whether the service takes the forms that are this console's own (docs/service-extensions.md); none while
/// it does not tell. Only one that does is asked for them.
std::optional<bool> TakesConsoleRecords(const ServiceClient& service, std::stop_token stop = {});

/// Said where something could be done by such a form only.
QString NoConsoleRecordsText();
