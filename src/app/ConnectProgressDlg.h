#pragma once

#include "app/ServiceWait.h"
#include "app/StartUp.h"

#include <QDialog>
#include <QPointer>
#include <QTimer>

class QProgressBar;

/// "Connecting to ... Server....": watches a ServiceWait for at most 30 ticks.
class CConnectProgressDlg : public QDialog {
    Q_OBJECT

public:
    /// The wait outlives the dialog: after the last tick its thread may still be inside a request.
    explicit CConnectProgressDlg(ServiceWait& wait, std::chrono::milliseconds tick = ServiceWait::Interval);

    /// Valid once the dialog has finished.
    ConnectResult Result() const { return m_result; }

private:
    void OnTick();
    void Finish(ConnectResult result);

    ServiceWait& m_wait;
    QTimer m_timer;
    QProgressBar* m_bar;
    int m_ticks = 0;
    QPointer<QDialog> m_box;
    ConnectResult m_result = ConnectResult::ClosedByUser;
};
