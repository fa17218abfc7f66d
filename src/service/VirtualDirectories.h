#pragma once

#include "service/ServiceClient.h"
#include "service/Setting.h"

#include <QStringList>

/// How a virtual directory stands, of the codes that the list tells.
enum class VDirState : int { Pending = 1, Failed = 2, Mounted = 3 };

/// What a state means to people: to cards, summaries and the command line alike.
struct VDirStateMeaning {
    VDirState state;
    const char* text; ///< English
    const char* icon; ///< name of its drawing
};

/// The state of a record's status; a code that is not known is that of one under way.
const VDirStateMeaning& MeaningOfStatus(const QString& status);
/// In the user's language.
QString VDirStatusText(const QString& status);

/// Said when the list was not answered where it is needed.
QString NoVdirListText();

/// The list as its page asks for it: a number that grows keeps caches from answering.
ServiceAnswer RequestVdirListAs(const ServiceClient& service, int number, std::stop_token stop = {});

/// The record of this name, ignoring case; null for none.
const VDirRecord* FindVDir(const std::vector<VDirRecord>& records, const QString& name);

/// Why a virtual directory cannot have this name beside the existing ones; empty: it can.
QString VDirNameRefusal(const QString& name, const std::vector<VDirRecord>& existing);

/// The document that dismounts a directory or removes one that was half mounted. The name goes in as it
/// stands: ask DocumentQuestion about it before.
QString RemoveNodeDocument(const QString& name);
ServiceAnswer DismountVDir(const ServiceClient& service, const QString& name, std::stop_token stop = {});

/// Why the directory cannot be told to log in; empty: it can.
QString ReloginRefusal(const QString& name);
ServiceAnswer ForceRelogin(const ServiceClient& service, const QString& name, std::stop_token stop = {});

/// Why the directory cannot get the other name, among the others that there are; empty: it can.
QString RenameRefusal(const QString& name, const QString& newName, std::vector<VDirRecord> existing);
ServiceAnswer RenameVDir(const ServiceClient& service, const QString& name, const QString& newName,
                         std::stop_token stop = {});

/// The settings that name folders of a virtual directory, and what they say of one.
struct VDirUses {
    QStringList sentences; ///< one for each kind of folder that uses it
    bool known = true;     ///< false: not all of the settings could be read
};
VDirUses ReadVDirUses(const ServiceClient& service, const QString& name, std::stop_token stop = {});

/// Whether files of a directory are sent in pieces, and of how many MB.
struct ChunkSettings {
    static constexpr int DefaultSize = 20;

    bool enabled = false;
    int size = DefaultSize;
    bool known = false; ///< both were read, or are not set
};
TextSetting ChunkSetting(const QString& name);
TextSetting ChunkSizeSetting(const QString& name);
/// The size of a text: the usual one for none, for 0 and for what is no number.
int ChunkSize(const QString& text);
ChunkSettings ReadChunkSettings(const ServiceClient& service, const QString& name, std::stop_token stop = {});
/// In small letters, as the service has had them from the manager of virtual directories ever since.
ServiceAnswer WriteChunkEnabled(const ServiceClient& service, const QString& name, bool enabled,
                                std::stop_token stop = {});
ServiceAnswer WriteChunkSize(const ServiceClient& service, const QString& name, int size,
                             std::stop_token stop = {});
