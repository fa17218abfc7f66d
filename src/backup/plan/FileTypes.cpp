#include "plan/FileTypes.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(FileTypes)
};

struct Category {
    const char* taskPart;
    const char* name;
    const char* types;
};

// In the order of FileCategory. The parts of the proposed name are no sentence that could be translated
// alone.
constexpr Category Categories[] = {
    {"All My Files", QT_TRANSLATE_NOOP("FileTypes", "All Files"), ""},
    {"All My Pictures", QT_TRANSLATE_NOOP("FileTypes", "Pictures"),
     ".bmp .gif .jpg .odg .png .psd .tif .wmf"},
    {"All My Music", QT_TRANSLATE_NOOP("FileTypes", "Music"),
     ".aif .aifc .au .m3u .m4a .m4p .mid .midi .mp3 .mpa .ra .ram .wav .wma"},
    {"All My Videos", QT_TRANSLATE_NOOP("FileTypes", "Videos"),
     ".3g2 .3gp .asf .avi .divx .flv .m2v .m4v .mkv .mov .mp4 .mpg .ogv .wmv"},
    {"All My Documents", QT_TRANSLATE_NOOP("FileTypes", "Documents"),
     ".doc .docx .mpp .odf .odp .ods .odt .pdf .pps .ppsx .ppt .pptx .rtf .txt .vsd .xls .xlsx .xml"},
};

const Category& Of(FileCategory category) {
    return Categories[static_cast<std::size_t>(category)];
}

/// Where the file's name begins. A path from the root takes a backslash for a letter like any other.
qsizetype NameAt(QStringView path) {
    const bool fromRoot = path.startsWith(u'/');
    const auto separates = [fromRoot](QChar letter) {
        return letter == u'/' || (letter == u'\\' && !fromRoot);
    };
    return std::find_if(path.rbegin(), path.rend(), separates).base() - path.begin();
}

} // namespace

QStringList FileTypesOf(FileCategory category) {
    return SplitFileTypes(QLatin1String(Of(category).types));
}

QString FileCategoryName(FileCategory category) {
    return Words::tr(Of(category).name);
}

QString FileTypeTaskName(FileCategory category, const QString& host, const QDate& today) {
    return u"Backup %1 On %2 [%3]"_s.arg(QLatin1String(Of(category).taskPart), host,
                                         today.toString(u"yyyy-MM-dd"_s));
}

QStringList SplitFileTypes(const QString& text) {
    QStringList types;
    for (const QString& type : QString(text).replace(u',', u' ').split(u' ', Qt::SkipEmptyParts))
        if (!types.contains(type, Qt::CaseInsensitive))
            types.append(type);
    return types;
}

QString JoinFileTypes(const QStringList& types) {
    return types.join(u", "_s);
}

QStringList IndexedForms(const QString& type) {
    const QString small = type.toLower();
    const QString bare = small.startsWith(u'.') ? small.mid(1) : small;
    const QString dotted = u'.' + bare;
    return bare.isEmpty() ? QStringList() : QStringList{bare, dotted};
}

QStringView FolderOfFile(QStringView path) {
    const qsizetype at = NameAt(path);
    const bool isRoot = at == 1 || (at == 3 && path[1] == u':');
    return path.first(at - (at > 0 && !isRoot ? 1 : 0));
}

QStringView NameOfFile(QStringView path) {
    return path.sliced(NameAt(path));
}
