#include "clouddrive/VDirListPanel.h"

#include "clouddrive/MountWizard.h"
#include "clouddrive/ProfileEncryptionDlg.h"
#include "clouddrive/Quota.h"
#include "clouddrive/VDirItem.h"
#include "look/IconRegistry.h"
#include "page/LinkLabel.h"
#include "page/UserPrompts.h"

namespace {

/// So many reads in a row may go unanswered before it is told.
constexpr int SilentFailures = 3;

} // namespace

CVDirListPanel::CVDirListPanel(const Console& console, LoginPace pace)
    : CardPanel(console), m_commands(new VDirCommands(console, Commands(), *this, pace)) {
    CardSection section;
    section.help =
        tr("View the list of virtual directories. Click the folder icon on the left to create a new "
           "virtual directory by mounting a storage account. ");
    section.hidden = tr("%1 more virtual directories are not shown. Find one by its name to see it here.");
    section.notFound = tr("No virtual directory's name contains \"%1\".");
    section.shared = tr("%1 virtual directories have this name.");
    for (const VDirState state : {VDirState::Mounted, VDirState::Failed, VDirState::Pending}) {
        const int code = static_cast<int>(state);
        section.states.push_back({code, VDirStatusText(QString::number(code))});
    }
    section.lane = Lane::Service;
    section.read = VDirListReader(console.service, console.counters);
    section.make = [this](const CardEntry& entry) {
        m_added = true;
        return std::make_unique<CVDirItem>(TheConsole(), *m_commands, static_cast<const VDirRow&>(entry));
    };
    section.show = [this](CExpandableItem& card, const CardEntry& entry) { ShowEntry(card, entry); };
    section.makeEmptyView = [this] { return MakeEmptyView(); };
    SetSection(std::move(section));
    SetSideActions(
        {{tr("Mount Virtual Directory"), MountIcon, [this] { MountNew(); }},
         {tr("Account Quota"), QuotaIcon, [this] { ShowQuota(); }},
         {tr("Enable/Disable Profile Encryption"), EncryptionIcon, [this] { EditProfileEncryption(); }},
         RefreshAction()});

    connect(m_commands, &VDirCommands::Dismounted, this, &CVDirListPanel::OnDismounted);
    connect(m_commands, &VDirCommands::Renamed, this, &CVDirListPanel::OnRenamed);
    connect(m_commands, &VDirCommands::Changed, this, [this] {
        if (IsActive()) // otherwise it is read when it is shown
            Reload();
    });
    connect(&m_commands->Providers(), &ProviderNames::Learned, this,
            [this] { ForEachCard(&CVDirItem::ShowProvider); });
    connect(m_commands, &VDirCommands::LoginChanged, this, [this](const QString& name) {
        if (CExpandableItem* card = FindCard(name))
            static_cast<CVDirItem*>(card)->ShowStatus();
    });
}

QWidget* CVDirListPanel::MakeEmptyView() {
    auto* text =
        new LinkLabel(tr("You have not configured a cloud storage account.  Click <a>here</a> or the icon "
                         "on the left panel to add a cloud storage account."));
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    connect(text, &LinkLabel::LinkClicked, this, &CVDirListPanel::MountNew);
    return text;
}

void CVDirListPanel::MountNew() {
    OpenMountWizard(TheConsole(), window(), [panel = QPointer(this)](bool mounted) {
        if (panel && mounted)
            panel->Reload();
    });
}

void CVDirListPanel::ShowQuota() {
    CQuota::Open(TheConsole(), window());
}

void CVDirListPanel::EditProfileEncryption() {
    auto* dialog = new ProfileEncryptionDlg(TheConsole().service, TheConsole().reader, window());
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        if (dialog->IsOffered())
            TheConsole().prompts.ShowMessage(
                this, tr("Settings will take effect when the application starts next time."));
    });
    dialog->Open(TheConsole().settingNews);
}

void CVDirListPanel::ShowEntry(CExpandableItem& card, const CardEntry& entry) {
    auto& item = static_cast<CVDirItem&>(card);
    if (static_cast<VDirState>(entry.shownState) == VDirState::Mounted)
        m_commands->ForgetLogin(entry.title);
    item.Update(static_cast<const VDirRow&>(entry));
    if (m_unanswered)
        item.ShowUnanswered();
}

/// An answer that is no list changes nothing, not even what was told before.
void CVDirListPanel::TellRead(const ReadResult& read) {
    if (m_added && read && ExpandedCard())
        ShowAll();
    m_added = false;
    if (read) {
        m_silences = 0;
        m_wasRead = true;
        if (std::exchange(m_unanswered, false))
            ForEachCard(&CVDirItem::ShowStatus);
        TellAge({});
        LearnProviders();
    } else if (read.outcome == ReadOutcome::Unavailable && ++m_silences > SilentFailures) {
        m_silences = 0;
        ShowUnanswered();
    }
}

void CVDirListPanel::LearnProviders() {
    QStringList spIds;
    for (int card = 0; card < CardCount(); ++card)
        spIds += static_cast<const CVDirItem*>(CardAt(card))->Record().spId;
    m_commands->Providers().Learn(spIds);
}

void CVDirListPanel::ShowUnanswered() {
    m_unanswered = true;
    const QString failure =
        tr("Unable to get virtual directory list, please check the application is still running. ");
    if (m_wasRead)
        TellFailure(failure);
    else
        TellAge(failure); // there is nothing yet whose age could be told
    ForEachCard(&CVDirItem::ShowUnanswered);
}

void CVDirListPanel::ForEachCard(void (CVDirItem::*show)()) {
    for (int card = 0; card < CardCount(); ++card)
        (static_cast<CVDirItem*>(CardAt(card))->*show)();
}

void CVDirListPanel::OnDismounted(const QString& name) {
    CExpandableItem* card = FindCard(name);
    if (!card)
        return;
    RemoveCard(*card);
    RecalcLayout();
}

void CVDirListPanel::OnRenamed(const QString& name, const QString& newName) {
    if (CExpandableItem* card = FindCard(name))
        static_cast<CVDirItem*>(card)->Rename(newName);
}
