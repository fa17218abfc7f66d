#include "backup/RestoreConfirm.h"

#include "look/Look.h"
#include "page/Console.h"
#include "page/NoticeLine.h"
#include "plan/DraftRefusal.h"
#include "wizard/Form.h"
#include "wizard/PathField.h"
#include "zep/Text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int LeastTextHeight = 110;

/// Why nothing can be written there, whether it is a folder or has still to become one.
QString WriteFailure(const QString& location) {
    QString folder = location;
    while (!QFileInfo::exists(folder)) {
        const QString above = QFileInfo(folder).path();
        if (above == folder)
            return CRestoreConfirm::tr("There is no place \"%1\" on this computer.").arg(location);
        folder = above;
    }
    const QFileInfo info(folder);
    if (!info.isDir())
        return CRestoreConfirm::tr("\"%1\" is a file, in which nothing can be restored.").arg(folder);
    return info.isWritable() ? QString()
                             : CRestoreConfirm::tr("Nothing can be written to \"%1\".").arg(folder);
}

/// Of the files, those whose place in this draft is taken; none when the place of one is not known.
std::optional<qint64> CountTaken(const RestoreDraft& draft, const QStringList& sources,
                                 const QStringList& files, const std::stop_token& stop) {
    qint64 taken = 0;
    for (const QString& file : files) {
        const auto place = stop.stop_requested() ? std::nullopt : RestoredTo(draft, sources, file);
        if (!place)
            return {};
        taken += QFileInfo::exists(*place) ? 1 : 0;
    }
    return taken;
}

QString WhatBecomesOfThem(RestorePolicy policy) {
    switch (policy) {
    case RestorePolicy::Overwrite:
        return CRestoreConfirm::tr("they will be overwritten");
    case RestorePolicy::KeepNewer:
        return CRestoreConfirm::tr("they will be overwritten unless they are newer");
    case RestorePolicy::Rename:
        return CRestoreConfirm::tr("they stay, and what is restored gets another name");
    case RestorePolicy::Skip:
        break;
    }
    return CRestoreConfirm::tr("they stay, and are not restored");
}

QLabel* MakeWords() {
    auto* words = new QLabel;
    words->setTextFormat(Qt::PlainText);
    words->setWordWrap(true);
    words->setFont(Look::Font(Look::Small));
    words->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return words;
}

} // namespace

CRestoreConfirm::CRestoreConfirm(const Console& console, std::shared_ptr<RestoreChoice> choice)
    : WizardPage(tr("Confirm and Start"), tr("Check what will be restored, and where to.")),
      m_console(console), m_choice(std::move(choice)), m_sender(console), m_counter(console.reader, *this),
      m_notice(new NoticeLine), m_text(new QPlainTextEdit), m_form(new Form), m_name(new QLineEdit),
      m_policy(new QComboBox), m_elsewhere(new QCheckBox(tr("Restore to &another location"))),
      m_location(new PathField(console.prompts, {PickKind::Folder, tr("Location To Restore")})),
      m_example(MakeWords()), m_count(MakeWords()) {
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setAccessibleName(tr("What will be restored"));
    m_text->setFont(Look::Font(Look::Small));
    m_text->setMinimumHeight(LeastTextHeight);
    for (int policy = 0; policy < RestorePolicies; ++policy)
        m_policy->addItem(RestorePolicyText(RestorePolicy(policy)));
    m_form->Add(tr("Task &Name"), m_name, Form::Need::Required);
    m_form->Add(tr("If a &file is there"), m_policy);
    m_form->AddWide(m_elsewhere);
    m_form->Add(tr("&Location To Restore"), m_location);
    m_location->setEnabled(false);

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(m_text, 1);
    column->addWidget(m_form);
    column->addWidget(m_example);
    column->addWidget(m_count);
    column->addWidget(m_notice);
    SetScrolled(content);
    connect(m_name, &QLineEdit::textChanged, this, &CRestoreConfirm::OnEdited);
    connect(m_policy, &QComboBox::currentIndexChanged, this, &CRestoreConfirm::OnEdited);
    connect(m_elsewhere, &QCheckBox::toggled, this, &CRestoreConfirm::OnEdited);
    connect(m_location, &PathField::PathChanged, this, &CRestoreConfirm::OnEdited);
}

QVariantList CRestoreConfirm::Inputs() const {
    const RestoreDraft& draft = m_choice->draft;
    return {draft.snapshot, draft.components, draft.exclusions, m_choice->files};
}

