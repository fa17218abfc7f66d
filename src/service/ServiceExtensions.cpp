#include "service/ServiceExtensions.h"

#include "service/KnownSettings.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

std::optional<bool> TakesConsoleRecords(const ServiceClient& service, std::stop_token stop) {
    const SettingValue<QString> taken = ReadSetting(service, Settings::ConsoleRecords, std::move(stop));
    return taken.WasRead() ? std::optional(taken.value == "1"_L1) : std::nullopt;
}

QString NoConsoleRecordsText() {
    return QCoreApplication::translate("ServiceExtensions", "This service offers no such switch.");
}
