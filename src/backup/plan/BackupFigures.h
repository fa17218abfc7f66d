#pragma once

#include "plan/BackupMatcher.h"

#include <array>
#include <mutex>
#include <stop_token>

/// A number of files, and their octets.
struct FileTotals {
    qint64 files = 0;
    qint64 bytes = 0;

    void Add(qint64 size) {
        ++files;
        bytes += size;
    }
    bool operator==(const FileTotals&) const = default;
};

struct FolderTotals {
    QString path;
    FileTotals totals;

    bool operator==(const FolderTotals&) const = default;
};

/// How much a backup of folders will be, as far as it has been counted.
struct BackupFigures {
    FileTotals found;                                ///< all files of the sources
    FileTotals taken;                                ///< that no rule leaves out
    std::array<FileTotals, BackupRuleCount> leftOut; ///< by each rule alone; a file may meet several
    std::vector<FolderTotals> exclusions;            ///< what each of them leaves out, in their order
    std::vector<FolderTotals> largest; ///< folders by what is taken of their own files, five at most
    QStringList missing;               ///< sources that are not there
    qint64 unread = 0;                 ///< folders that could not be read
    QString unreadOne;                 ///< the first of them
    BackupRules inForce;
    bool isWhole = false; ///< all has been counted

    const FileTotals& LeftOut(BackupRule rule) const { return leftOut[static_cast<std::size_t>(rule)]; }
    bool IsInForce(BackupRule rule) const { return inForce[static_cast<std::size_t>(rule)]; }
};

/// What a rule in force does to the whole.
enum class RuleEffect { Some, Nothing, Everything };
/// None while it is not known: as long as the count goes on, and where there are no files.
std::optional<RuleEffect> EffectOf(const BackupFigures& figures, const FileTotals& leftOut);

/// Where a count notes what it has come to and others read it. Any thread.
class FiguresNote {
public:
    void Tell(BackupFigures figures) {
        const std::lock_guard lock(m_mutex);
        m_figures = std::move(figures);
    }
    BackupFigures Read() const {
        const std::lock_guard lock(m_mutex);
        return m_figures;
    }

private:
    mutable std::mutex m_mutex;
    BackupFigures m_figures;
};

/// Counts what a backup of these folders takes: reads them one by one, follows no link in them, and tells
/// every tenth of a second how far it is, and at its end. It ends soon after it is told to stop, but where a
/// drive does not answer: it is for AwaitOrLeave.
void CountBackup(const BackupDraft& draft, FiguresNote& note, const std::stop_token& stop);

/// The same to its end, or until it is told to stop, whatever the drives do. Meanwhile `note` tells.
void AwaitCount(const BackupDraft& draft, const std::shared_ptr<FiguresNote>& note,
                const std::stop_token& stop);

// In words, for window and shell.

/// "41,200 files, 38 GB", or with " so far" as long as it is not the whole.
QString FiguresText(const BackupFigures& figures);
QString TotalsText(const FileTotals& totals);
QString SizeText(qint64 bytes);
/// The name of a rule, as in "Hidden files".
QString RuleText(BackupRule rule);
/// What a rule, or an exclusion, leaves out; with a word where that is everything or nothing.
QString LeftOutText(const BackupFigures& figures, const FileTotals& leftOut);
/// What of the count the service may see otherwise.
QString UncertaintyText();
/// All of it, line by line.
QStringList FigureLines(const BackupFigures& figures);
