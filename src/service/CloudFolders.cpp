#include "service/CloudFolders.h"

#include "service/RequestText.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

struct Folders {
    Q_DECLARE_TR_FUNCTIONS(CloudFolders)
};

constexpr int NotFound = 404;

/// How many different characters of the kinds that the password uses there are.
int KindsOf(const QString& password) {
    struct Kind {
        bool (*has)(QChar);
        int count;
    };
    constexpr Kind kinds[] = {
        {[](QChar c) { return c.isDigit(); }, 10},
        {[](QChar c) { return c.isLower(); }, 26},
        {[](QChar c) { return c.isUpper(); }, 26},
        {[](QChar c) { return !c.isLetterOrNumber(); }, 32},
    };
    int count = 0;
    for (const Kind& kind : kinds)
        count += std::any_of(password.begin(), password.end(), kind.has) ? kind.count : 0;
    return std::max(count, 2);
}

} // namespace

ListChange AddFolder(const ServiceClient& service, const ListSetting& list, const QString& path,
                     std::stop_token stop) {
    const auto add = [path](QStringList& entries) {
        entries += path;
        return QString();
    };
    return ChangeList(service, list, add, std::move(stop));
}

std::vector<ListedFolder> ListedFolders(const QStringList& paths) {
    std::vector<ListedFolder> folders;
    folders.reserve(std::size_t(paths.size()));
    QHash<QString, int> seen;
    for (const QString& path : paths)
        folders.push_back({path, seen[path]++});
    return folders;
}

ListChange RemoveFolders(const ServiceClient& service, const ListSetting& list,
                         const std::vector<ListedFolder>& folders, std::stop_token stop) {
    const auto remove = [&folders](QStringList& entries) {
        QStringList kept;
        for (const ListedFolder& each : ListedFolders(entries))
            if (std::find(folders.begin(), folders.end(), each) == folders.end())
                kept += each.path;
        if (kept.size() == entries.size())
            return Folders::tr("The list does not hold \"%1\".").arg(folders.front().path);
        entries = kept;
        return QString();
    };
    return ChangeList(service, list, remove, std::move(stop));
}

PasswordState PasswordStateOf(const ServiceAnswer& answer) {
    if (answer.outcome == ServiceOutcome::OtherStatus && answer.status == NotFound)
        return PasswordState::Missing;
    if (!answer || !answer.length)
        return PasswordState::NotRead;
    return SettingText(answer.body).isEmpty() ? PasswordState::Missing : PasswordState::Set;
}

PasswordState ReadPasswordState(const ServiceClient& service, std::stop_token stop) {
    return PasswordStateOf(service.GetSetting(QString::fromLatin1(EncryptionPassword), std::move(stop)));
}

QString PasswordRefusal(const QString& password) {
    if (const QString refusal = QueryRefusal(password); !refusal.isEmpty())
        return Folders::tr("The password cannot be used. %1").arg(refusal);
    return LengthRefusal(QString::fromLatin1(EncryptionPassword), password);
}

PasswordChange StorePassword(const ServiceClient& service, const QString& password, OldPassword old,
                             std::stop_token stop) {
    if (const QString refusal = PasswordRefusal(password); !refusal.isEmpty())
        return {.failure = refusal};
    const PasswordState before = ReadPasswordState(service, stop);
    if (before == PasswordState::NotRead)
        return {.failure = Folders::tr("The service does not tell whether there is an encryption password "
                                       "already, so none was set.")};
    if (before == PasswordState::Set && old == OldPassword::None)
        return {.wasSet = true,
                .failure = Folders::tr("An encryption password has been set elsewhere meanwhile.")};
    const TextSetting setting{QString::fromLatin1(EncryptionPassword), ServiceClient::ValueType::String, {}};
    const bool written(WriteSetting(service, setting, password, stop));
    switch (CheckSecret(service, setting, password, stop)) {
    case KeptSecret::AsTyped:
        return {.stored = true};
    case KeptSecret::Otherwise:
        return {.failure = written ? Folders::tr("The password was not stored as typed.")
                                   : Folders::tr("The service did not take the password.")};
    case KeptSecret::NotTold:
        break;
    }
    return {.failure = Folders::tr("The password was sent, but the service did not tell what it keeps.")};
}

PasswordStrength StrengthOf(const QString& password) {
    constexpr double FairBits = 45;
    constexpr double StrongBits = 70;
    if (password.isEmpty())
        return PasswordStrength::Empty;
    // Characters that come again and again add little.
    const QSet<QChar> different(password.begin(), password.end());
    const qsizetype telling = std::min(password.size(), 2 * different.size());
    const double bits = double(telling) * std::log2(KindsOf(password));
    return bits < FairBits     ? PasswordStrength::Weak
           : bits < StrongBits ? PasswordStrength::Fair
                               : PasswordStrength::Strong;
}
