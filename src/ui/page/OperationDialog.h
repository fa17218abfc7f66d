#pragma once

#include "page/UserPrompts.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

class QLabel;
class QPushButton;
class WorkBar;

/// Shows work that goes on elsewhere: its progress, how long it has taken, and the ways out of waiting for
/// it.
class OperationDialog : public QDialog {
    Q_OBJECT

public:
    OperationDialog(OperationRequest request, QWidget* parent);

    /// Closing the box by hand is Cancel where there is one, and nothing otherwise.
    void reject() override;
    /// The work has ended.
    void End();

private:
    void Leave();
    void ShowProgress();

    OperationRequest m_request;
    QLabel* m_state;
    QLabel* m_elapsed;
    WorkBar* m_bar;
    QPushButton* m_cancel;
    QElapsedTimer m_since;
    QTimer m_timer;
};
