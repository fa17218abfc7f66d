#include "plan/BackupDraft.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString OrStar(const QString& text) {
    return text.isEmpty() ? u"*"_s : text;
}

QString Lines(const QStringList& lines) {
    return lines.join('\n'_L1);
}

QString EncryptionField(bool encrypted) {
    return encrypted ? u"1"_s : u"0"_s;
}

template <size_t count>
QByteArray Joined(const std::array<QString, count>& fields) {
    return QStringList(fields.begin(), fields.end()).join('\t'_L1).toUtf8();
}

} // namespace

QString ListedName(const QString& name, bool encrypted) {
    QString field = name;
    field.replace('\t'_L1, ' '_L1).replace('\n'_L1, ' '_L1);
    return encrypted ? field + "[Encrypted]"_L1 : field;
}

ScheduleForm ScheduleFormOf(BackupFlavour flavour) {
    return flavour == BackupFlavour::Snapshot ? ScheduleForm::Snapshot : ScheduleForm::Mirrored;
}

QString FilterLines(const BackupFilter& filter) {
    return Lines({OrStar(filter.types), OrStar(filter.excludedTypes), OrStar(filter.excludedFiles),
                  filter.skipSystem ? u"NoSys"_s : u"Sys"_s,
                  filter.skipHidden ? u"NoHidden"_s : u"Hidden"_s});
}

BackupFilter FilterOfTypes(const QString& types) {
    return {types, {}, {}};
}

std::array<QString, 10> FieldsOf(const BackupDraft& draft) {
    return {ListedName(draft.name, draft.encrypted),
            Lines(draft.sources),
            draft.target,
            OrStar(Lines(draft.exclusions)),
            FilterLines(draft.filter),
            ScheduleString(draft.schedule, true),
            QString::number(draft.retention.fullEvery),
            QString::number(draft.retention.keep),
            EncryptionField(draft.encrypted),
            draft.flavour == BackupFlavour::Mirrored ? u"Backup"_s : u"Snapshotbackup"_s};
}

std::array<QString, 8> FieldsOf(const ApplicationDraft& draft) {
    return {ListedName(draft.name, draft.encrypted),
            Lines(draft.keys),
            draft.target,
            OrStar(Lines(draft.exclusions)),
            QString::number(draft.retention.fullEvery),
            QString::number(draft.retention.keep),
            ScheduleString(draft.schedule, true),
            EncryptionField(draft.encrypted)};
}

QByteArray RecordOf(const std::array<QString, 10>& fields) {
    return Joined(fields);
}

QByteArray RecordOf(const std::array<QString, 8>& fields) {
    return Joined(fields) + '\t';
}
