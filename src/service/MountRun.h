#pragma once

#include "service/MountDocuments.h"
#include "service/ServiceClient.h"

#include <atomic>
#include <chrono>

/// What is to be mounted.
struct MountOrder {
    StorageProvider provider;
    QString name; ///< of the virtual directory
    LoginCard card;
    bool cardAccepted = false; ///< the service has this very card already
    bool publish = false;
};

/// How a mount ended.
struct MountOutcome {
    enum class End { Mounted, Failed, CalledOff };
    /// Of a failure: what a person should look at.
    enum class Place { Nothing, Provider, Name, Login };

    End end = End::Failed;
    QString why = {};   ///< of a failure: the sentence that tells it, the service's own where there is one
    QString where = {}; ///< at which step it ended, and what of it stays
    Place lookAt = Place::Nothing;
    bool cardAccepted = false; ///< the service has the card
    QString message = {};      ///< of a mount: what the provider wants the user to read

    QString Words() const; ///< why and where, in a line
};

/// One mount, from the login card to the logged-in account, a request or two at a time: whoever runs it waits
/// between the steps as long as a step says. One thread at a time.
class MountRun {
public:
    static constexpr int Total = 136; ///< steps of progress
    static constexpr std::chrono::milliseconds Pause{2000};

    MountRun(const ServiceClient& service, MountOrder order);

    /// Does what comes next. Returns how long to wait before the next step; nothing: it has ended.
    std::optional<std::chrono::milliseconds> Next(const std::stop_token& stop);
    /// Ends it, unless it has ended, and takes back what has been mounted so far.
    void CallOff();

    bool NodeWasSent() const {
        return m_nodeSent;
    }                                   ///< so that calling it off takes something back; any thread
    int Done() const { return m_done; } ///< of Total
    const QString& State() const { return m_state; }          ///< what is being done, for people
    const MountOutcome& Outcome() const { return m_outcome; } ///< once it has ended

private:
    enum class Step { Card, Node, Validate, Ended };
    using Wait = std::optional<std::chrono::milliseconds>;

    Wait CreateCard(const std::stop_token& stop);
    Wait CreateNode(const std::stop_token& stop);
    Wait Validate(const std::stop_token& stop);
    Wait EndMounted();
    Wait EndLogin(const QString& why, MountOutcome::Place lookAt, const std::stop_token& stop);
    Wait End(MountOutcome::End end, const QString& why, const QString& where, MountOutcome::Place lookAt);
    VDirRecord OwnRecord() const;
    enum class Listed { Ours, NotOurs, NotKnown };
    /// Whether the list shows our node, and with which status.
    struct ListLook {
        Listed listed = Listed::NotKnown;
        QString status = {};
    };
    ListLook LookIntoList(const std::stop_token& stop) const;
    /// Takes the node back; what became of it, in a sentence.
    QString RemoveNode() const;

    ServiceClient m_service;
    MountOrder m_order;
    Step m_step = Step::Card;
    std::atomic<bool> m_nodeSent = false;
    int m_done = 0;
    QString m_state;
    MountOutcome m_outcome;
};

/// The answer that ParseProviders reads.
ServiceAnswer RequestProviders(const ServiceClient& service, const std::stop_token& stop = {});

/// What follows a mount that went well: warms the new folder, and publishes it where that was wanted. Returns
/// a sentence when it could not be published.
QString FinishMount(const ServiceClient& service, const MountOrder& order, const std::stop_token& stop = {});
