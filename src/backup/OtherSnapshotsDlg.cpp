#include "backup/OtherSnapshotsDlg.h"

#include "look/Formatters.h"
#include "look/Look.h"
#include "page/Console.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

enum Column { TimeColumn, SizeColumn, ModifiedColumn };
constexpr int NameRole = Qt::UserRole;

} // namespace

OtherSnapshotsDlg::OtherSnapshotsDlg(const Console& console, const RestoreSet& set, const QString& path,
                                     QWidget* parent)
    : QDialog(parent), m_console(console), m_place(set.place), m_path(path), m_left(set.snapshots),
      m_list(new QTreeWidget), m_state(new QLabel), m_use(new QPushButton(tr("&Use This Snapshot"))),
      m_loader(console.reader, *this) {
    setWindowTitle(tr("In Other Snapshots"));
    auto* name = new QLabel(path);
    name->setTextFormat(Qt::PlainText);
    name->setWordWrap(true);
    m_list->setAccessibleName(windowTitle());
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setHeaderLabels({tr("Snapshot"), tr("Size"), tr("Modified")});
    m_list->header()->resizeSection(TimeColumn, 250);
    m_list->header()->resizeSection(SizeColumn, 90);
    m_list->setFont(Look::Font(Look::Small));
    Look::TintSelection(*m_list);
    m_state->setTextFormat(Qt::PlainText);
    Look::SetInk(*m_state, Look::Muted);
    auto* answers = new QDialogButtonBox(QDialogButtonBox::Cancel);
    answers->addButton(m_use, QDialogButtonBox::AcceptRole);
    m_use->setDefault(true);
    m_use->setEnabled(false);
    connect(answers, &QDialogButtonBox::accepted, this, &OtherSnapshotsDlg::accept);
    connect(answers, &QDialogButtonBox::rejected, this, &OtherSnapshotsDlg::reject);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this,
            [this] { m_use->setEnabled(!m_list->selectedItems().isEmpty()); });
    connect(m_list, &QTreeWidget::itemActivated, this, &OtherSnapshotsDlg::accept);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(12);
    column->addWidget(name);
    column->addWidget(m_list, 1);
    column->addWidget(m_state);
    column->addWidget(answers);
    resize(600, 380);
    LookOn();
}

void OtherSnapshotsDlg::LookOn() {
    if (m_left.empty()) {
        m_state->setText(m_list->topLevelItemCount() > 0 ? QString()
                                                         : tr("It is in no snapshot of this backup."));
        return;
    }
    const Snapshot snapshot = m_left.back();
    m_left.pop_back();
    m_state->setText(tr("Looking into the snapshot of %1...").arg(TimeText(snapshot)));
    const QString file = m_place.SnapshotPath(snapshot.name) + u'/' + m_path;
    m_loader.Load(
        Lane::Service,
        [service = m_console.service, file](const std::stop_token& stop) {
            return FindListedFile(service, file, stop);
        },
        [this, snapshot](const Loaded<ListedFile>& loaded) {
            if (loaded.outcome == LoadOutcome::Cancelled)
                return;
            Take(snapshot, loaded.value);
            LookOn();
        });
}

void OtherSnapshotsDlg::Take(const Snapshot& snapshot, const std::optional<ListedFile>& file) {
    if (!file)
        return;
    if (file == m_last) {
        QTreeWidgetItem* same = m_list->topLevelItem(m_list->topLevelItemCount() - 1);
        const int more = same->data(SizeColumn, NameRole).toInt() + 1;
        same->setData(SizeColumn, NameRole, more);
        same->setText(TimeColumn,
                      tr("%1 and %2 before").arg(same->data(ModifiedColumn, NameRole).toString()).arg(more));
        return;
    }
    m_last = file;
    auto* item = new QTreeWidgetItem({TimeText(snapshot),
                                      file->size ? FormatSize(quint64(*file->size)).trimmed() : QString(),
                                      QString::fromUtf8(file->modified)});
    item->setData(TimeColumn, NameRole, snapshot.name);
    item->setData(ModifiedColumn, NameRole, TimeText(snapshot));
    m_list->addTopLevelItem(item);
    if (!m_list->currentItem())
        m_list->setCurrentItem(item);
}

void OtherSnapshotsDlg::accept() {
    const QList<QTreeWidgetItem*> selected = m_list->selectedItems();
    const auto snapshot = selected.isEmpty()
                              ? std::nullopt
                              : SnapshotOf(selected.front()->data(TimeColumn, NameRole).toString());
    if (!snapshot)
        return;
    m_chosen = *snapshot;
    QDialog::accept();
}
