#include "backup/RestoreSetPage.h"

#include "lanes/ProgressNote.h"
#include "look/IconRegistry.h"
#include "page/Console.h"
#include "stores/SchedulerStore.h"
#include "wizard/CheckTreeView.h"

#include <QHash>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The snapshots of a set, the newest first.
TreeLevel LevelOf(const SetContent& content) {
    TreeLevel level{{}, content.failure};
    level.entries.reserve(content.snapshots.size());
    for (const Snapshot& snapshot : content.snapshots)
        level.entries.push_back({snapshot.name, CreatedText(snapshot), FileVersionsIcon, false});
    std::reverse(level.entries.begin(), level.entries.end());
    return level;
}

/// Names the sets after the backups that they are of, where those are still known.
void NameSets(std::vector<RestoreSet>& sets, const std::stop_token& stop) {
    QHash<QString, RestoreSet> known;
    EnumAllTasks(
        [&known](const TaskRecord& task) {
            const BackupDescription description =
                DescriptionOf(KindOfBackup(task.kind, task.description), task.description);
            known.insert(SetPlaceOf(task.taskId, task.kind, task.description).set.toLower(),
                         {{}, task.name, description.sources});
            return true;
        },
        stop);
    for (RestoreSet& set : sets) {
        const auto task = known.constFind(set.place.set.toLower());
        set.label = task == known.constEnd() ? set.place.set : task->label;
        if (task != known.constEnd())
            set.sources = task->sources;
    }
}

struct ReadSets {
    std::vector<RestoreSet> sets;
    std::vector<TreeLevel> levels; ///< of each set
};

ReadSets ReadAll(const ServiceClient& service, const std::vector<BackupSetPlace>& places, ProgressNote& note,
                 const std::stop_token& stop) {
    ReadSets read;
    for (const BackupSetPlace& place : places) {
        note.Tell({qint64(read.sets.size()), qint64(places.size()),
                   CRestoreSet::tr("Loading backup set: ") + place.Folder() + u"/backupset.info"_s});
        const SetContent content = ReadSet(service, place, stop);
        read.sets.push_back({place, {}, {}, content.type, content.snapshots});
        read.levels.push_back(LevelOf(content));
    }
    NameSets(read.sets, stop);
    return read;
}

} // namespace

CRestoreSet::CRestoreSet(const Console& console, std::shared_ptr<RestoreChoice> choice)
    : WizardPage(tr("What To Restore"), tr("Choose the snapshot to restore from.")), m_console(console),
      m_choice(std::move(choice)),
      m_model(console.reader, *this, Lane::Service, nullptr, CheckTreeModel::Boxes::None),
      m_view(new CheckTreeView(m_model)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_view);
    m_view->setAccessibleName(Title());
    setFocusProxy(m_view);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &WizardPage::Edited);
}

QVariantList CRestoreSet::Inputs() const {
    QVariantList folders;
    for (const BackupSetPlace& place : m_choice->places)
        folders.append(place.Folder());
    return folders;
}

void CRestoreSet::Fill() {
    auto note = std::make_shared<ProgressNote>();
    Sheet().Read(
        *this, Lane::Service, tr("Loading backup sets..."),
        [service = m_console.service, places = m_choice->places, note](const std::stop_token& stop) {
            return ReadAll(service, places, *note, stop);
        },
        [this](const Loaded<ReadSets>& read) {
            if (!read)
                return read.why;
            m_sets = read->sets;
            // A set that could not be listed is tried again by the message in its place.
            m_model.ListFrom([service = m_console.service, sets = m_sets](const QStringList& keys,
                                                                          const std::stop_token& stop) {
                const auto set = std::find_if(sets.begin(), sets.end(), [&keys](const RestoreSet& each) {
                    return each.place.Folder() == keys.value(0);
                });
                return set == sets.end() ? TreeLevel() : LevelOf(ReadSet(service, set->place, stop));
            });
            TreeLevel roots;
            for (const RestoreSet& set : m_sets)
                roots.entries.push_back(
                    {set.place.Folder(), set.label, BackupIcon, true, true, SetTypeText(set.type)});
            m_model.SetLevel({}, roots);
            for (std::size_t at = 0; at < m_sets.size(); ++at)
                m_model.SetLevel({m_sets[at].place.Folder()}, read->levels[at]);
            if (m_sets.size() == 1)
                m_view->expandAll();
            SelectChosen();
            return QString();
        },
        note);
}

/// Of a single set the newest one, where none is chosen or that one has gone.
void CRestoreSet::SelectChosen() {
    const TreeLevels& levels = m_model.Levels();
    const TreeLevels::Node* chosen =
        m_choice->hasSnapshot ? levels.Find({m_choice->set.place.Folder(), m_choice->snapshot.name})
                              : nullptr;
    if (!chosen && m_sets.size() == 1 && !m_sets.front().snapshots.empty())
        chosen = levels.Find({m_sets.front().place.Folder(), m_sets.front().snapshots.back().name});
    if (chosen)
        m_view->GoTo(*chosen);
}

void CRestoreSet::showEvent(QShowEvent* event) {
    WizardPage::showEvent(event);
    SelectChosen();
}

std::optional<RestoreStart> CRestoreSet::Selected() const {
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    const QStringList keys =
        selected.isEmpty() ? QStringList() : TreeLevels::PathOf(m_model.NodeAt(selected.front()));
    const auto set = std::find_if(m_sets.begin(), m_sets.end(), [&keys](const RestoreSet& each) {
        return each.place.Folder() == keys.value(0);
    });
    const auto snapshot = SnapshotOf(keys.value(1));
    if (set == m_sets.end() || !snapshot)
        return {};
    return RestoreStart{*set, *snapshot};
}

PageLine CRestoreSet::Line() const {
    const auto selected = Selected();
    return selected ? PageLine{selected->set.label, CreatedText(selected->snapshot)} : PageLine();
}

void CRestoreSet::Leave() {
    const auto selected = Selected();
    if (!selected)
        return Sheet().Stay({tr("You need to select one snapshot to restore."), m_view});
    m_choice->set = selected->set;
    m_choice->snapshot = selected->snapshot;
    m_choice->hasSnapshot = true;
    m_choice->draft.snapshot = selected->set.place.SnapshotPath(selected->snapshot.name);
    Sheet().Pass();
}
