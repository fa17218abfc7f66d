#include "service/MountRun.h"

#include "service/ServiceExtensions.h"
#include "service/VDirLogin.h"
#include "service/VirtualDirectories.h"
#include "zep/Mui.h"
#include "zep/Text.h"
#include "zep/UserSettings.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Mount)
};

constexpr int CardDone = 1;
constexpr int NodeDone = 2;
constexpr int LastPoll = 135;

/// How the request went, in a sentence.
QString Told(const ServiceAnswer& answer) {
    if (answer.outcome == ServiceOutcome::OtherStatus)
        return Words::tr("The service answered with status %1.").arg(answer.status);
    return Words::tr("The service did not answer.");
}

} // namespace

QString MountOutcome::Words() const {
    if (why.isEmpty() || where.isEmpty())
        return why + where;
    return why + (why.back().isLetterOrNumber() ? u". "_s : u" "_s) +
           where; // a service ends its words as it likes
}

MountRun::MountRun(const ServiceClient& service, MountOrder order)
    : m_service(service), m_order(std::move(order)), m_state(Words::tr("Creating Safe Card ...")) {
    m_outcome.cardAccepted = m_order.cardAccepted;
}

MountRun::Wait MountRun::Next(const std::stop_token& stop) {
    switch (m_step) {
    case Step::Card:
        return CreateCard(stop);
    case Step::Node:
        return CreateNode(stop);
    case Step::Validate:
        return Validate(stop);
    case Step::Ended:
        break;
    }
    return {};
}

MountRun::Wait MountRun::CreateCard(const std::stop_token& stop) {
    const ServiceAnswer answer =
        m_order.cardAccepted ? ServiceAnswer() : m_service.AddNewCard(m_order.card.document, stop);
    if (stop.stop_requested())
        return Pause; // whoever stops it calls it off
    if (!m_order.cardAccepted && !answer) {
        const bool refused = answer.outcome == ServiceOutcome::OtherStatus;
        return End(MountOutcome::End::Failed,
                   Words::tr("Unable To Add Login Info for the Virtual Directory!"),
                   Words::tr("It stopped when the login card was to be created. %1").arg(Told(answer)),
                   refused ? MountOutcome::Place::Login : MountOutcome::Place::Nothing);
    }
    m_outcome.cardAccepted = true;
    m_done = CardDone;
    m_state = Words::tr("Creating Virtual Directory ...");
    m_step = Step::Node;
    return Pause;
}

MountRun::Wait MountRun::CreateNode(const std::stop_token& stop) {
    const QString node =
        VDirNode(m_order.provider, m_order.name, m_order.card.id, QDateTime::currentDateTime());
    m_nodeSent = true;
    const ServiceAnswer answer = m_service.CallProfileMethod(u"AddNewNode"_s, AddNodeDocument(node), stop);
    // An answer may be lost after the service has done what was asked.
    const Listed listed = answer ? Listed::Ours : LookIntoList(stop).listed;
    if (stop.stop_requested())
        return Pause;
    if (listed != Listed::Ours) {
        m_nodeSent = false;
        QString where =
            Words::tr("It stopped when the virtual directory was to be created. %1").arg(Told(answer));
        if (listed == Listed::NotKnown)
            where += u' ' + Words::tr("The list will show whether it was created.");
        return End(MountOutcome::End::Failed, Words::tr("Failed to create virtual directory!"), where,
                   answer.outcome == ServiceOutcome::OtherStatus ? MountOutcome::Place::Name
                                                                 : MountOutcome::Place::Nothing);
    }
    m_done = NodeDone;
    m_state = Words::tr("Validating Virtual Directory ...");
    m_step = Step::Validate;
    return Pause;
}

