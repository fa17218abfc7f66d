#pragma once

#include "grid/PropertyModel.h"
#include "page/BrenPanel.h"
#include "plan/BackupChange.h"
#include "taskman/TaskList.h"

#include <QHash>

class CBrenPropertyGrid;
class CPropertyGroup;
class NoticeLine;

/// The settings of one backup in groups: what is known of them, and what a person makes of them until it is
/// saved. What was changed and not saved is kept for each backup, also while another one is shown.
class BackupSettingsPage : public CBrenPanel {
    Q_OBJECT

public:
    explicit BackupSettingsPage(const Console& console);

    void Turn(const TaskRow& task);
    /// That the backup could not be read again.
    void ShowFailure(const QString& sentence) { TellFailure(sentence); }
    /// Asks the service whether it takes changed settings.
    void Reload() override;

signals:
    void Saved();

protected:
    void CreatePanel() override;

private:
    struct Entry {
        PropertyRow row;
        std::function<void(BackupChange&, const QString&)> set =
            {}; ///< none: it is chosen by `open`, or never
        std::function<void()> open = {};
    };
    struct Group {
        QString title;
        std::vector<Entry> entries = {};
    };
    struct Service {
        std::optional<bool> takesChanges;
        ScheduleForm form = ScheduleForm::Dialog;
    };
    using Changes = QHash<QString, BackupChange>;

    bool TakesChanges() const { return m_service.takesChanges == true; }
    BackupChange Change() const { return m_changes.value(m_known.id); }
    void Edit(const std::function<void(BackupChange&)>& edit);
    void ShowAll();
    void ShowNotice();
    void ShowToolbar();
    bool HasShape(const std::vector<Group>& groups) const;
    bool IsEditing() const;
    void Build();

    std::vector<Group> Groups();
    Group ScheduleGroup();
    Group FolderGroup(const QString& title, const QString& label, const QString& known,
                      std::optional<QStringList> BackupChange::*member, bool mayAdd);
    Group TargetGroup();
    Group TextGroup(const QString& title, const QString& label,
                    std::optional<QString> BackupChange::*member) const;
    Entry SwitchEntry(const QString& label, std::optional<bool> BackupChange::*member) const;
    Entry NumberEntry(const QString& label, const QString& question,
                      std::optional<int> BackupChange::*member);
    Group ConfigurationGroup() const;

    void AddFolder(const QString& caption, const QString& known,
                   std::optional<QStringList> BackupChange::*member);
    void ChooseSchedule();
    void ChooseTarget();
    void AskNumber(const QString& title, const QString& question, std::optional<int> BackupChange::*member);
    void Save();

    TaskRow m_task;
    KnownBackup m_known;
    Service m_service;
    bool m_asked = false;
    Changes m_changes;
    std::vector<Group> m_groups; ///< as shown
    NoticeLine* m_notice = nullptr;
    CBrenPropertyGrid* m_grid = nullptr;
};
