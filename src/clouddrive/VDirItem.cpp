#include "clouddrive/VDirItem.h"

#include "clouddrive/VDirCommands.h"
#include "clouddrive/VDirSummary.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/TabPanel.h"

using namespace Qt::Literals::StringLiterals;

CVDirItem::CVDirItem(const Console& console, VDirCommands& commands, const VDirRow& directory)
    : CTaskItem(directory.title), m_console(console), m_commands(commands), m_directory(directory) {
    m_dismount = AddAction(tr("Dismount"), DismountIcon, [this] {
        // The card may be gone when the question is answered.
        m_commands.Dismount(Record(), [card = QPointer(this)] { return !card.isNull(); });
    });
    AddAction(tr("Rename"), EditIcon, [this] { m_commands.Rename(Record()); });
    AddAction(tr("Config"), SettingsIcon, [this] { m_commands.Config(Record()); });
    m_login = AddAction(tr("Login"), LoginIcon, [this] { m_commands.Login(Record()); });
    m_open = AddAction(tr("Open"), OpenFolderIcon, [this] { m_commands.Open(Record(), m_directory.drive); });
    connect(&commands, &VDirCommands::BusyChanged, this, &CVDirItem::ShowBusy);
}

void CVDirItem::Update(const VDirRow& directory) {
    m_directory = directory;
    if (Title() != directory.title)
        SetTitle(directory.title);
    if (m_summary)
        m_summary->SetRecord(directory.record);
    ShowProvider();
    EnableAction(m_open, directory.drive != 0,
                 directory.drive != 0
                     ? QString()
                     : tr("The drive that shows virtual directories as folders is not there."));
    ShowStatus();
}

void CVDirItem::ShowUnanswered() {
    SetStatusIcon(QLatin1String(MeaningOfStatus(u"2"_s).icon), static_cast<int>(VDirState::Failed),
                  tr("Not known"));
    SetStatusText(tr("Not known"));
}

void CVDirItem::Rename(const QString& name) {
    VDirRow renamed = m_directory;
    renamed.id = renamed.title = renamed.record.name = name;
    entryId = name;
    Update(renamed);
}

void CVDirItem::ShowProvider() {
    const QString provider = m_commands.Providers().Of(Record().spId);
    SetBodyText(provider.isEmpty() ? tr("Storage account")
                                   : tr("Storage provider %1").arg(Look::OneLine(provider)),
                Record().spId);
}

void CVDirItem::ShowStatus() {
    const VDirStateMeaning& meaning = MeaningOfStatus(Record().status);
    const QString text = VDirStatusText(Record().status);
    SetStatusIcon(QLatin1String(meaning.icon), static_cast<int>(meaning.state), text);
    const QString login = m_commands.LoginText(Record().name);
    SetStatusText(login.isEmpty() ? text : login);
    ShowBusy();
}

void CVDirItem::ShowBusy() {
    EnableAction(m_login, !m_commands.IsLoggingIn(Record().name));
    EnableAction(m_dismount, !m_commands.IsDismounting(Record().name));
}

void CVDirItem::OnExpanded() {
    if (!m_summary) {
        auto* tabs = new CTabPanel(m_console);
        m_summary = new CVDirSummary(m_console, m_commands, Record());
        tabs->AddTab(tr("Summary"), m_summary, SummaryIcon);
        SetContent(tabs);
    }
    CTaskItem::OnExpanded();
}
