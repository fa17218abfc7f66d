// Labels: threads
#include "plan/BackupFigures.h"
#include "plan/FolderSelection.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

/// Files of a known size each, given as "path:octets path:octets".
struct Files {
    explicit Files(const QString& files) {
        for (const QString& file : files.split(u' ', Qt::SkipEmptyParts)) {
            const fs::path path = dir.filePath(file.section(u':', 0, 0)).toStdString();
            fs::create_directories(path.parent_path());
            std::ofstream(path) << std::string(file.section(u':', 1).toUInt(), 'x');
        }
    }
    QStringList Paths(const QString& below) const {
        QStringList paths;
        for (const QString& path : below.split(u' ', Qt::SkipEmptyParts))
            paths.append(dir.filePath(path));
        return paths;
    }
    BackupFigures Counted(const BackupDraft& draft) const {
        FiguresNote note;
        CountBackup(draft, note, {});
        return note.Read();
    }

    QTemporaryDir dir;
};

QString Short(const FileTotals& totals) {
    return u"%1/%2"_s.arg(totals.files).arg(totals.bytes);
}

} // namespace

class BackupFiguresTest : public QObject {
    Q_OBJECT

private slots:
    void matchesByTheRules_data() {
        // types; excluded types; excluded files; a name; what leaves it out: Types, ExcludedTypes,
        // ExcludedFiles
        const Columns<QString, QString, QString, QString, QString> row("types", "no types", "no files",
                                                                       "name", "rules");
        row("all", "", "", "", "a.bin", "");
        row("a type", ".txt, .html", "", "", "A.HTML", "");
        row("split at blanks and commas", ".TXT,.html  .x,", "", "", "a.x", "");
        row("another", ".txt, .html", "", "", "a.htm", "T");
        row("no dot", ".txt", "", "", "txt", "T");
        row("a dot within", ".tar.gz", "", "", "a.b.tar.gz", "");
        row("only a dot within", ".tar", "", "", "a.tar.gz", "T");
        row("not a mere ending", ".gz", "", "", "agz", "T");
        row("an entry without dot", "txt", "", "", "a.txt", "T");
        row("both", ".tmp", ".tmp", "", "x.tmp", "E");
        row("a star is none", "*", "*", "*", "x.tmp", "");
        row("a file", "", "", "thumbs.db;desktop.ini;", "Thumbs.DB", "F");
        row("no file", "", "", "thumbs.db;desktop.ini;", "athumbs.db", "");
        row("names hold blanks and commas", "", "", "my, file.txt; b", "My, File.txt", "F");
        row("several rules", ".txt", ".db", "thumbs.db", "thumbs.db", "TEF");
        row("letters of others", ".\xC3\xA4\xC3\xB6", "", "", "x.\xC3\x84\xC3\x96", "");
    }

    void matchesByTheRules() {
        const auto [types, noTypes, noFiles, name] = Fetched<QString, QString, QString, QString>();
        for (const bool odd : {false, true}) {
            const BackupMatcher matcher({types, noTypes, noFiles, odd, odd}, {});
            const BackupRules rules = matcher.RulesAgainst(name, true, true);
            QString letters;
            for (std::size_t i = 0; i < 3; ++i)
                if (rules[i])
                    letters += u"TEF"_s[qsizetype(i)];
            QTEST(letters, "rules");
            QCOMPARE(rules[std::size_t(BackupRule::System)], odd);
            QCOMPARE(rules[std::size_t(BackupRule::Hidden)], odd);
        }
    }

    void knowsWhatStandsBelow() {
        const BackupMatcher matcher({}, {u"/a/b"_s, u"/c/"_s, u"/d/file.txt"_s});
        for (const QString& path :
             {u"/a/b"_s, u"/a/b/"_s, u"/a/b/c/d"_s, u"/c"_s, u"/c/x"_s, u"/d/file.txt"_s}) {
            QVERIFY2(matcher.IsExcluded(path), qPrintable(path));
            QVERIFY(IsAtOrBelow(path, u"/"));
        }
        for (const QString& path : {u"/a"_s, u"/a/bc"_s, u"/"_s, u""_s, u"/d"_s, u"a/b"_s})
            QVERIFY2(!matcher.IsExcluded(path), qPrintable(path));
        QVERIFY(BackupMatcher({}, {u"/"_s}).IsExcluded(u"/any/thing"_s));
        QVERIFY(!BackupMatcher({}, {u"*"_s}).IsExcluded(u"/any"_s));
        QCOMPARE(SelectionName({u"/home/x/Documents"_s, u"/"_s, u"/home/Photos 2/"_s}),
                 u"Documents, /, Photos 2"_s);
    }

    void takesOnceWhatIsChosenTwice_data() {
        // chosen folders, each "source -left out -left out", separated by "|"
        const Columns<QString, QString, QString, QString> row("chosen", "sources", "exclusions", "clash");
        row("/a|/b -/b/x", "/a /b", "/b/x", "");
        row("/a|/a/b", "/a", "", "");
        row("/a/b|/a", "/a", "", "");
        row("/a|/a", "/a", "", "");
        row("/a|/ab", "/a /ab", "", "");
        row("/a -/a/b|/a/b", "/a", "/a/b", "/a/b");
        row("/a -/a/b|/a/b/c", "/a", "/a/b", "/a/b");
        row("/a|/a/b -/a/b/c", "/a", "/a/b/c", "/a/b/c");
        row("/a -/a/b/c|/a/b -/a/b/c", "/a", "/a/b/c", "");
    }

