#pragma once

#include "app/ServiceWait.h"
#include "app/StartUp.h"
#include "app/WaitDlg.h"

#include <QPointer>
#include <QTimer>

/// "Connecting to ... Server....": watches a ServiceWait for at most 30 ticks. A box of its own keeps it
/// open, but changes nothing about how it ends.
class CConnectProgressDlg : public WaitDlg {
    Q_OBJECT

public:
    /// The wait outlives the dialog. `consoleTitle` is that of the box.
    CConnectProgressDlg(ServiceWait& wait, QString consoleTitle,
                        std::chrono::milliseconds tick = ServiceWait::Interval);

    /// Valid once the dialog has finished.
    ConnectResult Result() const { return m_result.value_or(ConnectResult::ClosedByUser); }

private:
    void OnTick();
    void ShowOpenFailed();
    std::optional<ConnectResult> ResultNow() const;
    void FinishWhenDone();

    ServiceWait& m_wait;
    QString m_consoleTitle;
    QTimer m_timer;
    int m_ticks = 0;
    QPointer<QDialog> m_box;
    std::optional<ConnectResult> m_result; ///< the first that came
};
