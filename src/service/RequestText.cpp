#include "service/RequestText.h"

#include "platform/HttpTransport.h"
#include "service/ServiceClient.h"
#include "zep/Text.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t LongestRequestLine = std::size_t{64} * 1024;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(RequestText)
};

bool IsHexDigit(QChar c) {
    return (c >= u'0' && c <= u'9') || (c.toLower() >= u'a' && c.toLower() <= u'f');
}

bool HoldsEscape(const QString& text) {
    for (qsizetype at = text.indexOf(u'%'); at >= 0 && at + 2 < text.size(); at = text.indexOf(u'%', at + 1))
        if (IsHexDigit(text[at + 1]) && IsHexDigit(text[at + 2]))
            return true;
    return false;
}

enum class Plus { Kept, MayBeBlank };

QStringList Misread(const QString& text, Plus plus) {
    QStringList found;
    if (text.contains(u'&'))
        found += u"\"&\""_s;
    if (plus == Plus::MayBeBlank && text.contains(u'+'))
        found += u"\"+\""_s;
    if (HoldsEscape(text))
        found += u"\"%\""_s;
    if (text.contains(QChar(u'\0')))
        found += Words::tr("zero characters");
    return found;
}

} // namespace

QStringList LostInQuery(const QString& text) {
    return Misread(text, Plus::Kept);
}

QStringList LostInPath(const QString& name) {
    QStringList lost;
    if (name.contains(u'?'))
        lost += u"\"?\""_s;
    if (HoldsEscape(name))
        lost += u"\"%\""_s;
    if (std::any_of(name.begin(), name.end(), [](QChar c) { return c.category() == QChar::Other_Control; }))
        lost += Words::tr("control characters");
    if (name == "."_L1 || name == ".."_L1)
        lost += u'"' + name + u'"';
    return lost;
}

QString QueryRemark(const QString& text) {
    const QStringList found = Misread(text, Plus::MayBeBlank);
    if (found.isEmpty())
        return {};
    return Words::tr("The service may keep another text than this: it reads %1 in a way of its own.")
        .arg(found.join(u", "_s));
}

QString QueryRefusal(const QString& text) {
    const QStringList lost = LostInQuery(text);
    if (lost.isEmpty())
        return {};
    return Words::tr("It holds %1, which a request cannot carry to the service as it stands.")
        .arg(lost.join(u", "_s));
}

QString ListedPathRefusal(const QString& path) {
    for (const QString& name : path.split(u'/')) {
        if (const QStringList lost = LostInPath(name); !lost.isEmpty())
            return Words::tr("The name \"%1\" holds %2, which a request cannot carry to the service.")
                .arg(name, lost.join(u", "_s));
    }
    return {};
}

QString ChangedPathRefusal(const QString& path) {
    if (path.isEmpty() || path.endsWith(u'/'))
        return Words::tr("\"%1\" is no file or folder that can be changed.").arg(path);
    return ListedPathRefusal(path);
}

QString DeletedPathRefusal(const QString& path) {
    if (QString refusal = ChangedPathRefusal(path); !refusal.isEmpty())
        return refusal;
    if (path.split(u'/', Qt::SkipEmptyParts).size() == 1)
        return Words::tr("\"%1\" is a whole storage account, which is not deleted.").arg(path);
    return {};
}

QString NewFolderRefusal(const QString& parent, const QString& name) {
    return name.isEmpty() ? Words::tr("A folder needs a name.") : ListedPathRefusal(parent + u'/' + name);
}

QString DocumentQuestion(const QString& what, const QString& value) {
    const auto* breaking =
        std::find_if(value.begin(), value.end(), [](QChar c) { return c == u'<' || c == u'&'; });
    if (breaking == value.end())
        return {};
    return Words::tr("%1 holds \"%2\", which the service may not understand. Do you really want to send it?")
        .arg(what, *breaking);
}

QString LengthRefusal(const QString& name, const QString& value) {
    const QString target = ServiceClient::SettingTarget(name, value, ServiceClient::ValueType::String);
    const std::string sent =
        "PUT " + platform::EscapeTarget(ZEPUnicodeToUTF8(target).toStdString()) + " HTTP/1.1";
    if (sent.size() <= LongestRequestLine)
        return {};
    return Words::tr(
               "It is too long: the request that writes it would have a line of %1 octets, and at most %2 "
               "can be sent.")
        .arg(sent.size())
        .arg(LongestRequestLine);
}
