#pragma once

#include "syncfolders/SyncList.h"
#include "syncplan/FileVersions.h"
#include "syncplan/SyncState.h"

class CommandRunner;
struct CommandOrder;

/// All that a person does to sync folders, from their cards and the pages in them alike. A folder is known
/// by its name, ignoring case.
class SyncCommands : public QObject {
    Q_OBJECT

public:
    /// `page` is the list that owns it, `runner` that of the page.
    SyncCommands(const Console& console, CommandRunner& runner, QWidget& page);

    /// What the state of its task offers.
    void Run(const SyncRow& row, const SyncAction& action);
    bool IsRunning(const SyncRow& row, const SyncAction& action) const;
    void Sync(const SyncFolder& folder);
    /// Has all files compared again, after a question.
    void ForceSync(const SyncFolder& folder);
    /// Opens a local file or folder.
    void Open(const QString& path);
    /// Asks before.
    void Disable(const SyncFolder& folder);
    bool IsDisabling(const QString& name) const { return m_disabling.contains(name.toCaseFolded()); }
    /// Looks which directories there are, and asks which one and where.
    void Add();
    /// Tells what the folder's file was and is, asks, and makes a version the present one. `done` is called
    /// when it stands.
    void Revert(const SyncFolder& folder, const QString& file, const FileVersion& version,
                std::function<void()> done);

signals:
    /// What the service keeps of its folders or their tasks is another now.
    void Changed();
    void BusyChanged();

private:
    CommandOrder SyncOrder();
    struct Choices; ///< of a new folder
    struct Present; ///< what is known of a file at the moment of the question

    void EndDisable(const QString& name, const SyncFolderChange& change);
    void OpenAddDialog(const Choices& choices);
    void AskToRevert(const SyncFolder& folder, const QString& file, const Present& present,
                     const QString& key, std::function<void()> done);
    void SendRevert(const SyncFolder& folder, const QString& key, std::function<void()> done);
    void Tell(const QString& text);

    const Console& m_console;
    CommandRunner& m_runner;
    QWidget& m_page;
    QSet<QString> m_disabling;
    PageLoader m_loader;
    PageLoader m_adding;
};
