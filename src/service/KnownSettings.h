#pragma once

#include "service/Setting.h"

/// The settings that the console knows by name.
namespace Settings {

inline constexpr Setting<bool> EnableTaskVerification{"EnableTaskVerification", false};
inline constexpr Setting<bool> KeepCompletedTaskInDB{"KeepCompletedTaskInDB", true};
inline constexpr Setting<bool> AutoRescheduleFailedTask{"AutoRescheduleFailedTask", true};
inline constexpr Setting<int> FailedTaskRetryTimeout{"FailedTaskRetryTimeout", 120}; ///< seconds
inline constexpr Setting<int> MaxFailedTaskCount{"MaxFailedTaskCount", 1000};
inline constexpr Setting<int> MaxTaskRetryCount{"MaxTaskRetryCount", 20};
inline constexpr Setting<bool> DeleteCacheAfterUpload{"DeleteCacheAfterUpload", true};
inline constexpr Setting<int> UploadWorkerCount{"UploadWorkerCount", 5};
inline constexpr Setting<int> DownloadWorkerCount{"DownloadWorkerCount", 5};
inline constexpr Setting<int> DownloadPartCount{"DownloadPartCount", 5};
inline constexpr Setting<int> FailedMonBackupTaskTimeout{"FailedMonBackupTaskTimeout", 3600}; ///< seconds
inline constexpr Setting<int> UploadBandwidth{"UploadBandwidth", 0};     ///< KB a second, 0 is unlimited
inline constexpr Setting<int> DownloadBandwidth{"DownloadBandwidth", 0}; ///< KB a second, 0 is unlimited

inline constexpr Setting<int> TaskAdvancedMode{"TaskAdvancedMode", 0};
inline constexpr Setting<int> DFAdvancedMode{"DFAdvancedMode", 0}; ///< of sync folders

/// Sync folders: who changes files, and how they travel.
inline const Setting<QString> WriterName{"WriterName", QStringLiteral("Local User")};
inline const Setting<QString> ComputerName{"ComputerName"}; ///< the host's name when not set
inline constexpr Setting<int> DropPollingInterval{"DropPollingInterval", 15}; ///< seconds
inline constexpr Setting<int> DropCTMax{"DropCTMax", 10240};                  ///< KB
inline constexpr Setting<int> DropCTMin{"DropCTMin", 10};                     ///< KB
inline constexpr Setting<bool> PublishedToCloudSVC{"PublishedToCloudSVC", false};
inline constexpr Setting<bool> BSInitConfig{"BSInitConfig", false}; ///< the server has been set up

/// Whether the service takes this console's own forms (docs/service-extensions.md), and one of them.
inline const Setting<QString> ConsoleRecords{"ConsoleRecords"};
inline constexpr Setting<bool> ProfileEncryption{"ProfileEncryption", false};

/// Mail about backup tasks, sent by the service.
inline constexpr Setting<bool> SuccNotification{"SuccNotification", false};
inline constexpr Setting<bool> FailNotification{"FailNotification", false};
inline const Setting<QString> EmailNotification{"EmailNotification"}; ///< whom to

inline constexpr Setting<int> ProxyType{"ProxyType", 0};
inline constexpr Setting<int> ProxyTypeChanged{"ProxyTypeChanged",
                                               0}; ///< the type as it was last saved whole
inline const Setting<QString> ProxyAddr{"ProxyAddr"};
inline const Setting<QString> ProxyPort{"ProxyPort"};
inline const Setting<QString> ProxyUser{"ProxyUser"};
inline const Setting<QString> ProxyPwd{"ProxyPwd"};
inline const Setting<QString> ProxyBypass{"ProxyBypass"};

} // namespace Settings
