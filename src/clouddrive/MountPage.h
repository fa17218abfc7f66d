#pragma once

#include "clouddrive/MountWizard.h"

#include <stop_token>

class ProgressNote;
class QCheckBox;
class QLabel;
class QScrollArea;

/// Shows what will be mounted, and mounts it.
class MountPage : public WizardPage {
    Q_OBJECT

public:
    MountPage(const Console& console, std::shared_ptr<MountDraft> draft, MountPace pace);
    /// A mount under way is called off.
    ~MountPage() override;

    QVariantList Inputs() const override { return {m_draft->choice, m_draft->name, m_draft->card.document}; }
    void Fill() override;
    void Leave() override;
    void Escape() override;
    bool CanEscape() const override { return m_phase == Phase::Mounting || m_phase == Phase::Ending; }

private:
    enum class Phase { Idle, Mounting, CallingOff, Ending };

    void ShowSummary();
    /// `offered` is none where the service does not tell.
    void ShowPublishing(std::optional<bool> offered);
    void Ask(const QStringList& questions);
    void Start();
    void Step();
    void GoOnAfter(std::chrono::milliseconds time);
    void CallOff();
    void End(const MountOutcome& outcome);
    void EndMounted(const QString& message);
    void Finish();
    void EndFailed(const MountOutcome& outcome);
    QWidget* FieldOf(MountOutcome::Place place) const;
    void TellProgress();

    const Console& m_console;
    std::shared_ptr<MountDraft> m_draft;
    MountPace m_pace;
    QScrollArea* m_summary;
    QCheckBox* m_publish;
    QLabel* m_noPublishing;
    std::vector<std::pair<MountOutcome::Place, QWidget*>> m_fields; ///< of the summary

    Phase m_phase = Phase::Idle;
    MountOrder m_order;
    std::shared_ptr<MountRun> m_run; ///< a lane's while a step is under way
    std::shared_ptr<ProgressNote> m_note;
    std::stop_source m_stop;
    int m_turn = 0;         ///< counts the steps; a wait that has ended otherwise comes too late
    bool m_waiting = false; ///< between two steps
    bool m_asking = false;
};
