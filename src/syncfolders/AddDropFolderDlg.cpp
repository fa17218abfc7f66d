#include "syncfolders/AddDropFolderDlg.h"

#include "page/Console.h"
#include "syncplan/LocalFolder.h"
#include "wizard/PathField.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>

CAddDropFolderDlg::CAddDropFolderDlg(const Console& console, const QStringList& names,
                                     std::vector<SyncFolder> folders, QWidget* parent)
    : CBrenDialog(console.service, console.reader, tr("Add New Cloud Sync Folder"), parent),
      m_folders(std::move(folders)), m_names(new QComboBox),
      m_path(new PathField(console.prompts, {.kind = PickKind::Folder,
                                             .caption = tr("Choose Cloud Sync Folder location"),
                                             .start = QDir::homePath()})),
      m_report(std::make_shared<QString>()) {
    AddNote(tr("The files of the storage will be in this folder too, on each computer that has one for it."));
    m_path->setAccessibleName(tr("Location"));
    m_names->addItems(names);
    m_names->setCurrentIndex(-1);
    m_names->setPlaceholderText(tr("Choose one"));
    m_names->setMinimumContentsLength(24);
    AddRow(tr("&Virtual Directory:"), m_names);
    AddRow(tr("&Location:"), m_path);
    connect(m_names, &QComboBox::currentIndexChanged, this, &CAddDropFolderDlg::Propose);
    connect(m_path, &PathField::PathChanged, this,
            [this](const QString& path) { ShowRemark(NestingWarning(path, m_folders)); });
}

/// What was typed stays.
void CAddDropFolderDlg::Propose() {
    if (m_path->Path() != m_proposed || m_names->currentIndex() < 0)
        return;
    m_proposed = ProposedFolder(m_names->currentText());
    m_path->SetPath(m_proposed);
}

SyncFolder CAddDropFolderDlg::Chosen() const {
    return {m_names->currentText(), m_path->Path()};
}

QString CAddDropFolderDlg::Refusal() const {
    if (Chosen().path.isEmpty())
        return tr("Cloud Sync Folder location can not be empty.");
    if (m_names->currentIndex() < 0)
        return tr("Please select the cloud storage for the Cloud Sync Folder.");
    return SyncFolderRefusal(Chosen());
}

/// A folder that stands in the list is added, also when something behind it went wrong: that is told when the
/// dialog is closed.
CBrenDialog::Write CAddDropFolderDlg::Changes() const {
    return {[folder = Chosen(), report = m_report](const ServiceClient& service, std::stop_token stop) {
                const SyncFolderChange change = EnableSyncFolder(service, folder, std::move(stop));
                if (!change.list.stored)
                    return change.Report();
                *report = change.Report();
                return QString();
            },
            {QString::fromLatin1(DropFolders.name)}};
}

QString CAddDropFolderDlg::Report() const {
    return result() == Accepted ? *m_report : QString();
}
