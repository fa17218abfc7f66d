#pragma once

#include <QPointer>
#include <QSet>
#include <QString>

#include <functional>
#include <vector>

class CBTaskMMCDlg;
class CBrenPanel;
class CTabPanel;
class QWidget;

/// A dialog or wizard of the console, for those who go through all of them.
struct DialogEntry {
    QString name; ///< as in "Bandwidth"
    /// What a person does in the window to open it.
    std::function<void(CBTaskMMCDlg& window)> open;
    /// Fills the wizard's page and goes on; false on its last one.
    std::function<bool(QWidget& dialog)> next = {};
};

/// Shows every view of a window, one after the other: each section, each of its tabs, the first of its cards
/// and that card's tabs, then each dialog and each page of a wizard.
class ViewWalk {
public:
    /// Shows the first view.
    ViewWalk(CBTaskMMCDlg& window, std::vector<DialogEntry> dialogs);

    /// Shows the next view; false after the last.
    bool Next();
    /// What stands in front: the window, or the dialog over it.
    QWidget& Front() const;
    /// As in "task-manager-card-history".
    QString Name() const;

private:
    bool NextView(CBrenPanel* page);
    /// Chooses the box beside the tabs once its turn has come to show the others.
    bool NextTab(CTabPanel& tabs);
    bool NextDialog();

    CBTaskMMCDlg& m_window;
    std::vector<DialogEntry> m_dialogs;
    int m_section = 0;
    int m_dialog = -1;    ///< in front; -1 before the first
    int m_dialogPage = 0; ///< of a wizard
    QPointer<QWidget> m_open;
    QSet<const CBrenPanel*> m_opened; ///< lists whose first card was
};
