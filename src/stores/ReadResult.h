#pragma once

#include <QString>

/// How a read of one of the service's databases, or of what it lists, went.
enum class ReadOutcome {
    Done,         ///< all rows were seen, or the callback wanted no more
    Stopped,      ///< the stop token ended it
    Missing,      ///< there is no such file
    Busy,         ///< locked by a writer for longer than we wait
    HotJournal,   ///< a writer died while it wrote; whoever writes next repairs the file
    Damaged,      ///< not a database, or a broken one
    OtherSchema,  ///< a table or column that we read is not there
    BadStatement, ///< what a user put into the statement makes it none
    NoRight,      ///< the system does not let us read or change it; the detail names the missing right
    Refused,      ///< by the service, where that is asked; the detail is the sentence
    Unavailable,  ///< the service's live counters are missing or torn
    Failed        ///< anything else; the detail says what
};

/// Whoever gets one that is not Done keeps on screen what was there before.
struct ReadResult {
    ReadOutcome outcome = ReadOutcome::Done;
    QString detail; ///< file, right or SQLite's own words, for people

    explicit operator bool() const { return outcome == ReadOutcome::Done; }

    /// One sentence for the user; empty when the read is done or was stopped on purpose.
    QString Sentence() const;
};
