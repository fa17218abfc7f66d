#pragma once

#include "cards/CardPanel.h"
#include "clouddrive/VDirCommands.h"

class CVDirItem;

/// The virtual directories as cards.
class CVDirListPanel : public CardPanel {
    Q_OBJECT

public:
    explicit CVDirListPanel(const Console& console, LoginPace pace = {});

    /// Opens the wizard that mounts a storage account.
    void MountNew();
    void ShowQuota();
    /// Has the profile encrypted or no longer.
    void EditProfileEncryption();
    VDirCommands& Directories() { return *m_commands; }

protected:
    void TellRead(const ReadResult& read) override;

private:
    QWidget* MakeEmptyView();
    void ShowEntry(CExpandableItem& card, const CardEntry& entry);
    void LearnProviders();
    void ShowUnanswered();
    void ForEachCard(void (CVDirItem::*show)());
    void OnDismounted(const QString& name);
    void OnRenamed(const QString& name, const QString& newName);

    VDirCommands* m_commands;
    bool m_wasRead = false;    ///< once at least
    int m_silences = 0;        ///< reads in a row that nobody answered
    bool m_unanswered = false; ///< the cards say so
    bool m_added = false;      ///< a card, by the read that is being shown
};
