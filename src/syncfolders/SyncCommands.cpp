#include "syncfolders/SyncCommands.h"

#include "page/CommandRunner.h"
#include "page/SettingNews.h"
#include "page/UserPrompts.h"
#include "service/VirtualDirectories.h"
#include "syncfolders/AddDropFolderDlg.h"
#include "syncplan/LocalFolder.h"
#include "taskman/TaskCommands.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

struct SyncCommands::Choices {
    std::optional<std::vector<VDirRecord>> directories;
    SettingValue<QStringList> list;
};

struct SyncCommands::Present {
    bool wasTold = false;
    std::vector<FileVersion> versions;
    QString path;
    QString file; ///< in words
};

namespace {

/// The version that is there now, and the one that shall be, a line each.
QString BothFiles(const QString& path, const QString& file, const FileVersion& present,
                  const FileVersion& wanted) {
    const qint64 now = CurrentStamp();
    return SyncCommands::tr("Now: %1, %2, from %3")
               .arg(path, file,
                    present.computer.isEmpty() ? SyncCommands::tr("an unknown computer") : present.computer) +
           u'\n' +
           SyncCommands::tr("Then: version %1 of it, %2, from %3; the service does not tell its size")
               .arg(QString::number(wanted.number), StampText(wanted.stamp, now),
                    wanted.computer.isEmpty() ? SyncCommands::tr("an unknown computer") : wanted.computer);
}

} // namespace

SyncCommands::SyncCommands(const Console& console, CommandRunner& runner, QWidget& page)
    : QObject(&page), m_console(console), m_runner(runner), m_page(page), m_loader(console.reader, page),
      m_adding(console.reader, page) {
    connect(&runner, &CommandRunner::BusyChanged, this, &SyncCommands::BusyChanged);
}

void SyncCommands::Tell(const QString& text) {
    m_console.prompts.ShowMessage(&m_page, text);
}

void SyncCommands::Run(const SyncRow& row, const SyncAction& action) {
    CommandOrder order = TaskOrder(action.action, row.taskId, row.title);
    order.after = [this](const CommandEnd&) { emit Changed(); };
    m_runner.Run(TaskOrderKey(action.action, row.taskId), order);
}

bool SyncCommands::IsRunning(const SyncRow& row, const SyncAction& action) const {
    return m_runner.IsBusy(TaskOrderKey(action.action, row.taskId));
}

/// What all requests to synchronise have.
CommandOrder SyncCommands::SyncOrder() {
    CommandOrder order;
    order.failure = SyncRequestText(false);
    order.failureInBox = true;
    order.after = [this](const CommandEnd& end) {
        if (end)
            Tell(SyncRequestText(true));
        emit Changed();
    };
    return order;
}

void SyncCommands::Sync(const SyncFolder& folder) {
    CommandOrder order = SyncOrder();
    order.send = [name = folder.name](const ServiceClient& service, std::stop_token stop) {
        return RequestSync(service, name, std::move(stop));
    };
    m_runner.Run(u"sync "_s + folder.name.toCaseFolded(), order);
}

void SyncCommands::ForceSync(const SyncFolder& folder) {
    CommandOrder order = SyncOrder();
    order.question = tr("All files of the folder will be compared again. Continue?");
    order.title = SyncFolderTitle(folder.name);
    order.send = [name = folder.name](const ServiceClient& service, std::stop_token stop) {
        return RequestFullSync(service, name, std::move(stop));
    };
    m_runner.Run(u"compare "_s + folder.name.toCaseFolded(), order);
}

/// A folder may be on a machine that does not answer.
void SyncCommands::Open(const QString& path) {
    m_loader.Command(
        Lane::Network, [path](const std::stop_token&) { return OpenLocally(path); },
        [this](const Loaded<QString>& failure) {
            if (failure && !failure->isEmpty())
                Tell(*failure);
        });
}

void SyncCommands::Disable(const SyncFolder& folder) {
    const QString key = folder.name.toCaseFolded();
    if (m_disabling.contains(key))
        return;
    m_disabling.insert(key);
    emit BusyChanged();
    const QString question =
        tr("Do you really want to disable the Cloud Sync Folder (the content of the local folder will not be "
           "removed. However, synchronization will stop.)?");
    m_console.prompts.Ask(
        &m_page, {.text = question + u'\n' + DisableFacts(folder), .title = SyncFolderTitle(folder.name)},
        [this, key, name = folder.name](bool yes) {
            if (!yes) {
                m_disabling.remove(key);
                emit BusyChanged();
                return;
            }
            m_loader.Command(
                Lane::Network,
                [service = m_console.service, name](std::stop_token stop) {
                    return DisableSyncFolder(service, name, std::move(stop));
                },
                [this, name](const Loaded<SyncFolderChange>& loaded) {
                    if (loaded)
                        return EndDisable(name, *loaded);
                    SyncFolderChange failed;
                    failed.list.failure = loaded.why;
                    EndDisable(name, failed);
                });
        });
}

