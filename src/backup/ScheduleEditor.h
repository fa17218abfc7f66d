#pragma once

#include "plan/BackupSchedule.h"

#include <QTimeZone>
#include <QTimer>
#include <QWidget>

class Form;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QTimeEdit;
struct PlannedRun;

/// Asks when a backup runs, says what the chosen mode means, and shows the next runs that come of it.
class ScheduleEditor : public QWidget {
    Q_OBJECT

public:
    /// `zone` is that of the computer.
    explicit ScheduleEditor(ScheduleForm form, const QTimeZone& zone = QTimeZone::systemTimeZone());

    /// A start that is not known leaves date and time as they stand; a mode that is not offered becomes the
    /// first one.
    void SetSchedule(const BackupSchedule& schedule);
    /// Date, time and weekdays are those of the fields in any mode.
    BackupSchedule Schedule() const;

    void FocusWeekdays();

signals:
    void Edited();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct RunLines {
        QLabel* when;
        QLabel* remark;
    };

    QWidget* MakeWeekdays();
    void AddBox(const QString& text);
    QWidget* MakeRuns();
    void ShowMode();
    void ShowRuns();
    static void ShowRun(const RunLines& lines, const PlannedRun& run, const QDateTime& now);

    ScheduleForm m_kind;
    QTimeZone m_zone;
    Form* m_form;
    QComboBox* m_mode;
    QLabel* m_description;
    QDateEdit* m_date;
    QTimeEdit* m_time;
    std::array<QCheckBox*, 7> m_days{};
    QWidget* m_weekdays;
    QCheckBox* m_box = nullptr; ///< none where the form has none
    QWidget* m_runs = nullptr;
    QLabel* m_noRuns = nullptr;
    std::vector<RunLines> m_runLines;
    QTimer m_clock; ///< the runs come nearer
};
