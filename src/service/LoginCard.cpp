#include "service/LoginCard.h"

#include "service/RequestText.h"
#include "zep/Mui.h"
#include "zep/Text.h"
#include "zep/Xml.h"

#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Masked = u"******"_s;
/// The product whose cards have more fields that are not for people.
const QString ServerProduct = u"{A86125B1-2FBB-4804-B1D4-B35776BBD665}"_s;

bool IsTrue(const std::optional<QString>& attribute) {
    return attribute && attribute->compare("TRUE"_L1, Qt::CaseInsensitive) == 0;
}

bool IsHidden(const QString& fieldId, const QString& branded) {
    static const QStringList ofServer{u"{6E451DBB-5185-4630-8247-290FDA8E3507}"_s,
                                      u"{C44B5D2C-E8C6-4F85-984B-9724F1A1A644}"_s,
                                      u"{4CE9797E-B644-41db-AA0F-BF5F56A05B1D}"_s};
    if (!branded.isEmpty() && fieldId.compare(branded, Qt::CaseInsensitive) == 0)
        return true;
    return branded == ServerProduct && ofServer.contains(fieldId, Qt::CaseInsensitive);
}

} // namespace

ServiceAnswer RequestLoginCard(const ServiceClient& service, const QString& safeCardId,
                               std::stop_token stop) {
    if (!LostInQuery(safeCardId).isEmpty())
        return {};
    constexpr int expected = 200;
    return service.SendRequest(
        u"/mysafe/?PMCMethod=getcard&CardNameOnly=Resources&XMLHttpRequest=1&CardId="_s + safeCardId,
        u"GET"_s, expected, {}, std::move(stop));
}

std::optional<std::vector<CardField>> ParseLoginCard(QByteArrayView answer) {
    const auto document = XmlDocument::FromText(ZEPUTF8ToUnicode(answer));
    const XmlNode card = document ? document->NodeByPath(u"SafeCard"_s) : XmlNode();
    if (!card)
        return {};
    const QString branded = ZEPMuiGetBrandingStringW(Branding::HiddenCardField);
    std::vector<CardField> fields;
    for (XmlNode node = card.FirstChild(); node; node = node.NextSibling()) {
        const auto name = node.Attribute(u"FieldName"_s);
        const auto id = node.Attribute(u"FieldId"_s);
        if (!name || !id || IsTrue(node.Attribute(u"Hidden"_s)) || IsHidden(*id, branded))
            continue;
        fields.push_back(
            {*name, IsTrue(node.Attribute(u"Encrypted"_s))
                        ? Masked
                        : ZEPBase64DecodeUnicode(node.Attribute(u"FieldData"_s).value_or(QString()))});
    }
    return fields;
}
