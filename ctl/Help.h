#pragma once

#include "ctl/Command.h"

/// What "--help" shows: all, or the commands that begin with the words or stand at their beginning; empty
/// when none does.
QString HelpText();
QString HelpText(const QStringList& words);

QString NoSuchCommand(const QString& words);

QString VersionText();

/// A script for bash that completes commands, options and the words that these take.
QString BashCompletion();

/// A page for man(1), in its macros.
QString ManPage();
