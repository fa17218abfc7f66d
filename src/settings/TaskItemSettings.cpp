#include "settings/TaskItemSettings.h"

#include "service/KnownSettings.h"

namespace {

template <typename Value>
CatalogSetting Described(const Setting<Value>& setting, const QString& description) {
    return {setting.AsText(), description};
}

} // namespace

CTaskItemSettings::CTaskItemSettings(const Console& console, QWidget* parent)
    : SettingsGridPage(console, &TypedText, parent) {}

SettingsCatalog CTaskItemSettings::Catalog(QString&) const {
    using namespace Settings;
    return {
        {tr("General"),
         {
             Described(EnableTaskVerification, tr("Verify tasks before marking them complete")),
             Described(KeepCompletedTaskInDB, tr("Keep completed tasks in scheduler database")),
             Described(AutoRescheduleFailedTask, tr("Automatically reschedule failed tasks")),
             Described(FailedTaskRetryTimeout, tr("Interval between retries of failed tasks (Sec)")),
             Described(MaxFailedTaskCount, tr("Maximum consecutive errors before marking a task failed")),
             Described(MaxTaskRetryCount, tr("Maximum retries before pausing a task")),
         }},
        {tr("Upload"),
         {
             Described(DeleteCacheAfterUpload, tr("Delete cached files after upload")),
             Described(UploadWorkerCount, tr("Maximum concurrent upload tasks")),
         }},
        {tr("Download"),
         {
             Described(DownloadWorkerCount, tr("Maximum concurrent download tasks")),
             Described(DownloadPartCount, tr("Download file in multiple parts")),
         }},
        {tr("Backup"),
         {
             Described(FailedMonBackupTaskTimeout, tr("Interval of scanning source folder changes (Sec)")),
         }},
        {tr("Bandwidth Control"),
         {
             Described(UploadBandwidth, tr("Upload Speed Limit (KB/Sec) 0-Unlimited")),
             Described(DownloadBandwidth, tr("Download Speed Limit (KB/Sec) 0-Unlimited")),
         }},
    };
}
