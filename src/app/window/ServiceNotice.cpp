#include "window/ServiceNotice.h"

#include "service/KnownSettings.h"

using namespace Qt::Literals::StringLiterals;

ServiceNotice::ServiceNotice(Reader& reader, const ServiceClient& service, QWidget& window)
    : NoticeLine(&window), m_service(service), m_loader(reader, window) {}

void ServiceNotice::Start() {
    Ask();
    m_loader.StartTimer(Period, [this] { Ask(); });
}

void ServiceNotice::Ask() {
    const QDateTime asked = QDateTime::currentDateTime();
    m_loader.Load(
        Lane::Service,
        [service = m_service](std::stop_token stop) {
            return ReadSetting(service, Settings::PublishedToCloudSVC, stop);
        },
        [this, asked](const Loaded<SettingValue<bool>>& published) {
            if (published && published->WasRead())
                emit Published(published->value);
            if (published && !published->silent)
                OnAnswered();
            else if (published)
                OnSilent(asked);
        });
}

void ServiceNotice::OnAnswered() {
    if (!m_silentSince)
        return;
    m_silentSince.reset();
    SetText({});
    emit ServiceReturned();
}

void ServiceNotice::OnSilent(const QDateTime& since) {
    if (m_silentSince)
        return;
    m_silentSince = since;
    SetText(tr("The service has not answered since %1. What is shown may be out of date; it will be read "
               "again by "
               "itself.")
                .arg(since.toString(u"HH:mm:ss"_s)));
}
