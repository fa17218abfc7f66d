#include "settings/TaskItemSettings.h"

using namespace Qt::Literals::StringLiterals;

CTaskItemSettings::CTaskItemSettings(const Console& console, QWidget* parent)
    : CSettingsGridPage(console, &TypedText, parent) {}

SettingsCatalog CTaskItemSettings::Catalog() const {
    constexpr auto Integer = ServiceClient::ValueType::Integer;
    constexpr auto Boolean = ServiceClient::ValueType::Boolean;
    return {
        {tr("General"),
         {
             {u"EnableTaskVerification"_s, tr("Verify tasks before marking them complete"), Boolean,
              u"False"_s},
             {u"KeepCompletedTaskInDB"_s, tr("Keep completed tasks in scheduler database"), Boolean,
              u"True"_s},
             {u"AutoRescheduleFailedTask"_s, tr("Automatically reschedule failed tasks"), Boolean, u"True"_s},
             {u"FailedTaskRetryTimeout"_s, tr("Interval between retries of failed tasks (Sec)"), Integer,
              u"120"_s},
             {u"MaxFailedTaskCount"_s, tr("Maximum consecutive errors before marking a task failed"), Integer,
              u"1000"_s},
             {u"MaxTaskRetryCount"_s, tr("Maximum retries before pausing a task"), Integer, u"20"_s},
         }},
        {tr("Upload"),
         {
             {u"DeleteCacheAfterUpload"_s, tr("Delete cached files after upload"), Boolean, u"True"_s},
             {u"UploadWorkerCount"_s, tr("Maximum concurrent upload tasks"), Integer, u"5"_s},
         }},
        {tr("Download"),
         {
             {u"DownloadWorkerCount"_s, tr("Maximum concurrent download tasks"), Integer, u"5"_s},
             {u"DownloadPartCount"_s, tr("Download file in multiple parts"), Integer, u"5"_s},
         }},
        {tr("Backup"),
         {
             {u"FailedMonBackupTaskTimeout"_s, tr("Interval of scanning source folder changes (Sec)"),
              Integer, u"3600"_s},
         }},
        {tr("Bandwidth Control"),
         {
             {u"UploadBandwidth"_s, tr("Upload Speed Limit (KB/Sec) 0-Unlimited"), Integer, u"0"_s},
             {u"DownloadBandwidth"_s, tr("Download Speed Limit (KB/Sec) 0-Unlimited"), Integer, u"0"_s},
         }},
    };
}
