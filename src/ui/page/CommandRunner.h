#pragma once

#include "lanes/PageLoader.h"
#include "service/ServiceClient.h"

#include <QSet>

struct Console;
class UserPrompts;

/// Why a request was not carried out, as in "the service does not answer".
QString WhyNotDone(const ServiceAnswer& answer);

/// How a command ended.
struct CommandEnd {
    bool done = false;
    QString why = {}; ///< it was not done

    operator bool() const { return done; }
};

/// A command to the service: what is asked before, sent, and said of it.
struct CommandOrder {
    /// On the service's lane; captures values only.
    std::function<ServiceAnswer(const ServiceClient&, std::stop_token)> send;
    QString question = {};                   ///< No is its default; empty: nothing is asked
    QString title = {};                      ///< of the question's box; empty: that of the window
    std::function<bool()> isStillMeant = {}; ///< asked after a Yes: whether its subject is still there
    QString gone = {};                       ///< said in a box when that says no
    QString notDone = {};                    ///< "Not started (Photos)": said with the reason behind it
    QString failure = {};                    ///< said instead, as it stands
    bool failureInBox = false;               ///< instead of by the signal alone
    std::function<void(const CommandEnd& end)> after = {}; ///< when it has ended: the moment to read back
};

/// The one way in which pages and cards command the service. A command has a key; while one is asked about or
/// under way, another one of its key is swallowed.
class CommandRunner : public QObject {
    Q_OBJECT

public:
    /// Asks over the window of `page`, and is owned by it. Commands under way are carried out also when the
    /// page goes.
    CommandRunner(const Console& console, QWidget& page);

    void Run(const QString& key, const CommandOrder& order);
    /// True from the sending to the answer.
    bool IsBusy(const QString& key) const { return m_inFlight.contains(key); }

signals:
    void BusyChanged();
    void Failed(const QString& sentence);
    void Succeeded();

private:
    void Ask(const QString& key, const CommandOrder& order);
    void Send(const QString& key, const CommandOrder& order);
    void End(const QString& key, const CommandOrder& order, const CommandEnd& end);

    const ServiceClient& m_service;
    UserPrompts& m_prompts;
    QWidget& m_page;
    QSet<QString> m_asking;
    QSet<QString> m_inFlight;
    PageLoader m_loader;
};
