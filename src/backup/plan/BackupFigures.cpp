#include "plan/BackupFigures.h"

#include "plan/FolderSelection.h"
#include "platform/AwaitOrLeave.h"
#include "platform/LocalFolders.h"
#include "zep/Text.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <chrono>

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;
using platform::EntryKind;
using platform::FolderOutcome;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds TellPeriod{100};
constexpr std::size_t LargestFolders = 5;
constexpr std::size_t ExclusionsTold = 20;
constexpr int NoExclusion = -1;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(BackupFigures)
};

class Counter {
public:
    Counter(const BackupDraft& draft, FiguresNote& note, const std::stop_token& stop)
        : m_matcher(draft.filter, draft.exclusions), m_note(note), m_stop(stop) {
        m_figures.inForce = m_matcher.RulesInForce();
        for (const QString& exclusion : draft.exclusions)
            m_figures.exclusions.push_back({exclusion, {}});
    }

    void Count(const QStringList& sources) {
        for (const QString& source : sources) {
            m_left.push_back({ToPath(source), m_matcher.ExclusionAt(source)});
            m_isSource = true;
            while (!m_left.empty() && !m_stop.stop_requested())
                CountNext();
        }
        m_figures.isWhole = !m_stop.stop_requested();
        m_note.Tell(m_figures);
    }

private:
    struct Folder {
        fs::path path;
        int exclusion; ///< that it stands at or below
    };

    void CountNext() {
        const Folder folder = std::move(m_left.back());
        m_left.pop_back();
        FileTotals own;
        const FolderOutcome outcome = platform::ReadFolder(folder.path, platform::FolderDetail::Sizes,
                                                           [&](const platform::FolderEntry& entry) {
                                                               if (entry.kind == EntryKind::File)
                                                                   CountFile(entry, folder.exclusion, own);
                                                               else if (entry.kind == EntryKind::Folder)
                                                                   Enter(folder, entry);
                                                               return !m_stop.stop_requested();
                                                           });
        Note(folder, outcome);
        if (own.bytes > 0)
            NoteLargest(folder, own);
        if (Clock::now() - m_told >= TellPeriod) {
            m_note.Tell(m_figures);
            m_told = Clock::now();
        }
    }

    void Enter(const Folder& folder, const platform::FolderEntry& entry) {
        fs::path path = folder.path / entry.name;
        const int exclusion = folder.exclusion == NoExclusion && !m_figures.exclusions.empty()
                                  ? m_matcher.ExclusionAt(FromPath(path))
                                  : folder.exclusion;
        m_left.push_back({std::move(path), exclusion});
    }

    void CountFile(const platform::FolderEntry& entry, int exclusion, FileTotals& own) {
        const auto size = qint64(entry.size);
        BackupRules rules = m_matcher.RulesAgainst(TextOf(entry.name), entry.isSystem, entry.isHidden);
        if (exclusion != NoExclusion) {
            rules[static_cast<std::size_t>(BackupRule::Exclusions)] = true;
            m_figures.exclusions[std::size_t(exclusion)].totals.Add(size);
        }
        m_figures.found.Add(size);
        if (rules.none()) {
            m_figures.taken.Add(size);
            own.Add(size);
            return;
        }
        for (std::size_t rule = 0; rule < BackupRuleCount; ++rule)
            if (rules[rule])
                m_figures.leftOut[rule].Add(size);
    }

    // As either system names files.
    static QString TextOf(const std::string& name) { return QString::fromStdString(name); }
    static QString TextOf(const std::wstring& name) { return QString::fromStdWString(name); }

    void Note(const Folder& folder, FolderOutcome outcome) {
        const bool isSource = std::exchange(m_isSource, false);
        if (outcome == FolderOutcome::Whole || outcome == FolderOutcome::Left)
            return;
        if (isSource && outcome == FolderOutcome::Missing) {
            m_figures.missing.append(FromPath(folder.path));
        } else if (outcome != FolderOutcome::Missing) { // has gone since its own folder was read
            if (m_figures.unread++ == 0)
                m_figures.unreadOne = FromPath(folder.path);
        }
    }

    void NoteLargest(const Folder& folder, const FileTotals& own) {
        auto& largest = m_figures.largest;
        const auto place = std::find_if(largest.begin(), largest.end(), [&own](const FolderTotals& one) {
            return one.totals.bytes < own.bytes;
        });
        if (place == largest.end() && largest.size() >= LargestFolders)
            return;
        largest.insert(place, {FromPath(folder.path), own});
        if (largest.size() > LargestFolders)
            largest.pop_back();
    }

