#include "clouddrive/CloudDriveSettings.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// As the catalog names them.
const QStringList Groups{u"Cloud Drive"_s, u"Transfer"_s};

} // namespace

CloudDriveSettings::CloudDriveSettings(const Console& console, QWidget* parent)
    : SettingsGridPage(console, &TypedText, parent) {
    SetSideActions({RefreshAction()});
}

SettingsCatalog CloudDriveSettings::Catalog(QString& failure) const {
    SettingsCatalog catalog = LoadSettingsCatalog(SettingsCatalogPath(), &failure);
    std::erase_if(catalog, [](const SettingGroup& group) { return !Groups.contains(group.title); });
    return catalog;
}
