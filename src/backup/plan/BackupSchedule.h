#pragma once

#include "stores/ScheduleBlob.h"

#include <QDateTime>

#include <stop_token>
#include <vector>

class ServiceClient;

/// How a backup comes to run. The number is what the service is told.
enum class ScheduleMode { Continuous = 0, Daily = 1, Weekdays = 2 };

/// Where a schedule is chosen: in the dialog of a desktop, in that of a server which has been set up, or on
/// the wizard's page for mirrored or for snapshot backups. The dialogs have links, the pages have a box.
enum class ScheduleForm { Dialog, Server, Mirrored, Snapshot };

/// When a backup runs: wall time of the computer, sent as it was chosen and never converted.
struct BackupSchedule {
    ScheduleMode mode = ScheduleMode::Continuous;
    QDate date = {}; ///< the first day; invalid where it is not known
    QTime time = {}; ///< to the second; invalid where it is not known
    std::array<bool, 7> weekdays{true, true, true, true, true, true, true}; ///< from Sunday
    bool box = false; ///< of the wizard's page: skips the first upload (mirrored), runs at once (snapshot)

    bool operator==(const BackupSchedule&) const = default;
};

/// The years of four digits, which is what a schedule can say.
inline const QDate FirstScheduleDate(1000, 1, 1);
inline const QDate LastScheduleDate(9999, 12, 31);

/// The dialog's form on this computer. A server is asked whether it has been set up, so this is for a lane.
ScheduleForm DialogForm(const ServiceClient& service, std::stop_token stop = {});

/// What a form has at first. `now` is the local time.
BackupSchedule DefaultSchedule(ScheduleForm form, const QDateTime& now);

/// What a task's row tells of its schedule: weekdays, and nothing of their start. None when it tells none.
std::optional<BackupSchedule> ScheduleOf(const ScheduleBlob& blob);

/// The modes that the form offers, in the order of its list.
std::vector<ScheduleMode> ModesOf(ScheduleForm form);
QString ModeChoice(ScheduleForm form, ScheduleMode mode);
QString ModeDescription(ScheduleForm form, ScheduleMode mode);
/// Beside the box; empty where the form has none.
QString BoxText(ScheduleForm form);
bool HasLink(ScheduleForm form);

/// Why the form does not take the schedule; empty when it does.
QString ScheduleRefusal(const BackupSchedule& schedule, ScheduleForm form);

/// The schedule as the service takes it, with a line feed at its end: 14 numbers, or 15 with the box. Date
/// and time must be known.
QString ScheduleString(const BackupSchedule& schedule, bool withBox);

struct ScheduleTexts {
    QString string;
    QString link; ///< of the dialogs
    QString summary;
};

/// Of a form that was confirmed.
ScheduleTexts ConfirmedTexts(const BackupSchedule& schedule, ScheduleForm form);
/// Of one that was never opened, whose schedule is the default.
ScheduleTexts UntouchedTexts(const BackupSchedule& schedule, ScheduleForm form);
