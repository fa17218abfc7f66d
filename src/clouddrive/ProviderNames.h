#pragma once

#include "lanes/PageLoader.h"

#include <QHash>
#include <QSet>

struct Console;

/// The names that people know storage providers by. The service is asked for its list once, and again only
/// when a provider turns up that the list did not hold.
class ProviderNames : public QObject {
    Q_OBJECT

public:
    /// Reads with `page`.
    ProviderNames(const Console& console, QWidget& page);

    /// Asks for the list, unless all of these are known or were asked for in vain.
    void Learn(const QStringList& spIds);

    /// The identifier, ignoring case, when the service has no name for it; empty while that is not known.
    QString Of(const QString& spId) const;

signals:
    void Learned();

private:
    const Console& m_console;
    PageLoader m_loader;
    QHash<QString, QString> m_names; ///< by the identifier in capitals
    QSet<QString> m_asked;           ///< identifiers in capitals
};
