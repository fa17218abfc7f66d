#pragma once

#include "lanes/ProgressNote.h"
#include "wizard/WizardPage.h"

#include <QFrame>
#include <QTimer>

#include <memory>

class LinkLabel;
class QLabel;
class WorkBar;

/// The line below a wizard's page: what was chosen, what is under way, or what failed. Takes the focus while
/// something is under way, so that readers say it and nothing is pressed by accident.
class WizardLine : public QFrame {
    Q_OBJECT

public:
    explicit WizardLine(QWidget* parent = nullptr);

    void ShowChosen(const PageLine& line);
    /// `note` is read now and then; none: `ShowProgress` tells.
    void ShowBusy(const QString& what, std::shared_ptr<const ProgressNote> note);
    void ShowProgress(const Progress& progress);
    /// `again`: offers to try it again.
    void ShowFailure(const QString& why, bool again);

    bool IsBusy() const { return m_face == Face::Busy; }
    QString Text() const;
    QWidget* Link() const; ///< which tries again

signals:
    void TryAgain();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    enum class Face { Chosen, Busy, Failure };

    void SetFace(Face face, const QString& lead, const QString& rest);

    Face m_face = Face::Chosen;
    QLabel* m_lead;
    QLabel* m_rest;
    LinkLabel* m_again;
    WorkBar* m_bar;
    std::shared_ptr<const ProgressNote> m_note;
    QTimer m_timer;
};
