#pragma once

#include "clouddrive/RemoteLevels.h"
#include "page/Console.h"
#include "page/UserPrompts.h"

#include <QWidget>

class CheckTreeView;
class NoticeLine;
class QHBoxLayout;
class QLineEdit;

/// Chooses a folder of the service's tree, whose levels are listed as they are opened. A path may be typed or
/// pasted as well. New folders can be made, and storage be mounted, on the way.
class FolderPicker : public QWidget {
    Q_OBJECT

public:
    /// Opens the mount wizard over a window, and calls back when it has closed.
    using MountWizard =
        std::function<void(const Console& console, QWidget* over, std::function<void(bool mounted)> done)>;
    /// What the Enter key does in the tree.
    enum class Enter { Takes, Opens };

    /// Without a mount wizard its button is not there.
    FolderPicker(const Console& console, RemoteFolderRequest request, MountWizard mount, Enter enter);

    /// Lists the first level and goes to where the request starts. Once, in the window that it belongs to.
    void Start();
    /// Of the selected folder; empty when none is.
    QString Path() const;
    /// What stands in the field, as in "/Home/Backup"; empty when nothing does.
    QString TypedPath() const;
    /// Goes to what was typed first.
    void Take();
    /// Lists the present level again.
    void Refresh();
    /// At the end of the row of buttons.
    void AddButtons(QWidget* buttons);

signals:
    void Taken();
    /// Another folder is selected, or none, or a path was typed.
    void Changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Arrival { Select, SelectAsFar, Take };

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
    Enter m_enter;
    RemoteLevels m_levels;
    CheckTreeModel m_model;
    PageLoader m_loader;
    CheckTreeView* m_view;
    QLineEdit* m_path;
    NoticeLine* m_notice;
    QHBoxLayout* m_buttons;
    std::optional<Walk> m_walk;
    bool m_makesFolder = false;
    QString m_lost; ///< was selected before its level was listed again
};
