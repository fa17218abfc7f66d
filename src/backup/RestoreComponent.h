#pragma once

#include "backup/RestoreTaskWizard.h"
#include "backup/SnapshotLevels.h"

class CheckTreeView;
class ListOn;
class NoticeLine;
class QPushButton;

/// Asks what of the snapshot to restore. What was ticked and what is open stays when another snapshot is
/// chosen.
class CRestoreComponent : public WizardPage {
    Q_OBJECT

public:
    CRestoreComponent(const Console& console, std::shared_ptr<RestoreChoice> choice);

    QVariantList Inputs() const override { return {m_choice->draft.snapshot}; }
    void Fill() override;
    void Leave() override;
    PageLine Line() const override;

private:
    void OnListed(const QStringList& path);
    /// On the way to what was open before. `listed` is the level whose listing has just ended.
    void WalkOn(const TreeLevels::Node* listed = nullptr);
    void EndWalk(const TreeLevels::Node& node, const QString& missing = {});
    void ShowOthers();
    void ShowWhatCanBeDone();
    /// The first ticked path that the snapshot is known not to hold.
    std::optional<QStringList> MissingPath(const TreeWalk& walk) const;
    QString NameOf(const WalkedNode& node) const;

    const Console& m_console;
    std::shared_ptr<RestoreChoice> m_choice;
    std::shared_ptr<KnownLevels> m_known = std::make_shared<KnownLevels>();
    CheckTreeModel m_model;
    CheckTreeView* m_view;
    ListOn* m_find;
    NoticeLine* m_notice;
    QPushButton* m_others;
    std::optional<QStringList> m_wanted; ///< the path to open again
};
