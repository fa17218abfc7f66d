#pragma once

#include "support/PageFixture.h"
#include "support/UserHome.h"
#include "syncfolders/DropFolderItem.h"
#include "syncfolders/DropFolderList.h"

/// The list of sync folders before a service that keeps one of them, "Team", in step. It is nine o'clock.
class SyncFolderPage {
protected:
    void Begin() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_home = std::make_unique<UserHome>(m_fixture->service.Home());
        Service().SetVirtualDirectories({{"Team", "{C}", 3, Provider}, {"Archive", "{D}", 3, Provider}});
        Service().SetSetting("DropFolders", "Team\t" + Local().toStdString() + "\nno tab\n");
        m_panel = std::make_unique<CDropFolderList>(m_fixture->console, [] { return QTime(9, 0); });
        m_panel->resize(900, 600);
    }
    void End() {
        m_panel.reset();
        m_home.reset();
        m_fixture.reset();
    }

    devservice::DevService& Service() { return m_fixture->service.Service(); }
    QString Local() const { return m_fixture->service.Home() + QLatin1String("/sync/Team"); }
    CDropFolderItem& Card() { return *static_cast<CDropFolderItem*>(m_panel->CardAt(0)); }
    void Open() {
        m_panel->show();
        m_fixture->Open(*m_panel);
    }
    void Expand() {
        m_panel->ToggleCard(Card());
        Settle();
    }
    void Settle() {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            m_fixture->reader.StepAll(100);
        }
    }

    std::string IdOf(const std::string& folder) {
        for (const devservice::Task& task : Service().Tasks())
            if (task.name == "Cloud Sync Folder Task For " + folder)
                return task.id;
        return {};
    }

    /// The task of the folder, with so many sub-tasks that failed.
    void Put(TaskState state, int nextRun, int failed) {
        devservice::Task task = *Service().FindTask(IdOf("Team"));
        task.state = state;
        task.nextRun = devservice::MakeTime(2025, 3, 4, 9) + std::chrono::seconds(nextRun);
        task.subTasks.clear();
        for (int i = 1; i <= failed; ++i) {
            task.subTasks.push_back(devservice::MakeSubTask(
                i, "DPUT", "/x", 9, i % 2 ? SubTaskState::Failed : SubTaskState::PendingRetry));
            task.subTasks.back().note = "in use";
        }
        Service().PutTask(task);
    }

    std::unique_ptr<PageFixture<>> m_fixture;
    std::unique_ptr<UserHome> m_home;
    std::unique_ptr<CDropFolderList> m_panel;

private:
    static constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";
};
