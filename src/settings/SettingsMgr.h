#pragma once

#include "settings/SettingsGridPage.h"

#include <filesystem>

/// All settings that the shipped catalog names.
class CSettingsMgr : public SettingsGridPage {
    Q_OBJECT

public:
    explicit CSettingsMgr(const Console& console, std::filesystem::path catalog = SettingsCatalogPath(),
                          QWidget* parent = nullptr);

protected:
    SettingsCatalog Catalog(QString& failure) const override;

private:
    std::filesystem::path m_catalog;
};
