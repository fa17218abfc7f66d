#pragma once

#include "page/BrenPanel.h"
#include "service/CloudFolders.h"

class RecordView;

/// What one list of folders says, and which list it is.
struct FolderListKind {
    ListSetting list;
    QString name;   ///< for screen readers
    QString widths; ///< the name that the columns' widths are kept under
    QString help;
    QString empty;
    QString add;       ///< caption of the action
    QString remove;    ///< in the menu
    QString linkWords; ///< of a row's link cell
    QString question;  ///< before a folder is removed
    bool needsPassword = false;
};

/// A list of folders of the storage that the service keeps in one setting. Every change is written at once,
/// upon what the service keeps then, and read back.
class FolderListPage : public CBrenPanel {
    Q_OBJECT

public:
    FolderListPage(const Console& console, FolderListKind kind);

    void Reload() override;
    bool CanFind() const override { return m_view; }
    void OpenFind() override;

    void AddFolder();
    void SetPassword();

protected:
    void CreatePanel() override;

private:
    struct Change;
    using Work = std::function<ListChange(const ServiceClient&, std::stop_token)>;

    void ShowState();
    void SetBusy(bool busy);
    void AskAndRemove(const std::vector<ListedFolder>& folders);
    void Send(const QString& failed, Work work, bool addsFolder);
    void EndChange(const QString& failed, const Change& change);
    void OfferPassword(PasswordState state);

    FolderListKind m_kind;
    RecordView* m_view = nullptr;
    bool m_busy = false;    ///< a change is asked about or under way
    QString m_passwordNote; ///< that nothing is known of the password
};

/// The folders whose files the service encrypts.
class CEncFolderList : public FolderListPage {
    Q_OBJECT

public:
    explicit CEncFolderList(const Console& console);
};

/// The folders whose files the service compresses.
class CCompressedFolderList : public FolderListPage {
    Q_OBJECT

public:
    explicit CCompressedFolderList(const Console& console);
};
