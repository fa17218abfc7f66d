#pragma once

#include "plan/BackupDraft.h"

#include <QDateTime>

// What the wizards say of their drafts at the end.

/// Lines end in "\r\n", as in all texts of this kind.
QString FolderConfirmText(const BackupDraft& draft);
/// `selection` is the name of the draft's sources, `now` the local time.
QString FolderBackupName(const BackupDraft& draft, const QString& selection, const QString& host,
                         const QDateTime& now);

QString FileTypeConfirmText(const BackupDraft& draft);

QString ApplicationConfirmText(const ApplicationDraft& draft);
/// `names` is what is selected, as it is shown.
QString ApplicationBackupName(const QStringList& names, const QString& target);
