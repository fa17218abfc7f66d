#include "service/SettingsCatalog.h"

#include "platform/Folders.h"
#include "zep/Mui.h"
#include "zep/Text.h"
#include "zep/TracePrintf.h"
#include "zep/Xml.h"

#include <QCoreApplication>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(SettingsCatalog)
};

std::optional<ServiceClient::ValueType> TypeOf(const QString& number) {
    using Type = ServiceClient::ValueType;
    for (const Type type : {Type::Integer, Type::String, Type::Boolean}) {
        if (number == QString::number(static_cast<int>(type)))
            return type;
    }
    return {};
}

std::optional<CatalogSetting> ParseSetting(const XmlNode& node) {
    const auto attribute = [&node](const QString& name) { return node.Attribute(name).value_or(QString()); };
    const QString name = attribute(u"Name"_s);
    const std::optional<ServiceClient::ValueType> type = TypeOf(attribute(u"ValueType"_s));
    if (!type || name.isEmpty()) {
        TracePrintf(TraceLevel::Warning,
                    u"[Settings]Left out of the catalog: setting \"%1\" of type \"%2\"\n"_s.arg(
                        name, attribute(u"ValueType"_s)));
        return {};
    }
    return CatalogSetting{{name, *type, attribute(u"DefaultValue"_s)},
                          node.Attribute(u"Descr"_s).value_or(name),
                          SettingFlag(attribute(u"RebootReq"_s).toUtf8())};
}

SettingGroup ParseGroup(const XmlNode& node) {
    SettingGroup group{node.Attribute(u"GroupName"_s).value_or(QString()), {}};
    for (XmlNode child = node.NodeByPath(u"Settings"_s).FirstChild(); child; child = child.NextSibling()) {
        if (const std::optional<CatalogSetting> setting = ParseSetting(child))
            group.settings.push_back(*setting);
    }
    return group;
}

QString FailureOf(const std::filesystem::path& file, const XmlFailure& trouble) {
    const QString name = FromPath(file);
    if (trouble.line == 0)
        return Words::tr("The settings cannot be shown, because their catalog %1 cannot be read: %2")
            .arg(name, trouble.reason);
    return Words::tr("The settings cannot be shown, because their catalog %1 is damaged in line %2: %3")
        .arg(name)
        .arg(trouble.line)
        .arg(trouble.reason);
}

} // namespace

SettingsCatalog ParseSettingsCatalog(const XmlDocument& document) {
    SettingsCatalog catalog;
    for (XmlNode node = document.NodeByPath(u"SettingGroups"_s).FirstChild(); node; node = node.NextSibling())
        catalog.push_back(ParseGroup(node));
    return catalog;
}

SettingsCatalog LoadSettingsCatalog(const std::filesystem::path& file, QString* failure) {
    XmlFailure trouble;
    const std::optional<XmlDocument> document = XmlDocument::Load(file, &trouble);
    const bool isCatalog = document && document->NodeByPath(u"SettingGroups"_s);
    if (isCatalog)
        return ParseSettingsCatalog(*document);
    if (document)
        trouble = {1, Words::tr("the document is no \"SettingGroups\".")};
    const QString sentence = FailureOf(file, trouble);
    TracePrintf(TraceLevel::Error, u"[Settings]"_s + sentence + u'\n');
    if (failure)
        *failure = sentence;
    return {};
}

std::filesystem::path SettingsCatalogPath() {
    return platform::ExecutableFolder() / "zephome" /
           ToPath(ZEPMuiGetBrandingStringW(Branding::SettingsCatalogFile));
}
