#include "settings/SettingsMgr.h"

namespace {

QString TextAsRead(const QString& text, ServiceClient::ValueType) {
    return text;
}

} // namespace

CSettingsMgr::CSettingsMgr(const Console& console, std::filesystem::path catalog, QWidget* parent)
    : SettingsGridPage(console, &TextAsRead, parent), m_catalog(std::move(catalog)) {}

SettingsCatalog CSettingsMgr::Catalog(QString& failure) const {
    return LoadSettingsCatalog(m_catalog, &failure);
}
