#pragma once

#include "settings/SettingsGridPage.h"

/// The settings of all sync folders.
class CDropFolderSettings : public SettingsGridPage {
    Q_OBJECT

public:
    explicit CDropFolderSettings(const Console& console);

protected:
    SettingsCatalog Catalog(QString& failure) const override;
};
