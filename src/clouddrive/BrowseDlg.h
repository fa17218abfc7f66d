#pragma once

#include "clouddrive/FolderPicker.h"

#include <QDialog>

class QPushButton;

/// Picks a folder of the service's tree.
class CBrowseDlg : public QDialog {
    Q_OBJECT

public:
    /// Without a mount wizard its button is not there.
    CBrowseDlg(const Console& console, RemoteFolderRequest request, FolderPicker::MountWizard mount = {},
               QWidget* parent = nullptr);

    /// Of the selected folder; empty when none is.
    QString Path() const { return m_picker->Path(); }

    /// Goes to the path that was typed first.
    void accept() override;
    /// Remembers the size.
    void done(int result) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    FolderPicker* m_picker;
    QPushButton* m_ok;
};

/// The picker as `WindowPrompts` wants it. The console outlives the dialog.
void PickRemoteFolder(const Console& console, const FolderPicker::MountWizard& mount, QWidget* over,
                      const RemoteFolderRequest& request, std::function<void(std::optional<QString>)> answer);
