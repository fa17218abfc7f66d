#pragma once

#include <QColor>
#include <QIcon>
#include <QStringList>

/// The numbers by which producers, toolbars and side actions know their icons. 0 is no icon; 9001 and above
/// are the console's own, for drawings that no other number names.
enum IconNumber : int {
    HeaderDecorationIcon = 133,
    SettingGroupIcon = 181,
    SettingIcon = 182,
    RefreshIcon = 183,
    StartNowIcon = 202,
    DeleteIcon = 208,
    UploadIcon = 209,
    DownloadIcon = 210,
    OtherOperationIcon = 211,
    TaskListIcon = 316,
    SystemTasksIcon = 317,
    CompletedTasksIcon = 318,
    TaskSettingsIcon = 319,
    MountedIcon = 326,
    PauseIcon = 330,
    StartIcon = 331,
    CancelTaskIcon = 332,
    SystemActivitiesIcon = 334,
    ResumeIcon = 347,
    FolderIcon = 349,
    FileVersionsIcon = 350,
    TaskPendingIcon = 360,
    TaskRunningIcon = 361,
    TaskPausedIcon = 362,
    TaskFailedIcon = 363,
    TaskCompletedIcon = 364,
    TraceIcon = 8022,
    BackupIcon = 9003,
    CompressionIcon = 9012,
    CopyIcon = 9013,
    DeleteAllIcon = 9014,
    EditIcon = 9015,
    DismountIcon = 9016,
    EncryptionIcon = 9017,
    FileIcon = 9022,
    LoginIcon = 9018,
    MountIcon = 9019,
    OpenFolderIcon = 9020,
    QuotaIcon = 9021,
    InformationIcon = 9026,
    ProxyIcon = 9032,
    EmailIcon = 9033,
    SearchIcon = 9035,
    SettingsIcon = 9036,
    SummaryIcon = 9039,
    SyncIcon = 9041,
    TargetIcon = 9042,
};

/// The console's icons, by name (the drawing's file name) or by number. Each drawing has one colour, which
/// may be replaced. Icons of unknown names and numbers are null. UI thread.
class IconRegistry {
public:
    static QIcon Icon(const QString& name, QColor colour = {});
    static QIcon Icon(int number, QColor colour = {});

    /// The name of the icon that a number stands for; empty when there is none.
    static QString Name(int number);
    /// The names of all drawings, sorted.
    static QStringList Names();
};
