#include "stores/CauseLog.h"

#include "zep/Text.h"
#include "zep/TracePrintf.h"

#include <algorithm>
#include <map>
#include <mutex>

using namespace Qt::Literals::StringLiterals;

namespace {

using Causes = std::map<QString, QString>; ///< of the steps that fail, by their names

enum class Change { None, Begun, Over };

Change Note(const std::filesystem::path& file, const QString& step, const QString& cause) {
    static std::mutex mutex;
    static std::map<std::filesystem::path, Causes> files;
    const std::lock_guard lock(mutex);
    if (cause.isEmpty()) {
        const auto known = files.find(file);
        if (known == files.end() || known->second.erase(step) == 0 || !known->second.empty())
            return Change::None;
        files.erase(known);
        return Change::Over;
    }
    Causes& causes = files[file];
    const bool known = std::any_of(causes.begin(), causes.end(),
                                   [&cause](const auto& failing) { return failing.second == cause; });
    causes.insert_or_assign(step, cause);
    return known ? Change::None : Change::Begun;
}

/// A database that is not there yet, or that somebody writes, is no fault.
TraceLevel LevelOf(ReadOutcome outcome) {
    const bool passes =
        outcome == ReadOutcome::Missing || outcome == ReadOutcome::Busy || outcome == ReadOutcome::HotJournal;
    return passes ? TraceLevel::Info : TraceLevel::Error;
}

} // namespace

void NoteStep(const std::filesystem::path& file, const QString& step, const ReadResult& result,
              const QString& words) {
    if (result.outcome == ReadOutcome::Stopped)
        return;
    const QString cause = words.isEmpty() && !result ? u"[Database]"_s + result.Sentence() : words;
    const Change change = Note(file, step, cause);
    if (change == Change::Begun)
        TracePrintf(LevelOf(result.outcome), cause);
    else if (change == Change::Over)
        TracePrintf(TraceLevel::Info, u"[Database]The database is readable again: "_s + FromPath(file));
}
