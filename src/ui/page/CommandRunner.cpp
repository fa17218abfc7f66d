#include "page/CommandRunner.h"

#include "page/Console.h"
#include "page/UserPrompts.h"

using namespace Qt::Literals::StringLiterals;

QString WhyNotDone(const ServiceAnswer& answer) {
    switch (answer.outcome) {
    case ServiceOutcome::OtherStatus:
        return CommandRunner::tr("the service did not take it");
    case ServiceOutcome::TimedOut:
        return CommandRunner::tr("the service does not answer in time");
    case ServiceOutcome::Unreachable:
    case ServiceOutcome::Cancelled:
    case ServiceOutcome::Answered:
        break;
    }
    return CommandRunner::tr("the service does not answer");
}

CommandRunner::CommandRunner(const Console& console, QWidget& page)
    : QObject(&page), m_service(console.service), m_prompts(console.prompts), m_page(page),
      m_loader(console.reader, page) {}

void CommandRunner::Run(const QString& key, const CommandOrder& order) {
    if (m_asking.contains(key) || m_inFlight.contains(key))
        return;
    if (order.question.isEmpty())
        Send(key, order);
    else
        Ask(key, order);
}

/// Over the window, so that the answer finds someone to tell that the subject has gone with its card.
void CommandRunner::Ask(const QString& key, const CommandOrder& order) {
    m_asking.insert(key);
    const QPointer<QWidget> window(m_page.window());
    const auto onAnswer = [runner = QPointer(this), &prompts = m_prompts, window, key, order](bool yes) {
        if (runner)
            runner->m_asking.remove(key);
        if (!yes)
            return;
        if (runner && (!order.isStillMeant || order.isStillMeant()))
            runner->Send(key, order);
        else if (!order.gone.isEmpty())
            prompts.ShowMessage(window, order.gone);
    };
    m_prompts.Ask(window, {.text = order.question, .title = order.title}, onAnswer);
}

void CommandRunner::Send(const QString& key, const CommandOrder& order) {
    m_inFlight.insert(key);
    emit BusyChanged();
    m_loader.Command(
        Lane::Service,
        [service = m_service, send = order.send](std::stop_token stop) { return send(service, stop); },
        [this, key, order](const Loaded<ServiceAnswer>& loaded) {
            const bool done = loaded && *loaded;
            End(key, order, {done, done ? QString() : WhyNotDone(loaded.value.value_or(ServiceAnswer()))});
        });
}

void CommandRunner::End(const QString& key, const CommandOrder& order, const CommandEnd& end) {
    const QPointer<CommandRunner> alive(this);
    m_inFlight.remove(key);
    emit BusyChanged();
    const QString failure = order.notDone.isEmpty() ? order.failure : order.notDone + u": "_s + end.why;
    if (end)
        emit Succeeded();
    else if (!failure.isEmpty())
        emit Failed(failure);
    if (!end && order.failureInBox)
        m_prompts.ShowMessage(&m_page, failure);
    if (alive && order.after)
        order.after(end);
}
