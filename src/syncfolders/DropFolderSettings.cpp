#include "syncfolders/DropFolderSettings.h"

#include "platform/HostName.h"
#include "service/KnownSettings.h"

namespace {

template <typename Value>
CatalogSetting Described(const Setting<Value>& setting, const QString& description) {
    return {setting.AsText(), description};
}

} // namespace

CDropFolderSettings::CDropFolderSettings(const Console& console)
    : SettingsGridPage(console, &TypedText, nullptr) {
    SetSideActions({RefreshAction()});
}

SettingsCatalog CDropFolderSettings::Catalog(QString&) const {
    using namespace Settings;
    CatalogSetting computer = Described(ComputerName, tr("Computer Name"));
    computer.fallback = QString::fromStdString(platform::HostName());
    return {
        {tr("Writer Identity"), {Described(WriterName, tr("Updater Name")), computer}},
        {tr("Syncing"),
         {Described(DropPollingInterval,
                    tr("Polling Interval (seconds between checks for changes in cloud storage)"))}},
        {tr("Incremental Upload"),
         {Described(DropCTMax, tr("Disable Incremental Upload when File Size Exceeds (KB)")),
          Described(DropCTMin, tr("Disable Incremental Upload when File Size is Less Than (KB)"))}},
    };
}