    BackupMatcher m_matcher;
    FiguresNote& m_note;
    const std::stop_token& m_stop;
    BackupFigures m_figures;
    std::vector<Folder> m_left; ///< to be read yet
    bool m_isSource = false;    ///< the next one that is read
    Clock::time_point m_told = Clock::now();
};

} // namespace

void CountBackup(const BackupDraft& draft, FiguresNote& note, const std::stop_token& stop) {
    Counter(draft, note, stop).Count(draft.sources);
}

void AwaitCount(const BackupDraft& draft, const std::shared_ptr<FiguresNote>& note,
                const std::stop_token& stop) {
    platform::AwaitOrLeave(
        [draft, note, stop] {
            CountBackup(draft, *note, stop);
            return true;
        },
        stop);
}

std::optional<RuleEffect> EffectOf(const BackupFigures& figures, const FileTotals& leftOut) {
    if (!figures.isWhole || figures.found.files == 0)
        return {};
    if (leftOut.files == 0)
        return RuleEffect::Nothing;
    return leftOut.files == figures.found.files ? RuleEffect::Everything : RuleEffect::Some;
}

QString SizeText(qint64 bytes) {
    const QLocale english(QLocale::English);
    const auto format = [&](int decimals) {
        return english.formattedDataSize(bytes, decimals, QLocale::DataSizeTraditionalFormat);
    };
    const QString fine = format(1);
    // One decimal says enough of what is below ten.
    return fine.indexOf(u'.') == 1 ? fine : format(0);
}

QString TotalsText(const FileTotals& totals) {
    const QString count = GroupedNumber(totals.files);
    return totals.files == 1 ? Words::tr("1 file, %1").arg(SizeText(totals.bytes))
                             : Words::tr("%1 files, %2").arg(count, SizeText(totals.bytes));
}

QString FiguresText(const BackupFigures& figures) {
    return figures.isWhole ? TotalsText(figures.taken)
                           : Words::tr("%1 so far").arg(TotalsText(figures.taken));
}

QString RuleText(BackupRule rule) {
    switch (rule) {
    case BackupRule::Types:
        return Words::tr("Other file types");
    case BackupRule::ExcludedTypes:
        return Words::tr("Excluded file types");
    case BackupRule::ExcludedFiles:
        return Words::tr("Excluded files");
    case BackupRule::System:
        return Words::tr("System files");
    case BackupRule::Hidden:
        return Words::tr("Hidden files");
    case BackupRule::Exclusions:
        break;
    }
    return Words::tr("Excluded folders");
}

QString LeftOutText(const BackupFigures& figures, const FileTotals& leftOut) {
    const auto effect = EffectOf(figures, leftOut);
    if (effect == RuleEffect::Nothing)
        return Words::tr("leaves out nothing");
    const QString text = Words::tr("leaves out %1").arg(TotalsText(leftOut));
    return effect == RuleEffect::Everything ? Words::tr("%1: everything").arg(text) : text;
}

QString UncertaintyText() {
    return Words::tr("Links are not followed, and files in hidden folders count unless they are hidden "
                     "themselves. How the service sees these is not known.");
}

QStringList FigureLines(const BackupFigures& figures) {
    QStringList lines{FiguresText(figures)};
    for (std::size_t i = 0; i < BackupRuleCount; ++i)
        if (const auto rule = static_cast<BackupRule>(i); figures.IsInForce(rule))
            lines.append(RuleText(rule) + u": "_s + LeftOutText(figures, figures.LeftOut(rule)));
    const std::size_t told = std::min(figures.exclusions.size(), ExclusionsTold);
    for (std::size_t i = 0; i < told; ++i)
        lines.append(figures.exclusions[i].path + u": "_s +
                     LeftOutText(figures, figures.exclusions[i].totals));
    if (told < figures.exclusions.size())
        lines.append(Words::tr("Further excluded folders: %1").arg(figures.exclusions.size() - told));
    for (const FolderTotals& folder : figures.largest)
        lines.append(Words::tr("Large folder: %1 (%2)").arg(folder.path, TotalsText(folder.totals)));
    for (const QString& source : figures.missing)
        lines.append(Words::tr("Not there: %1").arg(source));
    if (figures.unread > 0)
        lines.append(
            Words::tr("Folders that could not be read: %1 (%2)").arg(figures.unread).arg(figures.unreadOne));
    lines.append(UncertaintyText());
    return lines;
}
