#pragma once

#include "plan/BackupSets.h"
#include "plan/RestoreDraft.h"
#include "wizard/BrenPropertySheet.h"

struct Console;

/// A set to restore from.
struct RestoreSet {
    BackupSetPlace place = {};
    QString label = {};       ///< the backup's name, or that of the set's folder
    QStringList sources = {}; ///< of the backup; none where they are not known
    SetType type = SetType::Unknown;
    std::vector<Snapshot> snapshots = {}; ///< the oldest first
};

/// What the pages of the wizard share.
struct RestoreChoice {
    QString storage = {};                    ///< the folder that was ticked
    std::vector<BackupSetPlace> places = {}; ///< the sets that are there
    RestoreSet set = {};                     ///< the chosen one
    Snapshot snapshot = {};                  ///< of it
    bool hasSnapshot = false;
    QStringList names = {}; ///< of the components, as they are shown
    QStringList excludedNames = {};
    QStringList files = {}; ///< paths of the files that were listed and are to be restored
    RestoreDraft draft = {};
};

/// What is known when the wizard is opened for a snapshot.
struct RestoreStart {
    RestoreSet set;
    Snapshot snapshot;
};

/// Restores all or a part of a snapshot: where from, which one, what of it, and where to.
class CRestoreTaskWizard : public CBrenPropertySheet {
    Q_OBJECT

public:
    /// With a start it begins with that backup's snapshots.
    CRestoreTaskWizard(const Console& console, const std::optional<RestoreStart>& start,
                       QWidget* parent = nullptr);

    const RestoreDraft& Draft() const { return m_choice->draft; }

private:
    std::shared_ptr<RestoreChoice> m_choice;
};

/// Opens the wizard over the window of `over`, and tells of a task that was created. `done` is given its
/// draft, or nothing, unless `over` has gone.
void OpenRestoreWizard(const Console& console, QWidget* over, const std::optional<RestoreStart>& start,
                       std::function<void(const std::optional<RestoreDraft>& created)> done);
