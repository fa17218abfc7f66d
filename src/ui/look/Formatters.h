#pragma once

#include <QString>

/// "%6.3f" of TB, GB, MB or KB. The thresholds are mixed on purpose: exactly 1024 GB and exactly 1024 KB
/// stay in the smaller unit, exactly 1 GB does not.
QString FormatSize(quint64 bytes);

/// "HH:MM:SS", with more digits of hours when needed.
QString FormatDuration(quint32 seconds);

/// A name made by others, for the middle of a text: marks of writing direction in it turn nothing around but
/// itself. Returned as it is when it holds none and no letter that is written from right to left.
QString Isolated(const QString& name);

/// "%s (%s) Remaining".
QString FormatRemaining(const QString& size, const QString& duration);

/// `unit` is 2^10, 2^20 ...: the value in it, "%6.3f".
QString FormatInUnit(quint64 bytes, quint64 unit);
