#pragma once

#include "lanes/PageLoader.h"
#include "service/VDirLogin.h"

#include <QElapsedTimer>

struct Console;

/// Waits for the end of one login without holding the service's lane: poll by poll. Asking goes on when the
/// page is left.
class LoginWatch : public QObject {
    Q_OBJECT

public:
    LoginWatch(const Console& console, QWidget& page, const VDirRecord& record, LoginPace pace);
    ~LoginWatch() override;

    /// Ends the asking, not the login.
    void Cancel();
    int Seconds() const { return static_cast<int>(m_since.elapsed() / 1000); }

signals:
    void Ticked(); ///< once a second
    void Ended(const LoginOutcome& outcome);

private:
    void Poll();
    void Take(const LoginOutcome& outcome);

    const ServiceClient& m_service;
    std::shared_ptr<LoginPolls> m_polls;
    std::stop_source m_stop;
    bool m_ended = false;
    QElapsedTimer m_since;
    QTimer m_pause;
    QTimer m_tick;
    PageLoader m_loader;
};