MountRun::Wait MountRun::Validate(const std::stop_token& stop) {
    const auto since = std::chrono::steady_clock::now();
    const ServiceAnswer answer = m_service.CallProfileMethod(u"GetVDirStatus"_s, m_order.name, stop);
    const int code = answer ? LeadingNumber(answer.body) : 0;
    const LoginOutcome login = OutcomeOfLogin(m_service, OwnRecord(), code, stop);
    switch (login.end) {
    case LoginEnd::LoggedIn:
        return EndMounted();
    case LoginEnd::Failed:
        return EndLogin(login.words, MountOutcome::Place::Login, stop);
    case LoginEnd::NoPlugin:
        return EndLogin(login.words, MountOutcome::Place::Provider, stop);
    default:
        break;
    }
    m_state = Words::tr("Validating Virtual Directory ...");
    if (!answer)
        m_state += u' ' + Told(answer);
    if (m_done >= LastPoll)
        return EndLogin(Words::tr("Failed to mount virtual directory. Please double check login/setup "
                                  "information or report issues to %1")
                            .arg(ZEPMuiGetBrandingStringW(Branding::SupportAddress)),
                        MountOutcome::Place::Login, stop);
    // A service that hangs is not waited for longer than one that answers.
    const auto spent = std::chrono::steady_clock::now() - since;
    m_done = std::min(m_done + 1 + (answer ? 0 : static_cast<int>(spent / Pause)), LastPoll);
    return Pause;
}

MountRun::Wait MountRun::EndMounted() {
    const auto message = ZEPSettingsGetWString(u"Msg-"_s + m_order.provider.spId + u'/' + m_order.name);
    m_outcome.message = message.value_or(QString());
    m_done = Total;
    return End(MountOutcome::End::Mounted, {}, {}, MountOutcome::Place::Nothing);
}

MountRun::Wait MountRun::EndLogin(const QString& why, MountOutcome::Place lookAt,
                                  const std::stop_token& stop) {
    // The login may have come about while its failure was on the way.
    const ListLook look = LookIntoList(stop);
    if (look.listed == Listed::Ours && MeaningOfStatus(look.status).state == VDirState::Mounted)
        return EndMounted();
    if (stop.stop_requested())
        return Pause;
    return End(MountOutcome::End::Failed, why,
               Words::tr("It stopped when the virtual directory was being validated. %1").arg(RemoveNode()),
               lookAt);
}

MountRun::Wait MountRun::End(MountOutcome::End end, const QString& why, const QString& where,
                             MountOutcome::Place lookAt) {
    m_outcome.end = end;
    m_outcome.why = why;
    m_outcome.where = where;
    m_outcome.lookAt = lookAt;
    m_step = Step::Ended;
    return {};
}

void MountRun::CallOff() {
    if (m_step == Step::Ended)
        return;
    // While it is not known whether the node was taken, the name may be another one's.
    const bool ours = m_nodeSent && (m_step != Step::Node || LookIntoList({}).listed == Listed::Ours);
    End(MountOutcome::End::CalledOff, Words::tr("The mount was cancelled."), ours ? RemoveNode() : QString(),
        MountOutcome::Place::Nothing);
}

VDirRecord MountRun::OwnRecord() const {
    return {m_order.name, m_order.card.id, {}, m_order.provider.spId};
}

MountRun::ListLook MountRun::LookIntoList(const std::stop_token& stop) const {
    const auto list = m_service.GetVdirList(stop);
    if (!list)
        return {Listed::NotKnown, {}};
    const VDirRecord* found = FindVDir(*list, m_order.name);
    const bool ours = found && found->safeCardId.compare(m_order.card.id, Qt::CaseInsensitive) == 0;
    return ours ? ListLook{Listed::Ours, found->status} : ListLook{Listed::NotOurs, {}};
}

QString MountRun::RemoveNode() const {
    // Not by the token that may have called the mount off.
    if (DismountVDir(m_service, m_order.name))
        return Words::tr("The half-made virtual directory was removed.");
    return Words::tr("The half-made virtual directory could not be removed: dismount \"%1\" in the list.")
        .arg(m_order.name);
}

ServiceAnswer RequestProviders(const ServiceClient& service, const std::stop_token& stop) {
    // The parameter is spelled so, unlike that of the other methods.
    return service.SendRequest(u"/profile/?pmcmethod=GetPopularStorageList"_s, u"GET"_s, 200, {}, stop);
}

QString FinishMount(const ServiceClient& service, const MountOrder& order, const std::stop_token& stop) {
    const QString folder = u'/' + order.name;
    service.SendRequest(u"/DavCache/prefetchfolder"_s, u"GET"_s, 200, ZEPUnicodeToUTF8(folder), stop);
    if (!order.publish || service.CallProfileMethod(u"ConsolePublish"_s, folder, stop))
        return {};
    return Words::tr("\"%1\" is mounted. It could not be published.").arg(order.name);
}
