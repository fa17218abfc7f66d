#include "service/VirtualDirectories.h"

#include "service/CloudFolders.h"
#include "service/RequestText.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Ok = 200;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(VirtualDirectories)
};

constexpr VDirStateMeaning Meanings[] = {
    {VDirState::Pending, QT_TRANSLATE_NOOP("VirtualDirectories", "Pending"), "pending"},
    {VDirState::Failed, QT_TRANSLATE_NOOP("VirtualDirectories", "Failed"), "failed"},
    {VDirState::Mounted, QT_TRANSLATE_NOOP("VirtualDirectories", "Mounted"), "mounted"},
};

bool IsNameCharacter(QChar c) {
    return c.isLetterOrNumber() || u" .-_#()"_s.contains(c);
}

/// A setting that names folders, and what it says of those that use a directory.
struct FolderUse {
    ListSetting list;
    const char* sentence;
};

constexpr FolderUse Uses[] = {
    {DropFolders, QT_TRANSLATE_NOOP("VirtualDirectories", "Synchronised with it: %1.")},
    {EncryptedFolders, QT_TRANSLATE_NOOP("VirtualDirectories", "Encrypted in it: %1.")},
    {CompressedFolders, QT_TRANSLATE_NOOP("VirtualDirectories", "Compressed in it: %1.")},
};

/// The folders that an entry names of the directory: a sync folder's is the local one behind its name,
/// others' is a path that begins with it.
QString FolderOf(const FolderUse& use, const QString& entry, const QString& name) {
    if (use.list.fields > 1)
        return IsNamed(entry, name) ? entry.section(u'\t', 1) : QString();
    const QString first = entry.section(u'/', 1, 1);
    return entry.startsWith(u'/') && first.compare(name, Qt::CaseInsensitive) == 0 ? entry : QString();
}

} // namespace

const VDirStateMeaning& MeaningOfStatus(const QString& status) {
    const auto* found =
        std::find_if(std::begin(Meanings), std::end(Meanings), [&status](const VDirStateMeaning& meaning) {
            return status == QString::number(static_cast<int>(meaning.state));
        });
    return found == std::end(Meanings) ? Meanings[0] : *found;
}

QString VDirStatusText(const QString& status) {
    return QCoreApplication::translate("VirtualDirectories", MeaningOfStatus(status).text);
}

QString NoVdirListText() {
    return Words::tr("Unable to get virtual directory list, please check the application is still running");
}

ServiceAnswer RequestVdirListAs(const ServiceClient& service, int number, std::stop_token stop) {
    return service.SendRequest(u"/profile/%1?PMCMethod=GetVdirList"_s.arg(number), u"GET"_s, Ok, {},
                               std::move(stop));
}

