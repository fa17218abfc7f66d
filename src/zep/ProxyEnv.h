#pragma once

#include <QString>

/// How connections beyond this machine are made.
struct ProxyEnv {
    enum Type { Disabled = 0, Custom = 3 };

    int type = Disabled;
    QString address;
    QString port;
    QString user;
    QString password;
    QString bypass; ///< hosts that are reached directly, separated by ";"
};

/// The proxy of this process from now on. No connection of the console's goes through it today: the service
/// is reached over the loopback address and mail exchangers are reached directly, both always without a
/// proxy. The values are kept for connections that will. Any thread may call.
void ZEPSetProxyEnv(const ProxyEnv& proxy);
ProxyEnv ZEPGetProxyEnv();
