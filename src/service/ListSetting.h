#pragma once

#include "service/Setting.h"

#include <QStringList>

#include <functional>

/// A list that the service keeps in one setting: its entries are lines, and an entry's fields are apart by
/// tabs. The first field is the entry's name.
struct ListSetting {
    const char* name;
    int fields = 1;

    Setting<QString> AsSetting() const { return {name, {}}; }
};

/// Whether the entry has this name, ignoring case.
bool IsNamed(const QString& entry, const QString& name);

/// The entries of a value, without its empty lines.
QStringList EntriesOf(const QString& value);

/// The entries in their order; of a list that is not set there are none, of one that was not read neither.
SettingValue<QStringList> ReadList(const ServiceClient& service, const ListSetting& list,
                                   std::stop_token stop = {});

/// Why an entry cannot be added; empty when it can.
QString EntryRefusal(const ListSetting& list, const QString& entry);

/// How a change of a list went.
struct ListChange {
    bool stored = false;                     ///< the service keeps the list as it was meant to be
    QString failure = {};                    ///< a sentence; empty when stored
    std::optional<QStringList> entries = {}; ///< what the service keeps, as far as that was read
    bool silent = false;                     ///< nothing was changed, because nothing answered
};

/// What is done to the entries: it returns a sentence to give the change up, or nothing.
using ListEdit = std::function<QString(QStringList& entries)>;

/// Reads the list anew, so that what others changed stays, lets `edit` change it, writes it and reads it
/// back. Nothing is written when it cannot be read, when nothing changes, or when it holds what a query
/// cannot carry. `prepare` is called when nothing else is in the way of the writing: with a sentence it
/// gives the change up.
ListChange ChangeList(const ServiceClient& service, const ListSetting& list, const ListEdit& edit,
                      std::stop_token stop = {}, const std::function<QString()>& prepare = {});
