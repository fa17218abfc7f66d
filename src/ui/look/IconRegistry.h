#pragma once

#include <QColor>
#include <QIcon>
#include <QStringList>

/// The numbers by which producers, toolbars and side actions know their icons. 0 is no icon; 9001 and above
/// are the console's own, for drawings that no other number names.
enum IconNumber : int {
    HeaderDecorationIcon = 133,
    CommandDeleteIcon = 148,
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
    MountFailedIcon = 327,
    MountPendingIcon = 328,
    PauseIcon = 330,
    StartIcon = 331,
    CancelTaskIcon = 332,
    SystemActivitiesIcon = 334,
    ResumeIcon = 347,
    RestoreIcon = 348,
    BrowseFolderIcon = 349,
    FileVersionsIcon = 350,
    TaskPendingIcon = 360,
    TaskRunningIcon = 361,
    TaskPausedIcon = 362,
    TaskFailedIcon = 363,
    TaskCompletedIcon = 364,
    TraceIcon = 8022,

    AddIcon = 9001,
    ApplicationIcon = 9002,
    BackupIcon = 9003,
    CheckIcon = 9004,
    ChevronDownIcon = 9005,
    ChevronLeftIcon = 9006,
    ChevronRightIcon = 9007,
    ChevronUpIcon = 9008,
    CloseIcon = 9009,
    CloudIcon = 9010,
    CloudAddIcon = 9011,
    CompressIcon = 9012,
    CopyIcon = 9013,
    DeleteAllIcon = 9014,
    EditIcon = 9015,
    ErrorIcon = 9016,
    ExportIcon = 9017,
    FileIcon = 9018,
    FileTypesIcon = 9019,
    FolderIcon = 9020,
    FolderAddIcon = 9021,
    FolderSyncIcon = 9022,
    GlobeIcon = 9023,
    HomeIcon = 9024,
    IndexIcon = 9025,
    InformationIcon = 9026,
    KeyIcon = 9027,
    LockIcon = 9028,
    MailIcon = 9029,
    MenuIcon = 9030,
    OpenIcon = 9031,
    ProxyIcon = 9032,
    QuestionIcon = 9033,
    ScheduleIcon = 9034,
    SearchIcon = 9035,
    SettingsIcon = 9036,
    SnapshotIcon = 9037,
    SpeedIcon = 9038,
    SummaryIcon = 9039,
    SupportIcon = 9040,
    SyncIcon = 9041,
    TargetIcon = 9042,
    UserIcon = 9043,
    WarningIcon = 9044,
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
