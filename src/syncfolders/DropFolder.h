#pragma once

#include "page/BrenPanel.h"
#include "syncplan/FileVersions.h"
#include "syncplan/SyncFolders.h"

class LinkLabel;
class QLabel;
class RecordView;
class SyncCommands;
struct TakenRow;

/// Browses the version store of a sync folder, lists the versions of a file and brings one of them back.
class CDropFolder : public CBrenPanel {
    Q_OBJECT

public:
    /// `commands` are those of its list.
    CDropFolder(const Console& console, SyncCommands& commands, const SyncFolder& folder);

    void SetFolder(const SyncFolder& folder) { m_folder = folder; }
    /// Goes to the file's folder and lists its versions, as of "/a/b.txt".
    void ShowVersions(const QString& file);

    void Activate() override;
    void Reload() override;
    bool CanFind() const override { return m_files; }
    void OpenFind() override;

protected:
    void CreatePanel() override;

private:
    void Browse(const QString& path);
    void ListVersions(const QString& file);
    void OnFileClicked(const TakenRow& row);
    void OnVersionClicked(int column, const TakenRow& row);
    void Revert(const FileVersion& version);
    void ReadOffer();
    void ShowOffer(std::optional<bool> offered);
    void ShowState();

    SyncCommands& m_commands;
    SyncFolder m_folder;
    QString m_path; ///< of the folder that is listed; empty at the top
    QString m_file; ///< whose versions are listed; empty: none
    QString m_refusal;
    QLabel* m_pathText = nullptr;
    LinkLabel* m_force = nullptr;
    QLabel* m_whyNot = nullptr; ///< files cannot be compared again
    RecordView* m_files = nullptr;
    RecordView* m_versions = nullptr;
    PageLoader m_offer;
};
