#include "plan/BackupChange.h"

#include "plan/DraftRefusal.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString EncryptedMark = u"[Encrypted]"_s;
constexpr auto NoExclusions = "*"_L1;

/// One that would break the record is not known.
QString PieceOf(const QString& description, int piece, int last) {
    const QString text = description.section(u'\t', piece, last);
    return text.contains(u'\t') ? QString() : text;
}

QString Lines(const std::optional<QStringList>& changed, const QString& known) {
    return changed ? changed->join(u'\n') : known;
}

bool ChangesFilter(const BackupChange& change) {
    return change.types || change.excludedTypes || change.excludedFiles || change.skipSystem ||
           change.skipHidden;
}

/// The five lines, of which those that were not changed are empty.
QString FilterField(const BackupChange& change) {
    if (!ChangesFilter(change))
        return {};
    const BackupFilter filter{change.types.value_or(QString()), change.excludedTypes.value_or(QString()),
                              change.excludedFiles.value_or(QString()), change.skipSystem.value_or(true),
                              change.skipHidden.value_or(true)};
    QStringList lines = FilterLines(filter).split(u'\n');
    const bool changed[] = {change.types.has_value(), change.excludedTypes.has_value(),
                            change.excludedFiles.has_value(), change.skipSystem.has_value(),
                            change.skipHidden.has_value()};
    for (qsizetype line = 0; line < lines.size(); ++line)
        if (!changed[line])
            lines[line].clear();
    return lines.join(u'\n');
}

template <typename Draft>
Draft DraftOf(const KnownBackup& known, const BackupChange& change) {
    Draft draft;
    draft.encrypted = IsMarkedEncrypted(known.name);
    draft.name = draft.encrypted ? known.name.chopped(EncryptedMark.size()) : known.name;
    draft.schedule = change.schedule.value_or(BackupSchedule());
    draft.retention = {change.fullEvery.value_or(0), change.keep.value_or(0)};
    return draft;
}

/// The fields that both records have, as they are known or changed.
template <typename Field, size_t count>
void LeaveUnknown(std::array<QString, count>& fields, const KnownBackup& known, const BackupChange& change,
                  Field sources) {
    const auto field = [&fields](Field which) -> QString& { return fields[static_cast<std::size_t>(which)]; };
    field(sources) = Lines(change.sources, known.sources);
    field(Field::Target) = Lines(change.targets, known.targets);
    field(Field::Exclusions) = Lines(change.exclusions, known.exclusions);
    if (change.exclusions && change.exclusions->isEmpty())
        field(Field::Exclusions) = NoExclusions;
    if (!change.schedule)
        field(Field::Schedule).clear();
    if (!change.fullEvery)
        field(Field::FullEvery).clear();
    if (!change.keep)
        field(Field::Keep).clear();
}

} // namespace

bool IsMarkedEncrypted(const QString& name) {
    return name.endsWith(EncryptedMark);
}

KnownBackup KnownOf(const QString& id, const QString& name, const QString& type, const QString& description) {
    const BackupKind kind = KindOfBackup(type, description);
    if (kind == BackupKind::CrossCloud)
        return {id, name, kind, {}, {}, {}};
    return {
        id, name, kind, PieceOf(description, 0, 0), PieceOf(description, 1, 1), PieceOf(description, 2, -1)};
}

QString ChangeRefusal(const BackupChange& change) {
    BackupDraft draft; // what is not changed stands for itself
    draft.name = u"N"_s;
    draft.sources = change.sources.value_or(QStringList(u"S"_s));
    if (draft.sources == QStringList(u"@"_s)) // folders do not become file types
        draft.sources.append(u"@"_s);
    draft.target = change.targets.value_or(QStringList(u"/T"_s)).join(u'\n');
    draft.exclusions = change.exclusions.value_or(QStringList());
    draft.filter.types = change.types.value_or(QString());
    draft.filter.excludedTypes = change.excludedTypes.value_or(QString());
    draft.filter.excludedFiles = change.excludedFiles.value_or(QString());
    draft.retention.fullEvery = change.fullEvery.value_or(draft.retention.fullEvery);
    draft.retention.keep = change.keep.value_or(draft.retention.keep);
    return DraftRefusal(draft);
}

QByteArray ChangeRecord(const KnownBackup& known, const BackupChange& change) {
    const QByteArray id = known.id.toUtf8() + '\t';
    if (known.kind == BackupKind::Application) {
        auto fields = FieldsOf(DraftOf<ApplicationDraft>(known, change));
        LeaveUnknown(fields, known, change, ApplicationField::Keys);
        return id + RecordOf(fields);
    }
    auto draft = DraftOf<BackupDraft>(known, change);
    draft.flavour = known.kind == BackupKind::Mirrored ? BackupFlavour::Mirrored : BackupFlavour::Snapshot;
    auto fields = FieldsOf(draft);
    LeaveUnknown(fields, known, change, BackupField::Sources);
    fields[static_cast<std::size_t>(BackupField::Filter)] = FilterField(change);
    return id + RecordOf(fields);
}
