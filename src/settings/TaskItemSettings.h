#pragma once

#include "settings/SettingsGridPage.h"

/// The settings of tasks, transfers and bandwidth. Stands in the settings and as a tab of the task manager.
class CTaskItemSettings : public SettingsGridPage {
    Q_OBJECT

public:
    explicit CTaskItemSettings(const Console& console, QWidget* parent = nullptr);

protected:
    SettingsCatalog Catalog(QString& failure) const override;
};
