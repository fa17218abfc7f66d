#include "service/SettingsCatalog.h"

#include "platform/Folders.h"
#include "zep/Mui.h"
#include "zep/Text.h"
#include "zep/Xml.h"

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<ServiceClient::ValueType> TypeOf(const QString& number) {
    using Type = ServiceClient::ValueType;
    for (const Type type : {Type::Integer, Type::String, Type::Boolean}) {
        if (number == QString::number(static_cast<int>(type)))
            return type;
    }
    return {};
}

std::optional<Setting> ParseSetting(const XmlNode& node) {
    const auto attribute = [&node](const QString& name) { return node.Attribute(name).value_or(QString()); };
    const std::optional<ServiceClient::ValueType> type = TypeOf(attribute(u"ValueType"_s));
    Setting setting;
    setting.name = attribute(u"Name"_s);
    if (!type || setting.name.isEmpty())
        return {};
    setting.type = *type;
    setting.description = node.Attribute(u"Descr"_s).value_or(setting.name);
    setting.defaultValue = attribute(u"DefaultValue"_s);
    setting.needsRestart = attribute(u"RebootReq"_s).compare("true"_L1, Qt::CaseInsensitive) == 0;
    return setting;
}

SettingGroup ParseGroup(const XmlNode& node) {
    SettingGroup group{node.Attribute(u"GroupName"_s).value_or(QString()), {}};
    for (XmlNode child = node.NodeByPath(u"Settings"_s).FirstChild(); child; child = child.NextSibling()) {
        if (const std::optional<Setting> setting = ParseSetting(child))
            group.settings.push_back(*setting);
    }
    return group;
}

} // namespace

SettingsCatalog ParseSettingsCatalog(const XmlDocument& document) {
    SettingsCatalog catalog;
    for (XmlNode node = document.NodeByPath(u"SettingGroups"_s).FirstChild(); node; node = node.NextSibling())
        catalog.push_back(ParseGroup(node));
    return catalog;
}

SettingsCatalog LoadSettingsCatalog(const std::filesystem::path& file) {
    const std::optional<XmlDocument> document = XmlDocument::Load(file);
    return document ? ParseSettingsCatalog(*document) : SettingsCatalog();
}

std::filesystem::path SettingsCatalogPath() {
    return platform::ExecutableFolder() / "zephome" /
           ToPath(ZEPMuiGetBrandingStringW(Branding::SettingsCatalogFile));
}