    void takesOnceWhatIsChosenTwice() {
        const auto [text] = Fetched<QString>();
        std::vector<ChosenFolder> chosen;
        for (const QString& folder : text.split(u'|')) {
            const QStringList parts = folder.split(u" -"_s);
            chosen.push_back({parts.first(), parts.mid(1)});
        }
        const FolderSelection selection = SelectionOf(chosen);
        QTEST(selection.sources.join(u' '), "sources");
        QTEST(selection.exclusions.join(u' '), "exclusions");
        QTEST(selection.clash, "clash");
    }

    void counts() {
        if (QSysInfo::productType() == u"windows")
            QSKIP("links and hidden files are made in another way there");
        const Files files(
            u"s/a.txt:10 s/b.TMP:20 s/.dot:40 s/sub/c.txt:80 s/sub/thumbs.db:160 s/out/d.txt:320 "
            u"s/out/deep/e.tmp:640 t/f.txt:1280 u/g:1"_s);
        fs::create_directory_symlink(files.dir.filePath(u"u"_s).toStdString(),
                                     files.dir.filePath(u"s/link"_s).toStdString());
        BackupDraft draft;
        draft.sources = files.Paths(u"s t gone"_s);
        draft.exclusions = files.Paths(u"s/out s/none"_s);
        const BackupFigures figures = files.Counted(draft);
        QVERIFY(figures.isWhole);
        QCOMPARE(Short(figures.found), u"8/2550"_s);
        QCOMPARE(Short(figures.taken), u"3/1370"_s);
        QCOMPARE(Short(figures.LeftOut(BackupRule::ExcludedTypes)), u"2/660"_s);
        QCOMPARE(Short(figures.LeftOut(BackupRule::ExcludedFiles)), u"1/160"_s);
        QCOMPARE(Short(figures.LeftOut(BackupRule::Hidden)), u"1/40"_s);
        QCOMPARE(Short(figures.LeftOut(BackupRule::Exclusions)), u"2/960"_s);
        QCOMPARE(Short(figures.exclusions.at(0).totals), u"2/960"_s);
        QCOMPARE(EffectOf(figures, figures.exclusions.at(1).totals), RuleEffect::Nothing);
        QCOMPARE(EffectOf(figures, figures.LeftOut(BackupRule::System)), RuleEffect::Nothing);
        QCOMPARE(EffectOf(figures, figures.LeftOut(BackupRule::Hidden)), RuleEffect::Some);
        QCOMPARE(figures.missing, files.Paths(u"gone"_s));
        QStringList largest;
        for (const FolderTotals& folder : figures.largest)
            largest.append(LastPart(folder.path) + u':' + Short(folder.totals));
        QCOMPARE(largest.join(u' '), u"t:1/1280 sub:1/80 s:1/10"_s);

        draft.filter.types = u".none"_s;
        const BackupFigures none = files.Counted(draft);
        QCOMPARE(EffectOf(none, none.LeftOut(BackupRule::Types)), RuleEffect::Everything);
        const QString lines = FigureLines(none).join(u'\n');
        QVERIFY2(lines.startsWith(
                     u"0 files, 0 bytes\nOther file types: leaves out 8 files, 2.5 kB: everything\n"_s),
                 qPrintable(lines));
    }

    void readsItsSourceThroughALink() {
        if (QSysInfo::productType() == u"windows")
            QSKIP("links and hidden files are made in another way there");
        const Files files(u"real/a:5 real/b/c:7"_s);
        fs::create_directory_symlink("real", files.dir.filePath(u"link"_s).toStdString());
        fs::create_directory_symlink("..", files.dir.filePath(u"real/b/loop"_s).toStdString());
        BackupDraft draft;
        draft.sources = files.Paths(u"link"_s);
        QCOMPARE(Short(files.Counted(draft).taken), u"2/12"_s);
    }

    void isToldToStop() {
        const Files files(u"a/b:1"_s);
        BackupDraft draft;
        draft.sources = files.Paths(u"a"_s);
        std::stop_source stop;
        stop.request_stop();
        FiguresNote note;
        CountBackup(draft, note, stop.get_token());
        QVERIFY(!note.Read().isWhole);
        QCOMPARE(FiguresText(note.Read()), u"0 files, 0 bytes so far"_s);
        QVERIFY(!EffectOf(note.Read(), {}));
    }

    void saysSizesShortly() {
        const std::pair<qint64, const char*> cases[] = {{0, "0 bytes"},
                                                        {1023, "1,023 bytes"},
                                                        {1024, "1.0 kB"},
                                                        {40'802'189'312, "38 GB"},
                                                        {9'900'000'000, "9.2 GB"}};
        for (const auto& [bytes, text] : cases)
            QCOMPARE(SizeText(bytes), QString::fromUtf8(text));
        QCOMPARE(TotalsText({41'200, 40'802'189'312}), u"41,200 files, 38 GB"_s);
    }
};

BTASK_TEST(BackupFiguresTest);
#include "BackupFiguresTest.moc"
