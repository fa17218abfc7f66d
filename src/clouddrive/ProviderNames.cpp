#include "clouddrive/ProviderNames.h"

#include "page/Console.h"
#include "service/MountRun.h"

#include <algorithm>

ProviderNames::ProviderNames(const Console& console, QWidget& page)
    : QObject(&page), m_console(console), m_loader(console.reader, page) {}

void ProviderNames::Learn(const QStringList& spIds) {
    QSet<QString> wanted;
    for (const QString& spId : spIds)
        if (!spId.isEmpty() && !m_asked.contains(spId.toUpper()))
            wanted.insert(spId.toUpper());
    if (wanted.isEmpty() || m_loader.IsReading())
        return;
    m_loader.Load(
        Lane::Service,
        [service = m_console.service](const std::stop_token& stop) {
            return RequestProviders(service, stop);
        },
        [this, wanted](const Loaded<ServiceAnswer>& answer) {
            // Who is silent may tell later; any other answer would be the same again.
            if (!answer || (!*answer && answer->outcome != ServiceOutcome::OtherStatus))
                return;
            for (const StorageProvider& provider :
                 ParseProviders(answer->body).value_or(std::vector<StorageProvider>()))
                m_names.insert(provider.spId.toUpper(), provider.displayName);
            m_asked |= wanted;
            emit Learned();
        });
}

QString ProviderNames::Of(const QString& spId) const {
    const QString key = spId.toUpper();
    return m_names.value(key, m_asked.contains(key) ? spId : QString());
}
