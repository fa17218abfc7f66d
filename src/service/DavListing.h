#pragma once

#include "service/ServiceClient.h"

/// One child of a listed folder. Its own path is the folder's, "/" and its name.
struct DavEntry {
    QString name;    ///< never empty
    QByteArray href; ///< decoded; UTF-8, unless the service sent something else
    bool isFolder = false;
    QByteArray lastModified; ///< as it came

    bool operator==(const DavEntry&) const = default;
};

/// A folder of the service's tree. Paths are relative to "/resources": the root is the empty one.
struct DavListing {
    QString folderPath;            ///< as it was asked for
    std::vector<DavEntry> entries; ///< in the order of the answer

    bool operator==(const DavListing&) const = default;
};

/// Whether entries that the service marks as hidden are listed.
enum class HiddenEntries { LeaveOut, Show };

/// What an answer tells of the folder's children: without the folder itself, which is known by its name, so a
/// child of that name is missing. What is malformed is left out. Zero octets count as blanks. Time and memory
/// grow with the answer's length alone, whatever it holds.
DavListing ParseMultistatus(QByteArrayView answer, const QString& folderPath,
                            HiddenEntries hidden = HiddenEntries::LeaveOut);

/// The answer that ParseMultistatus reads.
ServiceAnswer RequestDavListing(const ServiceClient& service, const QString& folderPath,
                                std::stop_token stop = {});
/// None when there was no answer, or it broke off: a listing that may lack entries is no listing.
std::optional<DavListing> FetchDavListing(const ServiceClient& service, const QString& folderPath,
                                          std::stop_token stop = {},
                                          HiddenEntries hidden = HiddenEntries::LeaveOut);

/// Why an answer is no listing, in a sentence; empty when it is one.
QString ListingFailure(const ServiceAnswer& answer);

// The caller asks NewFolderRefusal and DeletedPathRefusal (RequestText.h) before, and tells what they say;
// what they refuse is not sent here either.
ServiceAnswer CreateDavFolder(const ServiceClient& service, const QString& parent, const QString& name,
                              std::stop_token stop = {});
ServiceAnswer DeleteDavPath(const ServiceClient& service, const QString& path, std::stop_token stop = {});
