#pragma once

#include <QByteArrayView>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <vector>

class XmlNode;

/// One field of what a storage provider wants to know for a login.
struct LoginField {
    QString name;
    QString id;
    QString value;     ///< stands in it at first
    QString beginWith; ///< what a value has to begin with; empty: anything
    bool encrypted = false;
    bool hidden = false; ///< not asked for: `value` is sent
    bool emailFormat = false;

    bool operator==(const LoginField&) const = default;
};

/// A kind of storage that can be mounted.
struct StorageProvider {
    QString displayName;
    QString spId;
    std::vector<LoginField> fields;
    QString nodeXml; ///< the provider's own elements, which go into the virtual directory's node

    bool operator==(const StorageProvider&) const = default;
};

/// Why a provider description is not taken, or the provider.
struct ProviderFile {
    std::optional<StorageProvider> provider;
    QString failure; ///< a sentence when there is none
};

/// The providers of a GetPopularStorageList answer, in its order; those without a name or an identifier are
/// left out. None when the answer is no such document.
std::optional<std::vector<StorageProvider>> ParseProviders(QByteArrayView answer);

/// Whether a file's name is that of a provider description.
bool IsProviderFileName(const QString& fileName);
/// Reads a provider description; what is no plain file, or too long for one, is not read.
ProviderFile ReadProviderFile(const std::filesystem::path& file);

/// What the fields hold before a person changes them.
QStringList InitialValues(const StorageProvider& provider);

struct FieldRefusal {
    std::size_t field = 0; ///< its place in the template
    QString why;
};
/// The first value, one a field, that cannot be sent. A hidden field may be empty.
std::optional<FieldRefusal> CheckLogin(const std::vector<LoginField>& fields, const QStringList& values);

/// The field to look at after a login was refused: the first one shown that is encrypted, otherwise the first
/// one shown.
std::optional<std::size_t> FieldToLookAt(const std::vector<LoginField>& fields);

/// A login card as it is sent.
struct LoginCard {
    QString id;
    QString document;
};
/// The card for the values, one a field. It keeps the identifier of `before` when nothing else differs from
/// that one, and has a new one otherwise.
LoginCard MakeCard(const QString& vdirName, const std::vector<LoginField>& fields, const QStringList& values,
                   const LoginCard& before = {});
QString CardDocument(const QString& vdirName, const QString& cardId, const std::vector<LoginField>& fields,
                     const QStringList& values);

/// The virtual directory's own element; `now` is local time.
QString VDirNode(const StorageProvider& provider, const QString& vdirName, const QString& cardId,
                 const QDateTime& now);
QString AddNodeDocument(const QString& vdirNode);

/// A question for each value that goes into the documents unescaped and may break them; see DocumentQuestion.
QStringList MountQuestions(const StorageProvider& provider, const QString& vdirName);
