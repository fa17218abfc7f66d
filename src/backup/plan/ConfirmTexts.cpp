#include "plan/ConfirmTexts.h"

using namespace Qt::Literals::StringLiterals;

QString FolderConfirmText(const BackupDraft& draft) {
    QString text = u"Backup the Following Folders (and subfolders):\r\n"_s + draft.sources.join("\r\n"_L1);
    if (!draft.exclusions.isEmpty())
        text +=
            "\r\n\r\nExclude Following Folders (and subfolders):\r\n"_L1 + draft.exclusions.join("\r\n"_L1);
    text += "\r\n\r\nBackup To:\r\n"_L1 + draft.target;
    if (draft.flavour == BackupFlavour::Mirrored)
        return text;
    // No blank before "Snapshots", on purpose.
    return text +
           u"\r\n\r\nSettings:\r\nFull backup every %1 Backups.\r\nKeep Last %2Snapshots. (0 - keeps all "
           "snapshots)"_s.arg(draft.retention.fullEvery)
               .arg(draft.retention.keep);
}

QString FolderBackupName(const BackupDraft& draft, const QString& selection, const QString& host,
                         const QDateTime& now) {
    const bool isBelowRoot = draft.target.startsWith(u'/') || draft.target.startsWith(u'\\');
    return host + ":Backup ["_L1 + selection + "] To ["_L1 + draft.target.mid(isBelowRoot ? 1 : 0) +
           "] ["_L1 + now.toString(u"yyyy-MM-dd HH:mm:ss"_s) + u']';
}

QString FileTypeConfirmText(const BackupDraft& draft) {
    QString text = u"Backup Name:\r\n"_s + draft.name + "\r\n\r\nBackup Following File Types:\r\n"_L1 +
                   draft.filter.types;
    if (!draft.exclusions.isEmpty())
        text += "\r\n\r\nExclude Following Folders (and subfolders):\r\n"_L1 +
                draft.exclusions.join("\r\n"_L1) + "\r\n"_L1;
    return text + "\r\n\r\nBackup To:\r\n"_L1 + draft.target;
}

QString ApplicationConfirmText(const ApplicationDraft& draft) {
    QString text = u"Backup the information and/or data of following application (and components):\r\n"_s +
                   draft.keys.join("\r\n"_L1);
    if (!draft.exclusions.isEmpty())
        text += "\r\n\r\nExclude Following Sub-Components:\r\n"_L1 + draft.exclusions.join("\r\n"_L1);
    return text + "\r\n\r\nBackup To:\r\n"_L1 + draft.target + "\r\n\r\nBackup Schedule:\r\n"_L1 +
           ConfirmedTexts(draft.schedule, ScheduleForm::Snapshot).summary;
}

QString ApplicationBackupName(const QStringList& names, const QString& target) {
    return u"Backup ["_s + names.join(u',') + "] To ["_L1 + target + u']';
}
