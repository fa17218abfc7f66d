#pragma once

#include <QString>

/// Why no mail is sent to the address and it is not saved; empty when nothing speaks against it.
QString AddressRefusal(const QString& address);

/// What stands behind the first "@".
QString MailDomain(const QString& address);
