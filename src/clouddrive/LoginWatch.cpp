#include "clouddrive/LoginWatch.h"

#include "page/Console.h"

LoginWatch::LoginWatch(const Console& console, QWidget& page, const VDirRecord& record, LoginPace pace)
    : m_service(console.service), m_polls(std::make_shared<LoginPolls>(record, pace)),
      m_loader(console.reader, page) {
    m_pause.setSingleShot(true);
    m_pause.setInterval(pace.pause);
    connect(&m_pause, &QTimer::timeout, this, &LoginWatch::Poll);
    connect(&m_tick, &QTimer::timeout, this, &LoginWatch::Ticked);
    m_since.start();
    m_tick.start(std::chrono::seconds(1));
    Poll();
}

LoginWatch::~LoginWatch() {
    m_stop.request_stop();
}

void LoginWatch::Poll() {
    m_loader.Command(
        Lane::Service,
        [service = m_service, polls = m_polls, stop = m_stop.get_token()](const std::stop_token&) {
            return polls->Poll(service, stop);
        },
        [this](const Loaded<LoginOutcome>& loaded) {
            Take(loaded ? *loaded : LoginOutcome{LoginEnd::Silent, loaded.why});
        });
}

/// A poll under way ends by its stop token and tells so itself.
void LoginWatch::Cancel() {
    m_stop.request_stop();
    if (m_pause.isActive())
        Take({LoginEnd::Cancelled, {}});
}

void LoginWatch::Take(const LoginOutcome& outcome) {
    if (!outcome.HasEnded())
        return m_pause.start();
    m_pause.stop();
    m_tick.stop();
    if (!std::exchange(m_ended, true))
        emit Ended(outcome);
}
