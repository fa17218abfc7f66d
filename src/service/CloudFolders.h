#pragma once

#include "service/ListSetting.h"

// The folders that the service encrypts, compresses or keeps in step, and the password it encrypts with.

/// Paths as in "/Home/Letters". The same folder may stand in a list twice.
inline constexpr ListSetting EncryptedFolders{"EncFolderList"};
inline constexpr ListSetting CompressedFolders{"CompressFolderList"};
/// A virtual directory and the local folder that is kept in step with it.
inline constexpr ListSetting DropFolders{"DropFolders", 2};

ListChange AddFolder(const ServiceClient& service, const ListSetting& list, const QString& path,
                     std::stop_token stop = {});

/// One of the folders of a list; `among` counts those of the same path before it.
struct ListedFolder {
    QString path;
    int among = 0;

    friend bool operator==(const ListedFolder&, const ListedFolder&) = default;
};

std::vector<ListedFolder> ListedFolders(const QStringList& paths);

/// Those of the folders that are not in the list any more are left out; when none is there, nothing is done.
ListChange RemoveFolders(const ServiceClient& service, const ListSetting& list,
                         const std::vector<ListedFolder>& folders, std::stop_token stop = {});

/// Whether a password is set. It is missing only where the service has said so.
enum class PasswordState { Missing, Set, NotRead };

inline constexpr char EncryptionPassword[] = "EncFolderKey";

/// Of an answer to a request for the setting.
PasswordState PasswordStateOf(const ServiceAnswer& answer);
PasswordState ReadPasswordState(const ServiceClient& service, std::stop_token stop = {});

/// Why the password cannot be sent; empty when it can. Never holds the password.
QString PasswordRefusal(const QString& password);

/// What is known of the password before it is replaced.
enum class OldPassword { None, MayBeReplaced };

struct PasswordChange {
    bool stored = false;
    bool wasSet = false; ///< one is set, which was not to be replaced
    QString failure = {};
};

/// Writes the password unless there is one that is not to be replaced, and reads it back.
PasswordChange StorePassword(const ServiceClient& service, const QString& password, OldPassword old,
                             std::stop_token stop = {});

/// How hard a password is to guess; a rough estimate, only for a hint.
enum class PasswordStrength { Empty, Weak, Fair, Strong };
PasswordStrength StrengthOf(const QString& password);
