#pragma once

#include "backup/TaskSender.h"
#include "lanes/PageLoader.h"
#include "plan/DraftRefusal.h"
#include "wizard/WizardPage.h"

class ConfirmPage;
class Form;
class LinkLabel;
class NoticeLine;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QSpinBox;

/// A line with a link in it.
struct ConfirmLink {
    std::function<QString()> text;               ///< what is clicked stands in it between "<a>" and "</a>"
    std::function<void(ConfirmPage& page)> open; ///< what a click does; the page then shows all anew
};

/// What the last page of a wizard has of its own. The functions read the wizard's draft, whose parts the page
/// writes.
struct ConfirmPlan {
    QString title;
    QString subtitle;
    std::shared_ptr<QString> name;
    std::shared_ptr<BackupRetention> retention;
    std::shared_ptr<bool> encrypted;
    std::shared_ptr<const QString> target;
    std::function<QString()> text; ///< of the box
    /// Stands in the field until the user enters another one; none: the field shows the draft's name.
    std::function<QString()> proposedName;
    std::vector<ConfirmLink> links;
    std::function<QString()> refusal; ///< why the draft is not sent; empty when it can be
    std::function<NewTask()> task;
    QString keyFailure;       ///< the key could not be set
    QString createFailure;    ///< the task was not made
    QWidget* below = nullptr; ///< stands below the links; the page owns it
    std::function<void()> shown =
        {}; ///< the page shows the draft anew: it is reached, or was changed by a link
};

/// The parts of a plan that come of the draft alone: a `BackupDraft` or an `ApplicationDraft`.
template <typename Draft>
ConfirmPlan PlanOf(const std::shared_ptr<Draft>& draft) {
    ConfirmPlan plan;
    plan.name = std::shared_ptr<QString>(draft, &draft->name);
    plan.retention = std::shared_ptr<BackupRetention>(draft, &draft->retention);
    plan.encrypted = std::shared_ptr<bool>(draft, &draft->encrypted);
    plan.target = std::shared_ptr<const QString>(draft, &draft->target);
    plan.refusal = [draft] { return DraftRefusal(*draft); };
    plan.task = [draft] { return TaskOf(*draft); };
    return plan;
}

/// Leads back to the page where the schedule is chosen.
ConfirmLink ScheduleLink(const WizardPage& schedulePage, std::shared_ptr<const BackupSchedule> schedule,
                         ScheduleForm form);
/// Opens the dialog of the mails about backups.
ConfirmLink MailLink(const Console& console);

/// The last page of the wizards that make backups: shows what was chosen, asks for name, retention and
/// encryption, and lets the service make the task. Whatever fails keeps all that was entered.
class ConfirmPage : public WizardPage {
    Q_OBJECT

public:
    ConfirmPage(const Console& console, ConfirmPlan plan);

    QVariantList Inputs() const override { return {m_visits}; }
    void Fill() override;
    void Leave() override;
    void Escape() override { m_sender.GiveUp(); }
    bool CanEscape() const override { return m_sender.IsSending(); }

    /// What a link does with the page.
    void GoBack(const WizardPage& page);
    /// The draft has changed: text and links are written anew.
    void ShowDraft();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* MakeRetention();
    void MakeLinks(QWidget& column);
    void ProposeName();
    void TakeFields();
    void ShowRemarks();
    void ReadNames();
    void ReadTarget();
    void AskForKey();
    void Send();

    const Console& m_console;
    ConfirmPlan m_plan;
    TaskSender m_sender;
    PageLoader m_names;
    PageLoader m_target;
    NoticeLine* m_notice;
    Form* m_form;
    QLineEdit* m_name;
    QPlainTextEdit* m_text;
    std::vector<LinkLabel*> m_links;
    QSpinBox* m_fullEvery;
    QSpinBox* m_keep;
    QLabel* m_keepRemark;
    QCheckBox* m_encrypt;
    int m_visits = 0;     ///< the text is written at each
    QString m_proposed;   ///< the name that the field was given
    ListedTasks m_listed; ///< as last read
};
