#pragma once

#include "settings/SettingsGridPage.h"

/// The settings of the catalog that are about the cloud drive and what it transfers.
class CloudDriveSettings : public SettingsGridPage {
    Q_OBJECT

public:
    explicit CloudDriveSettings(const Console& console, QWidget* parent = nullptr);

protected:
    SettingsCatalog Catalog(QString& failure) const override;
};