const VDirRecord* FindVDir(const std::vector<VDirRecord>& records, const QString& name) {
    const auto found = std::find_if(records.begin(), records.end(), [&name](const VDirRecord& record) {
        return record.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == records.end() ? nullptr : &*found;
}

QString VDirNameRefusal(const QString& name, const std::vector<VDirRecord>& existing) {
    if (name.isEmpty())
        return Words::tr("Virtual Directory Name Can Not Be Empty!");
    // A blank is taken too, though the sentence does not name it.
    if (!std::all_of(name.begin(), name.end(), IsNameCharacter))
        return Words::tr("Virtual Directory name can only contain alphanumeric characters or '.', '-', "
                         "'_','(',')' and '#'!");
    if (FindVDir(existing, name))
        return Words::tr("There is a Virtual Directory with the same name!");
    return {};
}

QString RemoveNodeDocument(const QString& name) {
    return u"<ZEPProfileReq><NodeContainer>Resources/VDirs</NodeContainer>"
           "<NodeIDFieldName>Display.Name</NodeIDFieldName><NodeIDFieldValue>"_s +
           name + u"</NodeIDFieldValue></ZEPProfileReq>"_s;
}

ServiceAnswer DismountVDir(const ServiceClient& service, const QString& name, std::stop_token stop) {
    return service.CallProfileMethod(u"RemoveNode"_s, RemoveNodeDocument(name), std::move(stop));
}

QString ReloginRefusal(const QString& name) {
    const QString refusal = QueryRefusal(name);
    return refusal.isEmpty() ? QString() : Words::tr("\"%1\" cannot be logged in. %2").arg(name, refusal);
}

ServiceAnswer ForceRelogin(const ServiceClient& service, const QString& name, std::stop_token stop) {
    return service.SendRequest(u"/profile/?PMCMethod=ForceRelogin&VDirName="_s + name, u"GET"_s, Ok, {},
                               std::move(stop));
}

QString RenameRefusal(const QString& name, const QString& newName, std::vector<VDirRecord> existing) {
    if (QString refusal = ChangedPathRefusal(name); !refusal.isEmpty())
        return refusal;
    std::erase_if(existing, [&name](const VDirRecord& record) {
        return record.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    QString refusal = VDirNameRefusal(newName, existing);
    if (!refusal.isEmpty())
        return refusal;
    return newName == "."_L1 || newName == ".."_L1 ? ChangedPathRefusal(newName) : QueryRefusal(newName);
}

ServiceAnswer RenameVDir(const ServiceClient& service, const QString& name, const QString& newName,
                         std::stop_token stop) {
    // The destination stands in the query; the service looks for it nowhere else.
    return service.SendRequest(u"/resources/"_s + name + u"?Destination=/resources/"_s + newName, u"MOVE"_s,
                               Ok, {}, std::move(stop));
}

VDirUses ReadVDirUses(const ServiceClient& service, const QString& name, std::stop_token stop) {
    VDirUses uses;
    for (const FolderUse& use : Uses) {
        const SettingValue<QStringList> entries = ReadList(service, use.list, stop);
        uses.known = uses.known && entries.WasRead();
        if (!entries.WasRead() && entries.silent)
            break;
        QStringList folders;
        for (const QString& entry : entries.value)
            folders += FolderOf(use, entry, name);
        folders.removeAll(QString());
        if (!folders.isEmpty())
            uses.sentences +=
                QCoreApplication::translate("VirtualDirectories", use.sentence).arg(folders.join(u", "_s));
    }
    return uses;
}

TextSetting ChunkSetting(const QString& name) {
    return {u"Chunk "_s + name, ServiceClient::ValueType::Boolean, u"False"_s};
}

TextSetting ChunkSizeSetting(const QString& name) {
    return {u"Chunk Size "_s + name, ServiceClient::ValueType::Integer,
            QString::number(ChunkSettings::DefaultSize)};
}

int ChunkSize(const QString& text) {
    const int size = LeadingNumber(text.toUtf8());
    return size == 0 ? ChunkSettings::DefaultSize : size;
}

ChunkSettings ReadChunkSettings(const ServiceClient& service, const QString& name, std::stop_token stop) {
    const SettingValue<QString> enabled = ReadSetting(service, ChunkSetting(name), stop);
    const SettingValue<QString> size = ReadSetting(service, ChunkSizeSetting(name), stop);
    return {SettingFlag(enabled.value.toUtf8()), ChunkSize(size.value), enabled.WasRead() && size.WasRead()};
}

ServiceAnswer WriteChunkEnabled(const ServiceClient& service, const QString& name, bool enabled,
                                std::stop_token stop) {
    return service.SetSetting(ChunkSetting(name).name, enabled ? u"true"_s : u"false"_s,
                              ServiceClient::ValueType::Boolean, std::move(stop));
}

ServiceAnswer WriteChunkSize(const ServiceClient& service, const QString& name, int size,
                             std::stop_token stop) {
    return service.SetSetting(ChunkSizeSetting(name).name,
                              QString::number(size == 0 ? ChunkSettings::DefaultSize : size),
                              ServiceClient::ValueType::Integer, std::move(stop));
}
