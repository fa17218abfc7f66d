#include "plan/DraftRefusal.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(DraftRefusal)
};

const QString FileTypes = u"@"_s; ///< alone in the sources of a backup of file types

QString NameOf(QChar character) {
    switch (character.unicode()) {
    case u'\t':
        return Words::tr("a tab");
    case u'\n':
        return Words::tr("a line feed");
    case u'\r':
        return Words::tr("a carriage return");
    case u'\0':
        return Words::tr("a zero character");
    case QChar::ReplacementCharacter:
        return Words::tr("what is no Unicode text");
    default:
        return Words::tr("a control character");
    }
}

/// On one line.
QString Shown(QString text) {
    for (QChar& character : text)
        if (character.category() == QChar::Other_Control)
            character = u' ';
    return text;
}

QString LossRefusal(const QString& text) {
    const QString lost = LostInRecord(text);
    if (lost.isEmpty())
        return {};
    return Words::tr("\"%1\" holds %2, which cannot be carried to the service.").arg(Shown(text), lost);
}

/// The first that is not empty.
QString First(std::initializer_list<QString> refusals) {
    const auto* found = std::find_if(refusals.begin(), refusals.end(),
                                     [](const QString& refusal) { return !refusal.isEmpty(); });
    return found == refusals.end() ? QString() : *found;
}

QString EntriesRefusal(const QStringList& entries) {
    for (const QString& entry : entries)
        if (QString refusal = EntryRefusal(entry); !refusal.isEmpty())
            return refusal;
    return {};
}

QString SelectionRefusal(const QStringList& selection) {
    return selection.isEmpty() ? Words::tr("Please select at least one folder to backup!")
                               : EntriesRefusal(selection);
}

QString SourcesRefusal(const BackupDraft& draft) {
    const QStringList& sources = draft.sources;
    if (QString refusal = SelectionRefusal(sources); !refusal.isEmpty())
        return refusal;
    const bool isOfTypes =
        sources == QStringList(FileTypes) && draft.filter == FilterOfTypes(draft.filter.types);
    if (sources.front().startsWith(FileTypes) && !isOfTypes)
        return Words::tr("\"%1\" cannot be the first folder: the service takes the \"@\" for a backup of "
                         "file types.")
            .arg(sources.front());
    return {};
}

QString ExclusionsRefusal(const QStringList& exclusions) {
    if (exclusions.contains(u"*"_s))
        return Words::tr("\"*\" cannot be left out: it says that nothing is.");
    return EntriesRefusal(exclusions);
}

QString FilterRefusal(const BackupFilter& filter) {
    return First(
        {LossRefusal(filter.types), LossRefusal(filter.excludedTypes), LossRefusal(filter.excludedFiles)});
}

} // namespace

QString LostInRecord(const QString& text) {
    const auto* lost = std::find_if(text.begin(), text.end(), [](QChar character) {
        return character.category() == QChar::Other_Control || character == QChar::ReplacementCharacter;
    });
    if (lost != text.end())
        return NameOf(*lost) + u" (U+%1)"_s.arg(QString::number(lost->unicode(), 16).toUpper(), 4, u'0');
    return QStringView(text).isValidUtf16() ? QString() : NameOf(QChar::ReplacementCharacter);
}

QString TaskNameRefusal(const QString& name) {
    if (name.isEmpty())
        return Words::tr("Task Name Can't Be Empty");
    return LossRefusal(QString(name).replace(u'\t', u' ').replace(u'\n', u' '));
}

QString TargetRefusal(const QString& target) {
    const bool isRoot = std::all_of(target.begin(), target.end(), [](QChar c) { return c == u'/'; });
    return isRoot ? Words::tr("Please select the folder to backup to.") : LossRefusal(target);
}

QString EntryRefusal(const QString& entry) {
    return entry.isEmpty() ? Words::tr("A folder without a name can be neither backed up nor left out.")
                           : LossRefusal(entry);
}

QString RetentionRefusal(const BackupRetention& retention) {
    if (retention.fullEvery < 1 || retention.fullEvery > MostBackups)
        return Words::tr("There is a full backup every 1 to %1 backups.").arg(MostBackups);
    if (retention.keep < 0 || retention.keep > MostBackups)
        return Words::tr("At most %1 snapshots are kept, or all of them by 0.").arg(MostBackups);
    return {};
}

QString DraftRefusal(const BackupDraft& draft) {
    return First({SourcesRefusal(draft), ExclusionsRefusal(draft.exclusions), TargetRefusal(draft.target),
                  TaskNameRefusal(draft.name), FilterRefusal(draft.filter),
                  RetentionRefusal(draft.retention)});
}

QString DraftRefusal(const ApplicationDraft& draft) {
    return First({SelectionRefusal(draft.keys), ExclusionsRefusal(draft.exclusions),
                  TargetRefusal(draft.target), TaskNameRefusal(draft.name),
                  RetentionRefusal(draft.retention)});
}
