#include "settings/SettingsMgr.h"

namespace {

QString TextAsRead(const QByteArray& body, ServiceClient::ValueType) {
    return SettingText(body);
}

} // namespace

CSettingsMgr::CSettingsMgr(const Console& console, std::filesystem::path catalog, QWidget* parent)
    : CSettingsGridPage(console, &TextAsRead, parent), m_catalog(std::move(catalog)) {}

SettingsCatalog CSettingsMgr::Catalog() const {
    return LoadSettingsCatalog(m_catalog);
}
