#include "plan/RestoreDraft.h"

#include "plan/DraftRefusal.h"
#include "plan/FolderSelection.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString Text(const char* words) {
    return QCoreApplication::translate("RestoreDraft", words);
}

bool IsSeparator(QChar letter) {
    return letter == u'/' || letter == u'\\';
}

/// Of this system or another one: the service is told what was written.
bool IsAbsolute(const QString& path) {
    const bool drive = path.size() > 2 && path[0].isLetter() && path[1] == u':' && IsSeparator(path[2]);
    return drive || (!path.isEmpty() && IsSeparator(path[0]));
}

/// The place behind the last separator.
qsizetype LastPartOf(const QString& path) {
    return std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1;
}

QString WithoutEnd(QString path) {
    while (path.size() > 1 && IsSeparator(path.back()))
        path.chop(1);
    return path;
}

QString InManner(const QString& folder, QString path) {
    return folder.contains(u'\\') ? path.replace(u'/', u'\\') : path;
}

} // namespace

QString RestorePolicyText(RestorePolicy policy) {
    static constexpr const char* texts[RestorePolicies] = {
        QT_TRANSLATE_NOOP("RestoreDraft", "Always Overwrite Existing File"),
        QT_TRANSLATE_NOOP("RestoreDraft", "Keep Newer File"),
        QT_TRANSLATE_NOOP("RestoreDraft", "Rename if Target File Exists"),
        QT_TRANSLATE_NOOP("RestoreDraft", "Skip if Target File Exists"),
    };
    return Text(texts[static_cast<std::size_t>(policy)]);
}

QString RestoreName(const QStringList& components, const QString& storage) {
    return u"Restore ["_s + components.join(u", "_s) + u"] From ["_s + storage + u']';
}

QString RestoreRefusal(const RestoreDraft& draft) {
    if (draft.components.isEmpty())
        return Text(QT_TRANSLATE_NOOP("RestoreDraft", "Please select at least one component to restore!"));
    if (QString refusal = TaskNameRefusal(draft.name); !refusal.isEmpty())
        return refusal;
    if (draft.elsewhere && draft.location.isEmpty())
        return Text(QT_TRANSLATE_NOOP(
            "RestoreDraft", "You chose to restore to another location, but the location is empty."));
    if (draft.elsewhere && !IsAbsolute(draft.location))
        return Text(QT_TRANSLATE_NOOP(
            "RestoreDraft",
            "The location has to be a whole path, as in \"/home/me/restored\" or \"D:\\Restored\"."));
    QStringList texts{draft.snapshot};
    if (draft.elsewhere)
        texts.append(draft.location);
    for (const QString& text : texts + draft.components + draft.exclusions)
        if (QString refusal = EntryRefusal(text); !refusal.isEmpty())
            return refusal;
    return {};
}

std::array<QString, 7> FieldsOf(const RestoreDraft& draft) {
    const auto orStar = [](const QString& text) { return text.isEmpty() ? u"*"_s : text; };
    QString name = draft.name;
    name.replace(u'\t', u' ').replace(u'\n', u' ');
    return {name,
            draft.snapshot,
            draft.components.join(u'\n'),
            orStar(draft.exclusions.join(u'\n')),
            QString::number(static_cast<int>(draft.policy)),
            draft.elsewhere ? u"1"_s : u"0"_s,
            orStar(draft.location)};
}

QByteArray RecordOf(const std::array<QString, 7>& fields) {
    QByteArray record;
    for (const QString& field : fields)
        record += field.toUtf8() + '\t';
    return record;
}

NewTask TaskOf(const RestoreDraft& draft) {
    const auto fields = FieldsOf(draft);
    return {u"/schedule/restoreapp"_s, RecordOf(fields), fields[std::size_t(RestoreField::Name)]};
}

std::optional<QString> RestoredTo(const RestoreDraft& draft, const QStringList& sources,
                                  const QString& path) {
    if (draft.elsewhere && draft.location.isEmpty())
        return {};
    if (draft.elsewhere) {
        const QString folder = WithoutEnd(draft.location);
        const QString separator = IsSeparator(folder.back())       ? QString()
                                  : draft.location.contains(u'\\') ? u"\\"_s
                                                                   : u"/"_s;
        return folder + separator + InManner(draft.location, path);
    }
    const QString first = path.section(u'/', 0, 0);
    for (const QString& written : sources) {
        const QString source = WithoutEnd(written);
        const qsizetype last = LastPartOf(source);
        if (last > 0 && source.sliced(last).compare(first, Qt::CaseInsensitive) == 0)
            return source.first(last) + InManner(source, path);
    }
    return {};
}

bool IsInSource(const QString& location, const QStringList& sources) {
    return std::any_of(sources.begin(), sources.end(), [&location](const QString& source) {
        return source != "@"_L1 && IsAtOrBelow(location, source);
    });
}
