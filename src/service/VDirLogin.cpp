#include "service/VDirLogin.h"

#include "platform/Sleep.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(VDirLogin)
};

enum StatusCode { LoginFailed = 2, LoggedIn = 3, PluginMissing = 5 };

QString FailureWords(const ServiceClient& service, const VDirRecord& record, std::stop_token stop) {
    const QString words =
        service.GetStringSetting(record.spId + u'/' + record.name, std::move(stop)).value_or(QString());
    return words.isEmpty() ? Words::tr("Login Failed") : words;
}

} // namespace

LoginOutcome OutcomeOfLogin(const ServiceClient& service, const VDirRecord& record, int code,
                            std::stop_token stop) {
    switch (code) {
    case LoginFailed:
        return {LoginEnd::Failed, FailureWords(service, record, std::move(stop))};
    case LoggedIn:
        return {LoginEnd::LoggedIn};
    case PluginMissing:
        return {LoginEnd::NoPlugin, Words::tr("Specified plugin can not be located!")};
    default:
        return {};
    }
}

LoginOutcome LoginPolls::Poll(const ServiceClient& service, const std::stop_token& stop) {
    LoginOutcome outcome = Ask(service, stop);
    ++m_polls;
    if (stop.stop_requested())
        return {LoginEnd::Cancelled,
                Words::tr("Stopped before the login ended. The service goes on with it.")};
    if (outcome.HasEnded())
        return outcome;
    if (m_silences >= m_pace.silences)
        return {LoginEnd::Silent,
                Words::tr("The service does not tell any more how the login of \"%1\" goes on.")
                    .arg(m_record.name)};
    if (m_polls >= m_pace.polls)
        return {LoginEnd::GaveUp,
                Words::tr("\"%1\" is still not logged in. The service goes on with it.").arg(m_record.name)};
    return outcome;
}

LoginOutcome LoginPolls::Ask(const ServiceClient& service, const std::stop_token& stop) {
    const ServiceAnswer answer = service.CallProfileMethod(u"GetVDirStatus"_s, m_record.name, stop);
    m_silences = answer ? 0 : m_silences + 1;
    return answer ? OutcomeOfLogin(service, m_record, LeadingNumber(answer.body), stop) : LoginOutcome();
}

LoginOutcome WaitForLogin(const ServiceClient& service, const VDirRecord& record,
                          const std::function<void(int polls)>& note, const std::stop_token& stop,
                          LoginPace pace) {
    LoginPolls polls(record, pace);
    while (true) {
        LoginOutcome outcome = polls.Poll(service, stop);
        if (outcome.HasEnded())
            return outcome;
        if (note)
            note(polls.Count());
        platform::SleepUnlessStopped(stop, pace.pause);
    }
}
