#include "backup/BackupSettingsPanel.h"

#include "backup/BackupSettingsPage.h"
#include "look/Look.h"
#include "plan/BackupTask.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

using namespace std::chrono_literals;

BackupSettingsPanel::BackupSettingsPanel(const Console& console)
    : CBrenPanel(console), m_page(new BackupSettingsPage(console)) {
    m_page->setParent(this);
    SetHelp(tr("View and change the settings of a backup."));
    SetToolbar({RefreshAction()});
    ReloadEvery(5s);
    connect(m_page, &BackupSettingsPage::Saved, this, &BackupSettingsPanel::Reload);
}

void BackupSettingsPanel::CreatePanel() {
    m_names = new QComboBox;
    m_names->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_names->setMinimumContentsLength(30);
    m_names->setAccessibleName(tr("Backup"));
    auto* label = new QLabel(tr("&Backup:"));
    label->setBuddy(m_names);
    m_choice = new QWidget;
    auto* row = new QHBoxLayout(m_choice);
    row->setContentsMargins(Look::PageMargin + 4, Look::PageMargin, Look::PageMargin + 4, 0);
    row->addWidget(label);
    row->addWidget(m_names, 1);
    m_empty = new QLabel;
    m_empty->setTextFormat(Qt::PlainText);
    m_empty->setWordWrap(true);
    m_empty->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_empty->setMargin(Look::PageMargin + 4);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_choice);
    column->addWidget(m_empty);
    column->addWidget(m_page, 1);
    connect(m_names, &QComboBox::currentIndexChanged, this, &BackupSettingsPanel::Turn);
    ShowEmpty(tr("Loading..."));
}

void BackupSettingsPanel::Activate() {
    CBrenPanel::Activate();
    if (!m_backups.all.empty())
        Turn();
}

void BackupSettingsPanel::Deactivate() {
    m_page->Deactivate();
    CBrenPanel::Deactivate();
}

void BackupSettingsPanel::Reload() {
    Loader().Load(
        Lane::Databases,
        [counters = &TheConsole().counters](std::stop_token stop) {
            return ReadTaskList([](const TaskRecord& task) { return ListedFlavour(task).has_value(); },
                                *counters, std::move(stop));
        },
        [this](const Loaded<CardEntries>& loaded) {
            if (!IsActive() || loaded.outcome == LoadOutcome::Cancelled)
                return;
            const QString failure = loaded ? loaded->read.Sentence() : loaded.why;
            if (failure.isEmpty() && loaded)
                Show(*loaded);
            else if (m_backups.all.empty())
                ShowEmpty(failure);
            TellFailure(failure);
            m_page->ShowFailure(failure);
        });
}

/// The chosen one stays chosen as long as it is there.
void BackupSettingsPanel::Show(const CardEntries& entries) {
    m_backups = entries;
    const QString before = m_names->currentData().toString();
    const QString wanted = m_preferred.isEmpty() ? before : m_preferred;
    m_preferred.clear();
    std::stable_sort(m_backups.all.begin(), m_backups.all.end(),
                     [](const CardEntry* a, const CardEntry* b) { return a->key < b->key; });
    if (m_backups.all.empty())
        return ShowEmpty(tr("There is no backup whose settings could be shown."));
    const QSignalBlocker blocked(m_names);
    if (!HasNames()) { // whoever has the list open keeps it as long as it holds
        m_names->clear();
        for (const CardEntry* backup : m_backups.all)
            m_names->addItem(backup->title, backup->id);
    }
    m_names->setCurrentIndex(std::max(0, m_names->findData(wanted)));
    Turn();
}

bool BackupSettingsPanel::HasNames() const {
    bool same = m_names->count() == int(m_backups.all.size());
    for (int at = 0; same && at < m_names->count(); ++at) {
        const CardEntry& backup = *m_backups.all[std::size_t(at)];
        same = m_names->itemData(at) == backup.id && m_names->itemText(at) == backup.title;
    }
    return same;
}

void BackupSettingsPanel::ShowEmpty(const QString& text) {
    m_empty->setText(text);
    m_empty->show();
    m_choice->hide();
    m_page->Deactivate();
    LeaveHead(false);
}

void BackupSettingsPanel::Turn() {
    const int chosen = m_names->currentIndex();
    if (chosen < 0 || chosen >= int(m_backups.all.size()))
        return;
    m_empty->hide();
    m_choice->show();
    m_page->Turn(static_cast<const TaskRow&>(*m_backups.all[std::size_t(chosen)]));
    if (m_page->IsActive())
        return;
    LeaveHead(true);
    m_page->Activate();
}
