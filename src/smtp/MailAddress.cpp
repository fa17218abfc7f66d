#include "smtp/MailAddress.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Addresses {
    Q_DECLARE_TR_FUNCTIONS(MailAddress)
};

/// What would end the address, or its line, in the dialogue with a mail server.
bool CannotStand(QChar c) {
    return c.isSpace() || c.category() == QChar::Other_Control || c == u'<' || c == u'>';
}

} // namespace

QString AddressRefusal(const QString& address) {
    if (address.isEmpty())
        return Addresses::tr("You need to enter an email address");
    const bool valid = address.contains(u'@') && std::none_of(address.begin(), address.end(), CannotStand);
    return valid ? QString() : Addresses::tr("Not a valid email address.");
}

QString MailDomain(const QString& address) {
    return address.section(u'@', 1);
}
