#pragma once

#include "service/Setting.h"

#include <filesystem>
#include <vector>

class XmlDocument;

/// What is known of a setting before it is read.
struct CatalogSetting : TextSetting {
    QString description;
    bool needsRestart = false;
};

struct SettingGroup {
    QString title;
    std::vector<CatalogSetting> settings;
};

/// Groups of settings in the order of their page.
using SettingsCatalog = std::vector<SettingGroup>;

/// The groups that the document names. Entries without a name or of an unknown type are left out, which is
/// traced.
SettingsCatalog ParseSettingsCatalog(const XmlDocument& document);

/// The same of a file. When that is no catalog the result is empty, and `failure` says which file is broken
/// and where; it is traced.
SettingsCatalog LoadSettingsCatalog(const std::filesystem::path& file, QString* failure = nullptr);

/// The catalog that is shipped beside the executable.
std::filesystem::path SettingsCatalogPath();
