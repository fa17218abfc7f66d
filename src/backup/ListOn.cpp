#include "backup/ListOn.h"

#include "look/Look.h"
#include "page/LinkLabel.h"
#include "wizard/CheckTreeView.h"
#include "wizard/TreeFindField.h"

#include <QHBoxLayout>

using Listing = TreeLevels::Listing;

ListOn::ListOn(CheckTreeView& view, QWidget* parent)
    : QWidget(parent), m_view(view), m_find(new TreeFindField(view, tr("Find in the snapshot"))),
      m_progress(new LinkLabel) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Look::TextInset);
    row->addWidget(m_find);
    row->addWidget(m_progress, 1);
    m_progress->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // takes what the window has
    connect(m_find, &TreeFindField::WordsChanged, this, [this] {
        m_stopped = false;
        m_listed = 0;
        m_progress->SetText({});
    });
    connect(m_find, &TreeFindField::LookedAtAll, this, &ListOn::GoOn);
    connect(m_progress, &LinkLabel::LinkClicked, this, &ListOn::Stop);
    // A level without a row gives nothing to look at.
    connect(
        &view.Tree(), &CheckTreeModel::Listed, this,
        [this] {
            if (!m_find->IsLooking())
                GoOn();
        },
        Qt::QueuedConnection);
}

void ListOn::GoOn() {
    if (m_stopped || m_find->Words().isEmpty())
        return;
    CheckTreeModel& tree = m_view.Tree();
    for (const TreeLevels::Node* node = NextNode(tree.Levels().Root()); node; node = NextNode(*node)) {
        if (node->listing == Listing::Asking)
            return; // goes on when that is listed
        if (node->listing != Listing::NotAsked || !node->entry.canOpen || node->isMessage)
            continue;
        ++m_listed;
        ShowProgress(node->entry.name);
        return tree.List(tree.IndexOf(*node));
    }
    m_progress->SetText({});
}

void ListOn::Stop() {
    m_stopped = true;
    m_progress->SetText(tr("Looked into %1 more folders.").arg(m_listed));
}

void ListOn::ShowProgress(const QString& folder) {
    QString name = folder;
    name.remove(u'<');
    m_progress->SetText(
        tr("Looking into %1... %2 so far. <a>Cancel</a>").arg(name, QString::number(m_listed)));
}
