#pragma once

#include "page/BrenPanel.h"
#include "taskman/TaskList.h"

class BackupSettingsPage;
class QComboBox;
class QLabel;

/// The settings of a backup that is chosen among those of both lists.
class BackupSettingsPanel : public CBrenPanel {
    Q_OBJECT

public:
    explicit BackupSettingsPanel(const Console& console);

    /// Chooses this backup when the panel is shown next.
    void Prefer(const QString& taskId) { m_preferred = taskId; }

    void Activate() override;
    void Deactivate() override;
    void Reload() override;

protected:
    void CreatePanel() override;

private:
    void Show(const CardEntries& entries);
    bool HasNames() const;
    void ShowEmpty(const QString& text);
    void Turn();

    QString m_preferred;
    CardEntries m_backups;
    QWidget* m_choice = nullptr; ///< the names with their label
    QComboBox* m_names = nullptr;
    QLabel* m_empty = nullptr;
    BackupSettingsPage* m_page;
};
