#include "clouddrive/MountPage.h"

#include "clouddrive/SafePage.h"
#include "lanes/ProgressNote.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/UserPrompts.h"
#include "service/ServiceExtensions.h"
#include "wizard/Form.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Hidden = u"******"_s;

QLineEdit* MakeRow(const QString& text) {
    auto* row = new QLineEdit(text);
    row->setReadOnly(true);
    row->setCursorPosition(0);
    return row;
}

QLabel* MakeWords(const QString& text) {
    auto* words = new QLabel(text);
    words->setTextFormat(Qt::PlainText);
    words->setWordWrap(true);
    return words;
}

/// How a step went: how long to wait before the next one, if there is one.
struct StepEnd {
    std::optional<std::chrono::milliseconds> wait;
};

/// On the lane. A mount that is to stop takes back there what it has made.
StepEnd DoStep(MountRun& run, const std::stop_token& stop) {
    const StepEnd end{stop.stop_requested() ? std::nullopt : run.Next(stop)};
    if (!stop.stop_requested())
        return end;
    run.CallOff();
    return {};
}

} // namespace

MountPage::MountPage(const Console& console, std::shared_ptr<MountDraft> draft, MountPace pace)
    : WizardPage(tr("Mount Virtual Directory Now"), tr("Click 'Finish' to start mount operation.")),
      m_console(console), m_draft(std::move(draft)), m_pace(std::move(pace)), m_summary(new QScrollArea),
      m_publish(new QCheckBox(tr("&Publish upon complete"))), m_noPublishing(MakeWords({})) {
    m_summary->setFrameShape(QFrame::NoFrame);
    m_summary->setFocusPolicy(Qt::NoFocus);
    m_summary->setWidgetResizable(true);
    m_noPublishing->setFont(Look::Font(Look::Caption));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_summary, 1);
    column->addWidget(m_publish);
    column->addWidget(m_noPublishing);
    ShowPublishing(false);
    connect(m_publish, &QCheckBox::toggled, this, &WizardPage::Edited);
}

MountPage::~MountPage() {
    if (m_phase != Phase::Mounting && m_phase != Phase::CallingOff)
        return;
    m_stop.request_stop();
    m_console.reader.Submit({Lane::Service, [] { return ReadPriority::Command; }, std::stop_source(),
                             [run = m_run](const std::stop_token&) { run->CallOff(); }, [] {}});
}

void MountPage::Fill() {
    ShowSummary();
    Sheet().Read(
        *this, Lane::Service, tr("Asking what the service offers..."),
        [service = m_console.service](const std::stop_token& stop) {
            return TakesConsoleRecords(service, stop);
        },
        [this](const Loaded<bool>& offered) {
            ShowPublishing(offered.value);
            return QString();
        });
}

void MountPage::ShowSummary() {
    using enum MountOutcome::Place;
    auto* form = new Form;
    m_fields.clear();
    const auto add = [&](MountOutcome::Place place, const QString& label, const QString& text) {
        m_fields.emplace_back(place, form->Add(label, MakeRow(text)));
    };
    add(Provider, tr("Storage provider"), m_draft->provider.displayName);
    add(Name, tr("Virtual directory name"), m_draft->name);
    const std::vector<LoginField>& fields = m_draft->provider.fields;
    const auto lookAt = FieldToLookAt(fields);
    int number = 0;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!fields[i].hidden)
            add(lookAt == i ? Login : Nothing, Form::PlainLabel(LoginFieldLabel(fields[i], ++number)),
                fields[i].encrypted ? Hidden : m_draft->values.value(qsizetype(i)));
    }
    m_summary->setWidget(form); // the one before goes
    setTabOrder(m_fields.back().second, m_publish);
}

void MountPage::ShowPublishing(std::optional<bool> offered) {
    const bool isOffered = offered.value_or(false);
    m_noPublishing->setText(offered ? NoConsoleRecordsText()
                                    : tr("The service does not tell whether it can publish folders."));
    m_noPublishing->setVisible(!isOffered);
    m_publish->setEnabled(isOffered);
    m_publish->setChecked(isOffered && m_publish->isChecked());
    m_publish->setAccessibleDescription(isOffered ? QString() : m_noPublishing->text());
}

void MountPage::Leave() {
    Ask(MountQuestions(m_draft->provider, m_draft->name));
}

void MountPage::Ask(const QStringList& questions) {
    if (questions.isEmpty())
        return Start();
    m_console.prompts.AskYesNo(this, questions.first(), [this, rest = questions.mid(1)](bool yes) {
        if (yes)
            Ask(rest);
        else
            Sheet().Stay();
    });
}

