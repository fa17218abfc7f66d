#include "app/ConnectProgressDlg.h"

#include "zep/Mui.h"

#include <QMessageBox>
#include <QProgressBar>

CConnectProgressDlg::CConnectProgressDlg(ServiceWait& wait, QString consoleTitle,
                                         std::chrono::milliseconds tick)
    : WaitDlg(tr("Connecting to ") + ZEPMuiGetBrandingStringW(Branding::ProductLine) + tr(" Server...."),
              tr("Waiting for the background service to answer. This takes a few seconds.")),
      m_wait(wait), m_consoleTitle(std::move(consoleTitle)) {
    Bar()->setRange(0, ServiceWait::Tries);
    Bar()->setAccessibleName(windowTitle());
    connect(&m_timer, &QTimer::timeout, this, &CConnectProgressDlg::OnTick);
    m_timer.start(tick);
}

void CConnectProgressDlg::OnTick() {
    Bar()->setValue(++m_ticks);
    if (m_wait.TakeOpenFailed())
        ShowOpenFailed();
    m_result = ResultNow();
    FinishWhenDone();
}

void CConnectProgressDlg::ShowOpenFailed() {
    auto* box = new QMessageBox(QMessageBox::Critical, m_consoleTitle, tr("Open Service Manager Failed\n"),
                                QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QDialog::finished, this, [this] {
        m_box = nullptr;
        FinishWhenDone();
    });
    box->open();
    m_box = box;
}

std::optional<ConnectResult> CConnectProgressDlg::ResultNow() const {
    const ServiceWait::State state = m_wait.CurrentState();
    const bool isLastTick = m_ticks >= ServiceWait::Tries;
    if (state == ServiceWait::State::StartRefused || (isLastTick && state == ServiceWait::State::Starting))
        return ConnectResult::StartRefused;
    if (isLastTick)
        return ConnectResult::TimedOut;
    if (state == ServiceWait::State::Answered)
        return ConnectResult::Answered;
    return {};
}

void CConnectProgressDlg::FinishWhenDone() {
    if (!m_result)
        return;
    m_timer.stop();
    if (!m_box) // which the dialog would take away with it
        done(m_result == ConnectResult::Answered ? Accepted : Rejected);
}
