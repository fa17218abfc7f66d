#pragma once

#include "backup/RestoreTaskWizard.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

/// Shows how a file is in the snapshots of its set, the newest first; those in which it is the same are one
/// row. The snapshot to restore it from can be chosen.
class OtherSnapshotsDlg : public QDialog {
    Q_OBJECT

public:
    /// `path` is that of the file in a snapshot.
    OtherSnapshotsDlg(const Console& console, const RestoreSet& set, const QString& path,
                      QWidget* parent = nullptr);

    /// Once it is accepted.
    const Snapshot& Chosen() const { return m_chosen; }

    void accept() override;

private:
    void LookOn();
    void Take(const Snapshot& snapshot, const std::optional<ListedFile>& file);

    const Console& m_console;
    BackupSetPlace m_place;
    QString m_path;
    std::vector<Snapshot> m_left; ///< to look at, the newest last
    std::optional<ListedFile> m_last;
    Snapshot m_chosen;
    QTreeWidget* m_list;
    QLabel* m_state;
    QPushButton* m_use;
    PageLoader m_loader;
};