QString CRestoreConfirm::Text() const {
    const auto lines = [](const QStringList& names) { return names.join("\r\n"_L1); };
    QString text = u"Cloud Storage To Restore From:\r\n"_s + m_choice->storage +
                   u"\r\n\r\nBackup Set To Restore:\r\n"_s + m_choice->set.label +
                   u"\r\n\r\nSnapshot To Restore:\r\n"_s + CreatedText(m_choice->snapshot) +
                   u"\r\n\r\nComponent To Restore:\r\n"_s + lines(m_choice->names);
    if (!m_choice->excludedNames.isEmpty())
        text += u"\r\n\r\nExclude Following Component(s):\r\n"_s + lines(m_choice->excludedNames);
    return text;
}

void CRestoreConfirm::Fill() {
    m_text->setPlainText(Text().replace("\r\n"_L1, "\n"_L1));
    if (m_name->text() == m_proposed) {
        m_proposed = RestoreName(m_choice->names, m_choice->storage);
        m_name->setText(m_proposed);
        m_proposed = m_name->text(); // as the field has it
        m_name->setCursorPosition(0);
    }
    OnEdited();
}

void CRestoreConfirm::TakeFields() {
    RestoreDraft& draft = m_choice->draft;
    draft.name = m_name->text();
    draft.policy = static_cast<RestorePolicy>(m_policy->currentIndex());
    draft.elsewhere = m_elsewhere->isChecked();
    draft.location = draft.elsewhere ? m_location->Path() : QString();
}

void CRestoreConfirm::OnEdited() {
    m_location->setEnabled(m_elsewhere->isChecked());
    TakeFields();
    const RestoreDraft& draft = m_choice->draft;
    const bool inSource =
        draft.elsewhere && !draft.location.isEmpty() && IsInSource(draft.location, m_choice->set.sources);
    m_notice->SetText(
        inSource ? tr("This location is a folder of the backup itself: what is restored there will be "
                      "backed up, too.")
                 : QString());
    ShowExample();
    Count();
    emit Edited();
}

void CRestoreConfirm::ShowExample() {
    const RestoreDraft& draft = m_choice->draft;
    const QString file = m_choice->files.isEmpty() ? draft.components.value(0) : m_choice->files.front();
    const auto place = RestoredTo(draft, m_choice->set.sources, file);
    m_example->setText(place ? file + u" -> "_s + *place : tr("%1 -> its own place").arg(file));
}

void CRestoreConfirm::Count() {
    m_counter.Cancel();
    const RestoreDraft draft = m_choice->draft;
    const QStringList files = m_choice->files;
    const QStringList sources = m_choice->set.sources;
    const QString unknown = tr("It is not known whether files stand in the way.");
    if (files.isEmpty() || !RestoredTo(draft, sources, files.front()))
        return m_count->setText(unknown);
    m_count->setText(tr("Looking whether files stand in the way..."));
    m_counter.Load(
        Lane::Network,
        [draft, sources, files](const std::stop_token& stop) {
            return CountTaken(draft, sources, files, stop);
        },
        [this, policy = draft.policy, all = files.size(), unknown](const Loaded<qint64>& taken) {
            if (taken.outcome == LoadOutcome::Cancelled)
                return;
            if (!taken)
                return m_count->setText(unknown);
            const QString found = tr("%1 of the %2 listed files stand there already")
                                      .arg(GroupedNumber(*taken), GroupedNumber(all));
            m_count->setText(*taken > 0 ? tr("%1; %2.").arg(found, WhatBecomesOfThem(policy)) : found + u'.');
        });
}

void CRestoreConfirm::Leave() {
    TakeFields();
    const RestoreDraft& draft = m_choice->draft;
    if (const QString refusal = RestoreRefusal(draft); !refusal.isEmpty()) {
        QWidget* field = !TaskNameRefusal(draft.name).isEmpty() ? static_cast<QWidget*>(m_name)
                         : draft.elsewhere                      ? m_location
                                                                : nullptr;
        return Sheet().Stay({refusal, field, true});
    }
    if (!draft.elsewhere)
        return Send();
    Sheet().Check(
        Lane::Network, tr("Looking at the location..."),
        [location = draft.location](const std::stop_token&) { return WriteFailure(location); },
        [this](const Loaded<QString>& failure) {
            if (failure && failure->isEmpty())
                return Send();
            Sheet().Stay({failure ? *failure : failure.why, m_location});
        });
}

void CRestoreConfirm::Send() {
    const NewTask task = TaskOf(m_choice->draft);
    Sheet().Check(
        Lane::Databases, tr("Looking for tasks of this name..."),
        [](std::stop_token stop) { return ListTasks(std::move(stop)); },
        [this, task](const Loaded<ListedTasks>& listed) {
            m_sender.Send(Sheet(), task, tr("Failed to create restore task!"),
                          listed ? listed->IdsOf(task.name) : QStringList());
        });
}
