#pragma once

#include "plan/BackupDraft.h"
#include "plan/Writers.h"
#include "wizard/CheckTreeModel.h"
#include "wizard/WizardPage.h"

#include <QElapsedTimer>
#include <QTimer>

#include <memory>

class CheckTreeView;
class ProgressNote;
struct Console;

/// What the pages of the application wizard share.
struct ApplicationChoice {
    ApplicationDraft draft;
    QStringList names = {}; ///< of what is selected, as they are shown
};

/// Asks which applications, or which parts of them, are backed up.
class CWritersPage : public WizardPage {
    Q_OBJECT

public:
    CWritersPage(const Console& console, std::shared_ptr<ApplicationChoice> choice);

    void Fill() override;
    void Leave() override;
    PageLine Line() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString Show(const Loaded<WriterReading>& reading);
    void ShowWriters(const std::vector<Writer>& writers);
    void ForgetUnlisted();
    void TellTime();

    const Console& m_console;
    std::shared_ptr<ApplicationChoice> m_choice;
    CheckTreeModel m_tree;
    CheckTreeView* m_view;
    std::shared_ptr<ProgressNote> m_note;
    QElapsedTimer m_time; ///< since the list was asked for
    QTimer m_clock;
};
