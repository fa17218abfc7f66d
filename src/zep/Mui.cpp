#include "zep/Mui.h"

#include "platform/Folders.h"
#include "zep/Text.h"
#include "zep/TracePrintf.h"
#include "zep/Xml.h"

#include <map>
#include <system_error>

namespace {

constexpr qsizetype longestText = 4095;

using Table = std::map<int, QString>;

struct Texts {
    Table messages{
        {Message::VirtualDirectoriesUnavailable,
         QStringLiteral("The list of virtual directories could not be read. Please check that the service is "
                        "running, then try again.")},
        {Message::HomeDirectoryMissing,
         QStringLiteral("There is no virtual directory named \"Home\" whose login information could be "
                        "edited.")},
        {Message::FileMonitorCannotBeOpened,
         QStringLiteral("The file monitor service could not be opened. The file index is not available.")},
        {Message::AskBuildFileIndex,
         QStringLiteral("The file index has not been built yet. It is needed to find files by their type. Do "
                        "you want to build it now? This may take a few minutes.")},
        {Message::FileMonitorNotRunning,
         QStringLiteral("The file monitor service is not running. Please start it, then try again.")},
        {Message::SelectFolderFirst, QStringLiteral("Please select a folder first.")},
        {Message::NewFolderTitle, QStringLiteral("Name of the New Folder")},
        {Message::FolderNotCreated,
         QStringLiteral("The folder could not be created. Please check its name and your rights, then try "
                        "again.")},
    };
    Table branding{
        {Branding::ProductLine, QStringLiteral("Brenvia")},
        {Branding::HomeFolderOnly, QStringLiteral("no")},
        {Branding::SettingsCatalogFile, QStringLiteral("settings.xml")},
        {Branding::DesktopConsole, QStringLiteral("Brenvia Orbitdesk")},
        {Branding::BackupServerConsole, QStringLiteral("Brenvia Backup Server Console")},
        {Branding::HiddenCardField, QString()},
    };
};

Texts& Current() {
    static Texts texts;
    return texts;
}

void Reject(const QString& reason) {
    TracePrintf(TraceLevel::Warning, QStringLiteral("[Mui]Branding file: ") + reason);
}

/// Takes one element of the branding file into the table that it names.
void Override(Texts& texts, const XmlNode& entry) {
    const bool isMessage = entry.Name() == QLatin1String("Message");
    if (!isMessage && entry.Name() != QLatin1String("Branding"))
        return Reject(QStringLiteral("unknown element \"%1\" ignored").arg(entry.Name()));
    Table& table = isMessage ? texts.messages : texts.branding;
    const QString number = entry.Attribute(QStringLiteral("Number")).value_or(QString());
    bool isNumber = false;
    const auto row = table.find(number.toInt(&isNumber));
    if (!isNumber || row == table.end())
        return Reject(QStringLiteral("unknown %1 number \"%2\" ignored").arg(entry.Name(), number));
    const QString text = entry.Text();
    if (text.size() > longestText)
        return Reject(QStringLiteral("%1 %2 is too long and ignored").arg(entry.Name(), number));
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
    const XmlNode root = document ? document->NodeByPath(QStringLiteral("BrandingTexts")) : XmlNode();
    if (!root)
        return Reject(
            QStringLiteral("\"%1\" is not a branding document and is ignored").arg(FromPath(brandingFile)));
    for (XmlNode entry = root.FirstChild(); entry; entry = entry.NextSibling())
        Override(Current(), entry);
}

QString ZEPMuiGetStringW(int number) {
    return Find(Current().messages, number);
}

QString ZEPMuiGetBrandingStringW(int number) {
    return Find(Current().branding, number);
}
