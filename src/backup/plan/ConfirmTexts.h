#pragma once

#include "plan/BackupDraft.h"

#include <QDateTime>

// What the folder wizard says of its draft at the end.

/// Lines end in "\r\n", as in all texts of this kind.
QString FolderConfirmText(const BackupDraft& draft);
/// `selection` is the name of the draft's sources, `now` the local time.
QString FolderBackupName(const BackupDraft& draft, const QString& selection, const QString& host,
                         const QDateTime& now);
