#pragma once

#include "lanes/PageLoader.h"
#include "page/NoticeLine.h"

#include <QDateTime>

class ServiceClient;

/// The thin line that says that the service does not answer, and since when. It asks the service now and
/// then whether it is published to the cloud, which the status bar shows.
class ServiceNotice : public NoticeLine {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds Period{5000};

    /// Asks while `window` is shown, of which it becomes a child.
    ServiceNotice(Reader& reader, const ServiceClient& service, QWidget& window);

    /// Asks now, and then every period.
    void Start();

signals:
    void Published(bool inCloudSpace);
    void ServiceReturned();

private:
    void Ask();
    void OnAnswered();
    void OnSilent(const QDateTime& since);

    const ServiceClient& m_service;
    std::optional<QDateTime> m_silentSince;
    PageLoader m_loader;
};
