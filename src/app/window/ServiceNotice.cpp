#include "window/ServiceNotice.h"

#include "service/ServiceClient.h"

CServiceNotice::CServiceNotice(Reader& reader, const ServiceClient& service, QWidget& window)
    : NoticeLine(&window), m_service(service), m_loader(reader, window) {}

void CServiceNotice::Start() {
    Ask();
    m_loader.StartTimer(Period, [this] { Ask(); });
}

void CServiceNotice::Ask() {
    const QDateTime asked = QDateTime::currentDateTime();
    m_loader.Load(
        Lane::Service,
        [service = m_service](std::stop_token stop) {
            return service.GetSetting(QStringLiteral("PublishedToCloudSVC"), stop);
        },
        [this, asked](const Loaded<ServiceAnswer>& loaded) {
            if (!loaded)
                return;
            const ServiceOutcome outcome = loaded->outcome;
            if (outcome != ServiceOutcome::Answered && outcome != ServiceOutcome::OtherStatus)
                return OnSilent(asked);
            if (SettingStateOf(*loaded) != SettingState::NotRead)
                emit Published(SettingFlag(loaded->body));
            OnAnswered();
        });
}

void CServiceNotice::OnAnswered() {
    if (!m_silentSince)
        return;
    m_silentSince.reset();
    SetText({});
    emit ServiceReturned();
}

void CServiceNotice::OnSilent(const QDateTime& since) {
    if (m_silentSince)
        return;
    m_silentSince = since;
    SetText(tr("The service has not answered since %1. What is shown may be out of date; it will be read "
               "again by "
               "itself.")
                .arg(since.toString(QStringLiteral("HH:mm:ss"))));
}
