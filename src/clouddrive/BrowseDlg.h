#pragma once

#include "clouddrive/RemoteLevels.h"
#include "page/Console.h"
#include "page/UserPrompts.h"

#include <QDialog>

class CheckTreeView;
class NoticeLine;
class QLineEdit;
class QPushButton;

/// Picks a folder of the service's tree, whose levels are listed as they are opened. A path may be typed or
/// pasted as well. New folders can be made, and storage be mounted, on the way.
class CBrowseDlg : public QDialog {
    Q_OBJECT

public:
    /// Opens the mount wizard over a window, and calls back when it has closed.
    using MountWizard =
        std::function<void(const Console& console, QWidget* over, std::function<void(bool mounted)> done)>;

    /// Without a mount wizard its button is not there.
    CBrowseDlg(const Console& console, RemoteFolderRequest request, MountWizard mount = {},
               QWidget* parent = nullptr);

    /// Of the selected folder; empty when none is.
    QString Path() const;

    /// Goes to the path that was typed first.
    void accept() override;
    /// Remembers the size.
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Arrival { Select, SelectAsFar, Accept };

    /// A way down the tree that is under way while its levels are listed.
    struct Walk {
        QString path;
        QStringList keys;
        Arrival arrival;
    };

    void BuildLayout();
    const TreeLevels::Node* Selected() const;
    bool IsTypedPathSelected() const;
    void GoTo(const QString& path, Arrival arrival);
    /// `listed` is the level whose listing has just ended, if one has.
    void WalkOn(const TreeLevels::Node* listed = nullptr);
    /// The walk got as far as `node`; `missing` is the name that is not below it, or empty.
    void EndWalk(const TreeLevels::Node& node, const QString& missing = {});
    void OnListed(const QStringList& keys);
    void OnSelected();
    void AskNewFolder();
    void MakeFolder(const QString& parent, const QString& name);
    void Mount();
    /// Lists all anew from the root and selects the path.
    void Refill(const QString& path);

    const Console& m_console;
    RemoteFolderRequest m_request;
    MountWizard m_mount;
    RemoteLevels m_levels;
    CheckTreeModel m_model;
    PageLoader m_loader;
    CheckTreeView* m_view;
    QLineEdit* m_path;
    NoticeLine* m_notice;
    QPushButton* m_newFolder;
    QPushButton* m_ok = nullptr;
    std::optional<Walk> m_walk;
    bool m_makesFolder = false;
    QString m_lost; ///< was selected before its level was listed again
};

/// The picker as `WindowPrompts` wants it. The console outlives the dialog.
void PickRemoteFolder(const Console& console, const CBrowseDlg::MountWizard& mount, QWidget* over,
                      const RemoteFolderRequest& request, std::function<void(std::optional<QString>)> answer);
