#include "service/RequestText.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool HoldsEscape(const QString& text) {
    static const QRegularExpression escape(u"%[0-9A-Fa-f]{2}"_s);
    return text.contains(escape);
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
        found += QCoreApplication::translate("SettingValues", "zero characters");
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
        lost += QCoreApplication::translate("SettingValues", "control characters");
    if (name == "."_L1 || name == ".."_L1)
        lost += u'"' + name + u'"';
    return lost;
}

QString QueryRemark(const QString& text) {
    const QStringList found = Misread(text, Plus::MayBeBlank);
    if (found.isEmpty())
        return {};
    return QCoreApplication::translate(
               "SettingValues",
               "The service may keep another text than this: it reads %1 in a way of its own.")
        .arg(found.join(u", "_s));
}
