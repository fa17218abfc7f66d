#include "backup/SourcePage.h"

#include "look/Formatters.h"
#include "page/Console.h"
#include "wizard/BrenPropertySheet.h"
#include "wizard/CheckTreeView.h"
#include "wizard/TreeFindField.h"

#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype NamesTold = 4;

/// The names of the first of them, and how many more there are.
QString NamesOf(const QStringList& folders) {
    const QString names = Isolated(SelectionName(folders.first(std::min(folders.size(), NamesTold))));
    const qsizetype more = folders.size() - NamesTold;
    return more > 0 ? CSourcePage::tr("%1 and %2 more").arg(names).arg(more) : names;
}

} // namespace

CSourcePage::CSourcePage(const Console& console, std::shared_ptr<BackupDraft> draft,
                         const LocalFolders& folders)
    : WizardPage(tr("What to Backup"),
                 tr("Tick the folders to back up. Untick a folder below a ticked one to leave it out.")),
      m_draft(std::move(draft)), m_model(console.reader, *this, Lane::Apart, ListLocalFolders(folders)),
      m_view(new CheckTreeView(m_model)) {
    m_view->setAccessibleName(tr("Folders"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(new TreeFindField(*m_view, tr("Find a folder")));
    column->addWidget(m_view, 1);
    connect(&m_model, &CheckTreeModel::ChoiceEdited, this, &WizardPage::Edited);
}

void CSourcePage::Fill() {
    m_model.List();
}

PageLine CSourcePage::Line() const {
    const FolderSelection selection = SelectionOf(m_model.Walk());
    if (selection.sources.isEmpty())
        return {{}, tr("Nothing is chosen yet.")};
    const qsizetype folders = selection.sources.size();
    const qsizetype leftOut = selection.exclusions.size();
    QString lead = folders == 1 ? tr("1 folder") : tr("%1 folders").arg(folders);
    if (leftOut > 0)
        lead += tr(", %1 left out").arg(leftOut);
    QString rest = NamesOf(selection.sources);
    if (leftOut > 0)
        rest += u"  \u00B7  "_s + tr("without %1").arg(NamesOf(selection.exclusions));
    return {lead + u'.', rest};
}

void CSourcePage::Leave() {
    const FolderSelection selection = SelectionOf(m_model.Walk());
    if (selection.sources.isEmpty())
        return Sheet().Stay({tr("Please select at least one folder to backup!"), m_view, true});
    if (!selection.clash.isEmpty())
        return Sheet().Stay({tr("\"%1\" is ticked in one place of the tree and left out in another one.")
                                 .arg(selection.clash),
                             m_view});
    Sheet().Check(
        Lane::Apart, tr("Looking at the folders..."),
        [sources = selection.sources](const std::stop_token& stop) { return FindGone(sources, stop); },
        [this, selection](const Loaded<QString>& gone) {
            if (!gone)
                return Sheet().Stay({gone.why, m_view});
            if (!gone->isEmpty())
                return StayFor(*gone);
            m_draft->sources = selection.sources;
            m_draft->exclusions = selection.exclusions;
            Sheet().Pass();
        });
}

void CSourcePage::StayFor(const QString& gone) {
    QString why = tr("The folder \"%1\" is not there any more.").arg(gone);
    for (const WalkedNode& selected : m_model.Walk().selected) {
        if (LocalPath(selected.path) != gone)
            continue;
        if (selected.node) {
            m_view->GoTo(*selected.node);
        } else {
            // Nobody could untick what is not shown.
            m_model.SetTicked(selected.path, false);
            why += u' ' + tr("It is not ticked any more.");
        }
    }
    Sheet().Stay({why, m_view});
}
