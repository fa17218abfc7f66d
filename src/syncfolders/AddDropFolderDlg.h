#pragma once

#include "page/BrenDialog.h"
#include "syncplan/SyncFolders.h"

class PathField;
class QComboBox;
struct Console;

/// Asks for a virtual directory and the local folder that is kept in step with it.
class CAddDropFolderDlg : public CBrenDialog {
    Q_OBJECT

public:
    /// Offers the directories of these names; `folders` are those that are kept in step already.
    CAddDropFolderDlg(const Console& console, const QStringList& names, std::vector<SyncFolder> folders,
                      QWidget* parent);

    /// What of a folder that was added does not stand; empty when all does, or none was added.
    QString Report() const;

protected:
    QString Refusal() const override;
    Write Changes() const override;
    Lane WriteLane() const override { return Lane::Network; }

private:
    SyncFolder Chosen() const;
    void Propose();

    std::vector<SyncFolder> m_folders;
    QComboBox* m_names;
    PathField* m_path;
    QString m_proposed;
    std::shared_ptr<QString> m_report; ///< written on the lane before its answer
};
