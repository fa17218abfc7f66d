#include "zep/Mui.h"

#include "platform/Folders.h"
#include "zep/Text.h"
#include "zep/TracePrintf.h"
#include "zep/Xml.h"

#include <map>
#include <system_error>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype longestText = 4095;

using Table = std::map<int, QString>;

struct Texts {
    Table messages{
        {Message::VirtualDirectoriesUnavailable,
         u"The list of virtual directories could not be read. Please check that the service is "
         "running, then try again."_s},
        {Message::HomeDirectoryMissing,
         u"There is no virtual directory named \"Home\" whose login information could be "
         "edited."_s},
        {Message::KeyNotStored, u"The encryption key could not be stored."_s},
        {Message::BackupNotCreated, u"The backup task could not be created."_s},
        {Message::FileMonitorCannotBeOpened,
         u"The file monitor service could not be opened. The file index is not available."_s},
        {Message::AskBuildFileIndex,
         u"The file index has not been built yet. It is needed to find files by their type. Do "
         "you want to build it now? This may take a few minutes."_s},
        {Message::FileMonitorNotRunning,
         u"The file monitor service is not running. Please start it, then try again."_s},
        {Message::AskCancelBackup,
         u"Do you really want to cancel this backup? It will be deleted for good. Its files stay."_s},
        {Message::SelectFolderFirst, u"Please select a folder first."_s},
        {Message::NewFolderTitle, u"Name of the New Folder"_s},
        {Message::FolderNotCreated,
         u"The folder could not be created. Please check its name and your rights, then try "
         "again."_s},
    };
    Table branding{
        {Branding::ProductLine, u"Brenvia"_s},
        {Branding::HomeFolderOnly, u"no"_s},
        {Branding::SettingsCatalogFile, u"settings.xml"_s},
        {Branding::DesktopConsole, u"Brenvia Orbitdesk"_s},
        {Branding::BackupServerConsole, u"Brenvia Backup Server Console"_s},
        {Branding::HiddenCardField, QString()},
        {Branding::SupportAddress, u"support@brenvia.example"_s},
        {Branding::MailSender, u"notification@brenvia.example"_s},
    };
};

Texts& Current() {
    static Texts texts;
    return texts;
}

void Reject(const QString& reason) {
    TracePrintf(TraceLevel::Warning, u"[Mui]Branding file: "_s + reason);
}

/// Takes one element of the branding file into the table that it names.
void Override(Texts& texts, const XmlNode& entry) {
    const bool isMessage = entry.Name() == "Message"_L1;
    if (!isMessage && entry.Name() != "Branding"_L1)
        return Reject(u"unknown element \"%1\" ignored"_s.arg(entry.Name()));
    Table& table = isMessage ? texts.messages : texts.branding;
    const QString number = entry.Attribute(u"Number"_s).value_or(QString());
    bool isNumber = false;
    const auto row = table.find(number.toInt(&isNumber));
    if (!isNumber || row == table.end())
        return Reject(u"unknown %1 number \"%2\" ignored"_s.arg(entry.Name(), number));
    const QString text = entry.Text();
    if (text.size() > longestText)
        return Reject(u"%1 %2 is too long and ignored"_s.arg(entry.Name(), number));
    row->second = text;
}

QString Find(const Table& table, int number) {
    const auto row = table.find(number);
    return row == table.end() ? QString() : row->second;
}

} // namespace

void ZEPMuiInitialize() {
    ZEPMuiInitialize(platform::ExecutableFolder() / "branding.xml");
}

void ZEPMuiInitialize(const std::filesystem::path& brandingFile) {
    Current() = Texts();
    std::error_code error;
    if (!std::filesystem::exists(brandingFile, error))
        return;
    const auto document = XmlDocument::Load(brandingFile);
    const XmlNode root = document ? document->NodeByPath(u"BrandingTexts"_s) : XmlNode();
    if (!root)
        return Reject(u"\"%1\" is not a branding document and is ignored"_s.arg(FromPath(brandingFile)));
    for (XmlNode entry = root.FirstChild(); entry; entry = entry.NextSibling())
        Override(Current(), entry);
}

QString ZEPMuiGetStringW(int number) {
    return Find(Current().messages, number);
}

QString ZEPMuiGetBrandingStringW(int number) {
    return Find(Current().branding, number);
}