void SyncCommands::EndDisable(const QString& name, const SyncFolderChange& change) {
    m_disabling.remove(name.toCaseFolded());
    emit BusyChanged();
    emit m_console.settingNews.Written(QString::fromLatin1(DropFolders.name), this);
    emit Changed();
    if (const QString report = change.Report(); !report.isEmpty())
        Tell(report);
}

void SyncCommands::Add() {
    if (m_adding.IsReading() || m_page.findChild<CAddDropFolderDlg*>())
        return;
    m_adding.Load(
        Lane::Service,
        [service = m_console.service](const std::stop_token& stop) -> std::optional<Choices> {
            return Choices{service.GetVdirList(stop), ReadList(service, DropFolders, stop)};
        },
        [this](const Loaded<Choices>& choices) {
            if (choices)
                OpenAddDialog(*choices);
        });
}

void SyncCommands::OpenAddDialog(const Choices& choices) {
    if (!choices.directories)
        return Tell(NoVdirListText());
    if (choices.directories->empty())
        return Tell(tr("You don't have any cloud storage account(Virtual Directory) yet, please mount one in "
                       "'Cloud Drive' section first."));
    if (!choices.list.WasRead())
        return Tell(tr("The service does not tell which Cloud Sync Folders there are, so none can be added "
                       "now."));
    const std::vector<SyncFolder> folders = SyncFoldersOf(choices.list.value);
    QStringList names;
    for (const VDirRecord& directory : *choices.directories)
        if (!FindSyncFolder(folders, directory.name))
            names += directory.name;
    if (names.isEmpty())
        return Tell(tr("Cloud Sync Folder has been enabled for all existing cloud storage account(Virtual "
                       "Directory)"));
    auto* dialog = new CAddDropFolderDlg(m_console, names, folders, &m_page);
    connect(dialog, &QDialog::finished, this, [this, dialog] {
        emit Changed();
        if (const QString report = dialog->Report(); !report.isEmpty())
            Tell(report);
    });
    dialog->Open(m_console.settingNews);
}

void SyncCommands::Revert(const SyncFolder& folder, const QString& file, const FileVersion& version,
                          std::function<void()> done) {
    m_loader.Command(
        Lane::Network,
        [service = m_console.service, folder, file](const std::stop_token& stop) {
            const ServiceAnswer answer = RequestVersions(service, folder.name, file, stop);
            const QString path = LocalFile(folder, file);
            return Present{bool(answer), VersionsOf(answer.body), path, LocalFileText(path)};
        },
        [this, folder, file, key = version.Key(), done = std::move(done)](const Loaded<Present>& present) {
            if (present)
                AskToRevert(folder, file, *present, key, done);
        });
}

void SyncCommands::AskToRevert(const SyncFolder& folder, const QString& file, const Present& present,
                               const QString& key, std::function<void()> done) {
    if (!present.wasTold)
        return Tell(
            tr("The service does not tell the versions of \"%1\" now, so none was restored.").arg(file));
    const FileVersion* wanted = FindVersion(present.versions, key);
    if (!wanted)
        return Tell(tr("There is no such version of \"%1\" any more.").arg(file));
    m_console.prompts.Ask(&m_page,
                          {.text = tr("Do you really want to revert to the version?") + u'\n' +
                                   BothFiles(present.path, present.file, present.versions.front(), *wanted),
                           .title = SyncFolderTitle(folder.name),
                           .beside = tr("Open Folder"),
                           .besideRun = [this, path = folder.path] { Open(path); }},
                          [this, folder, key, done = std::move(done)](bool yes) {
                              if (yes)
                                  SendRevert(folder, key, done);
                          });
}

void SyncCommands::SendRevert(const SyncFolder& folder, const QString& key, std::function<void()> done) {
    CommandOrder order;
    order.send = [key](const ServiceClient& service, std::stop_token stop) {
        return RequestRevert(service, key, std::move(stop));
    };
    order.failure = tr("The restore operation failed.");
    order.failureInBox = true;
    order.after = [this, done = std::move(done)](const CommandEnd& end) {
        if (!end)
            return;
        Tell(tr("The restore operation is successful."));
        done();
    };
    m_runner.Run(u"revert "_s + folder.name.toCaseFolded() + key, order);
}
