#include "service/VDirRecord.h"

#include "zep/Text.h"
#include "zep/Xml.h"

using namespace Qt::Literals::StringLiterals;

std::optional<std::vector<VDirRecord>> ParseVdirList(QByteArrayView answer) {
    const auto document = XmlDocument::FromText(ZEPUTF8ToUnicode(answer));
    const XmlNode list = document ? document->NodeByPath(u"Response/VDirs"_s) : XmlNode();
    if (!list)
        return {};
    std::vector<VDirRecord> records;
    for (XmlNode node = list.FirstChild(); node; node = node.NextSibling()) {
        const auto name = node.Attribute(u"Name"_s);
        const auto card = node.Attribute(u"SafeCardId"_s);
        if (name && card)
            records.push_back({*name, *card, node.Attribute(u"Status"_s).value_or(QString()),
                               node.Attribute(u"SPId"_s).value_or(QString())});
    }
    return records;
}
