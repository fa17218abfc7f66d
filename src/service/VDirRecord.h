#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>
#include <vector>

/// One storage account that the service has mounted under a name.
struct VDirRecord {
    QString name; ///< unique, compared without regard to case
    QString safeCardId;
    QString status; ///< a decimal code
    QString spId;   ///< the storage provider
};

/// The records of a GetVdirList answer, in its order; those without a name or a card are left out. None when
/// the answer is no such document.
std::optional<std::vector<VDirRecord>> ParseVdirList(QByteArrayView answer);
