#include "service/MountDocuments.h"

#include "service/RequestText.h"
#include "zep/Text.h"
#include "zep/Xml.h"

#include <QCoreApplication>
#include <QUuid>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Mount)
};

constexpr std::uintmax_t LongestFile = std::uintmax_t{1} << 20; ///< octets

bool IsTrue(const QString& text) {
    return text.compare("TRUE"_L1, Qt::CaseInsensitive) == 0;
}

QString Attribute(const XmlNode& node, const char* name) {
    return node.Attribute(QString::fromLatin1(name)).value_or(QString());
}

LoginField FieldOf(const XmlNode& node) {
    return {Attribute(node, "Name"),
            Attribute(node, "FieldId"),
            Attribute(node, "Value"),
            Attribute(node, "BeginWith"),
            IsTrue(Attribute(node, "Encrypted")),
            IsTrue(Attribute(node, "Hidden")),
            IsTrue(Attribute(node, "EmailFormat"))};
}

/// None without a name to choose it by, or an identifier to mount it by.
std::optional<StorageProvider> ProviderOf(const XmlNode& node) {
    StorageProvider provider{Attribute(node, "DisplayName"), Attribute(node, "SPID"), {}, {}};
    if (provider.displayName.isEmpty() || provider.spId.isEmpty())
        return {};
    bool hasTemplate = false;
    for (XmlNode child = node.FirstChild(); child; child = child.NextSibling()) {
        const QString name = child.Name();
        if (name == "SafeCardTemplate"_L1) {
            for (XmlNode field = child.FirstChild(); field && !hasTemplate; field = field.NextSibling())
                provider.fields.push_back(FieldOf(field));
            hasTemplate = true;
        } else if (name != "SPID"_L1) {
            provider.nodeXml += child.Xml();
        }
    }
    return provider;
}

QString NewIdentifier() {
    return QUuid::createUuid().toString(QUuid::WithBraces).toUpper();
}

QString FieldXml(const LoginField& field, const QString& value) {
    const QString data = QString::fromLatin1(ZEPBase64Encode(ZEPUnicodeToUTF8(value)));
    return u"<Field><FieldName>"_s + field.name + u"</FieldName><FieldData>"_s + data +
           u"</FieldData><FieldId>"_s + field.id + u"</FieldId><Encrypted>"_s +
           (field.encrypted ? u"True"_s : u"False"_s) + u"</Encrypted></Field>"_s;
}

} // namespace

std::optional<std::vector<StorageProvider>> ParseProviders(QByteArrayView answer) {
    const auto document = XmlDocument::FromText(ZEPUTF8ToUnicode(answer));
    const XmlNode list = document ? document->NodeByPath(u"VirtualStorageProviders"_s) : XmlNode();
    if (!list)
        return {};
    std::vector<StorageProvider> providers;
    for (XmlNode node = list.FirstChild(); node; node = node.NextSibling())
        if (auto provider = ProviderOf(node))
            providers.push_back(std::move(*provider));
    return providers;
}

bool IsProviderFileName(const QString& fileName) {
    return fileName.contains(".brenviasp"_L1, Qt::CaseInsensitive);
}

ProviderFile ReadProviderFile(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return {{}, Words::tr("There is no such file.")};
    if (std::filesystem::file_size(file, error) > LongestFile || error)
        return {{}, Words::tr("The file is too long to be a provider description.")};
    XmlFailure failure;
    const auto document = XmlDocument::Load(file, &failure);
    if (!document)
        return {{}, Words::tr("Line %1: %2").arg(failure.line).arg(failure.reason)};
    const XmlNode node = document->NodeByPath(u"VirtualStorage"_s);
    const auto provider = node ? ProviderOf(node) : std::nullopt;
    if (!provider)
        return {{}, Words::tr("The file names no storage provider and its identifier.")};
    return {provider, {}};
}

