#include "service/VDirRecord.h"

#include "zep/Text.h"
#include "zep/Xml.h"

std::optional<std::vector<VDirRecord>> ParseVdirList(QByteArrayView answer) {
    const auto document = XmlDocument::FromText(ZEPUTF8ToUnicode(answer));
    const XmlNode list = document ? document->NodeByPath(QStringLiteral("Response/VDirs")) : XmlNode();
    if (!list)
        return {};
    std::vector<VDirRecord> records;
    for (XmlNode node = list.FirstChild(); node; node = node.NextSibling()) {
        const auto name = node.Attribute(QStringLiteral("Name"));
        const auto card = node.Attribute(QStringLiteral("SafeCardId"));
        if (name && card)
            records.push_back({*name, *card, node.Attribute(QStringLiteral("Status")).value_or(QString()),
                               node.Attribute(QStringLiteral("SPId")).value_or(QString())});
    }
    return records;
}
