#pragma once

#include "plan/BackupDraft.h"

// Why a draft is not sent, in a sentence; empty when it can be. Window and shell say it in the same words. A
// record keeps its fields apart by tabs and its lists by line feeds, and ends at a zero character, so nothing
// that it holds may have one; a name's tabs and line feeds become blanks.

inline constexpr int MostBackups = 999'999; ///< of a retention's numbers

/// What of a text a record does not carry, as in "a tab (U+0009)"; empty when it carries all. Control
/// characters, and what stands for octets that are no Unicode.
QString LostInRecord(const QString& text);

QString TaskNameRefusal(const QString& name);
QString TargetRefusal(const QString& target);
/// Of a folder, a file or a key.
QString EntryRefusal(const QString& entry);
QString RetentionRefusal(const BackupRetention& retention);

/// The first of all that is wrong with it, in the order in which a wizard asks for it.
QString DraftRefusal(const BackupDraft& draft);
QString DraftRefusal(const ApplicationDraft& draft);