QStringList InitialValues(const StorageProvider& provider) {
    QStringList values;
    values.reserve(qsizetype(provider.fields.size()));
    for (const LoginField& field : provider.fields)
        values.append(field.value);
    return values;
}

std::optional<FieldRefusal> CheckLogin(const std::vector<LoginField>& fields, const QStringList& values) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const LoginField& field = fields[i];
        const QString value = values.value(qsizetype(i));
        if (value.isEmpty() && field.hidden)
            continue;
        if (value.isEmpty())
            return FieldRefusal{i, Words::tr("One or More Fields Is Empty.")};
        if (field.emailFormat && !value.contains(u'@'))
            return FieldRefusal{i, Words::tr("Email format required.")};
        if (!value.startsWith(field.beginWith))
            return FieldRefusal{i, Words::tr("Field needs to begin with %1").arg(field.beginWith)};
    }
    return {};
}

std::optional<std::size_t> FieldToLookAt(const std::vector<LoginField>& fields) {
    const auto find = [&fields](const auto& is) {
        const auto found = std::find_if(fields.begin(), fields.end(), is);
        return found == fields.end() ? std::nullopt
                                     : std::optional(static_cast<std::size_t>(found - fields.begin()));
    };
    const auto secret = find([](const LoginField& field) { return !field.hidden && field.encrypted; });
    return secret ? secret : find([](const LoginField& field) { return !field.hidden; });
}

LoginCard MakeCard(const QString& vdirName, const std::vector<LoginField>& fields, const QStringList& values,
                   const LoginCard& before) {
    if (!before.id.isEmpty() && CardDocument(vdirName, before.id, fields, values) == before.document)
        return before;
    const QString id = NewIdentifier();
    return {id, CardDocument(vdirName, id, fields, values)};
}

QString CardDocument(const QString& vdirName, const QString& cardId, const std::vector<LoginField>& fields,
                     const QStringList& values) {
    QString document =
        u"<SafeCard><Name>Login Info - "_s + vdirName + u"</Name><Id>"_s + cardId + u"</Id><Fields>"_s;
    for (std::size_t i = 0; i < fields.size(); ++i)
        document += FieldXml(fields[i], values.value(qsizetype(i)));
    // The service takes the document without the closing tag of its root, and with no other one.
    return document + u"</Fields>"_s;
}

QString VDirNode(const StorageProvider& provider, const QString& vdirName, const QString& cardId,
                 const QDateTime& now) {
    const QDate day = now.date();
    const QTime time = now.time();
    const QString mounted = QString::asprintf("%d-%d-%d %d:%d:%d", day.year(), day.month(), day.day(),
                                              time.hour(), time.minute(), time.second());
    return u"<VDir><SafeCardId>"_s + cardId + u"</SafeCardId><Display.Name>"_s + vdirName +
           u"</Display.Name><SPID>"_s + provider.spId + u"</SPID><HostId></HostId><MountTime>"_s + mounted +
           u"</MountTime>"_s + provider.nodeXml + u"</VDir>"_s;
}

QString AddNodeDocument(const QString& vdirNode) {
    return u"<ZEPProfileReq><NodeContainer>Resources/VDirs</NodeContainer><NodeXML>"_s +
           ZEPUrlEncodeUnicode(vdirNode) + u"</NodeXML></ZEPProfileReq>"_s;
}

QStringList MountQuestions(const StorageProvider& provider, const QString& vdirName) {
    QStringList questions{
        DocumentQuestion(Words::tr("The virtual directory's name"), vdirName),
        DocumentQuestion(Words::tr("The identifier of \"%1\"").arg(provider.displayName), provider.spId)};
    for (const LoginField& field : provider.fields) {
        questions.append(DocumentQuestion(Words::tr("The field's name \"%1\"").arg(field.name), field.name));
        questions.append(
            DocumentQuestion(Words::tr("The identifier of the field \"%1\"").arg(field.name), field.id));
    }
    questions.removeAll(QString());
    return questions;
}