void MountPage::Start() {
    m_order = {m_draft->provider, m_draft->name, m_draft->card,
               m_draft->card.document == m_draft->acceptedCard, m_publish->isChecked()};
    m_run = std::make_shared<MountRun>(m_console.service, m_order);
    m_note = std::make_shared<ProgressNote>();
    m_stop = std::stop_source();
    m_phase = Phase::Mounting;
    TellProgress();
    Step();
}

void MountPage::Step() {
    m_waiting = false;
    ++m_turn;
    Sheet().Commit(
        Lane::Service,
        tr("We are now mounting the virtual directory. This may take a few minutes. Please wait..."),
        [run = m_run, stop = m_stop](const std::stop_token& laneStop) mutable {
            const std::stop_callback atEnd(laneStop, [&stop] { stop.request_stop(); });
            return DoStep(*run, stop.get_token());
        },
        [this](const Loaded<StepEnd>& step) {
            TellProgress();
            if (step && step->wait)
                GoOnAfter(*step->wait);
            else
                End(m_run->Outcome());
        },
        m_note);
}

void MountPage::GoOnAfter(std::chrono::milliseconds time) {
    m_waiting = true;
    const auto goOn = [this, turn = m_turn] {
        if (turn == m_turn && m_waiting)
            Step();
    };
    if (m_stop.stop_requested())
        goOn();
    else
        m_pace(*this, time, goOn);
}

void MountPage::TellProgress() {
    const QString state =
        m_phase == Phase::CallingOff ? tr("Removing the half-made virtual directory ...") : m_run->State();
    m_note->Tell({m_run->Done(), MountRun::Total, state});
}

void MountPage::Escape() {
    if (m_phase == Phase::Ending) {
        m_stop.request_stop();
        return;
    }
    if (!m_run->NodeWasSent())
        return CallOff();
    if (std::exchange(m_asking, true))
        return;
    const QString text = tr("Do you really want to stop mounting \"%1\"?").arg(m_order.name) + u'\n' +
                         tr("The half-made virtual directory is removed. What you have entered is kept.");
    const Question question{text, {}, {}, {}, {}, true};
    m_console.prompts.Ask(this, question, [this, run = m_run](bool yes) {
        m_asking = false;
        if (yes && run == m_run && m_phase == Phase::Mounting)
            CallOff();
    });
}

void MountPage::CallOff() {
    m_phase = Phase::CallingOff;
    m_stop.request_stop();
    m_note->Tell({0, MountRun::Total, tr("Removing the half-made virtual directory ...")});
    if (m_waiting)
        Step();
}

void MountPage::End(const MountOutcome& outcome) {
    if (outcome.cardAccepted)
        m_draft->acceptedCard = m_draft->card.document;
    if (outcome.end == MountOutcome::End::Mounted)
        return EndMounted(outcome.message);
    m_phase = Phase::Idle;
    EndFailed(outcome);
}

void MountPage::EndMounted(const QString& message) {
    m_phase = Phase::Ending;
    if (message.isEmpty())
        return Finish();
    m_console.prompts.ShowMessage(
        this, message + tr("\n\n The above message will be copied to clipboard upon clicking OK."),
        [this, message] {
            m_console.prompts.SetClipboardText(message);
            Finish();
        });
}

void MountPage::Finish() {
    Sheet().Commit(
        Lane::Service, tr("Preparing the new folder ..."),
        [service = m_console.service, order = m_order, stop = m_stop](const std::stop_token&) {
            return FinishMount(service, order, stop.get_token());
        },
        [this](const Loaded<QString>& failure) {
            if (!failure || failure->isEmpty())
                return Sheet().Pass();
            m_console.prompts.ShowMessage(this, *failure, [this] { Sheet().Pass(); });
        });
}

void MountPage::EndFailed(const MountOutcome& outcome) {
    m_draft->lookAt = outcome.lookAt;
    const QString words = outcome.Words();
    Sheet().Stay({words, FieldOf(outcome.lookAt)});
    if (outcome.end == MountOutcome::End::Failed)
        m_console.prompts.ShowMessage(this, outcome.why, {}, outcome.where);
}

QWidget* MountPage::FieldOf(MountOutcome::Place place) const {
    for (const auto& [of, field] : m_fields)
        if (place != MountOutcome::Place::Nothing && of == place)
            return field;
    return nullptr;
}
