#pragma once

#include "service/ServiceClient.h"

#include <QString>

#include <filesystem>
#include <vector>

class XmlDocument;

/// What is known of a setting before it is read.
struct Setting {
    QString name; ///< the key that the service knows
    QString description;
    ServiceClient::ValueType type{};
    QString defaultValue;
    bool needsRestart = false;
};

struct SettingGroup {
    QString title;
    std::vector<Setting> settings;
};

/// Groups of settings in the order of their page.
using SettingsCatalog = std::vector<SettingGroup>;

/// The groups that the document names. Entries without a name or of an unknown type are left out.
SettingsCatalog ParseSettingsCatalog(const XmlDocument& document);

/// The same of a file; empty when that is no catalog.
SettingsCatalog LoadSettingsCatalog(const std::filesystem::path& file);

/// The catalog that is shipped beside the executable.
std::filesystem::path SettingsCatalogPath();
