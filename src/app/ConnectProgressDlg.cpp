#include "app/ConnectProgressDlg.h"

#include "zep/Mui.h"

#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QVBoxLayout>

CConnectProgressDlg::CConnectProgressDlg(ServiceWait& wait, std::chrono::milliseconds tick)
    : m_wait(wait), m_bar(new QProgressBar) {
    setWindowTitle(tr("Connecting to ") + ZEPMuiGetBrandingStringW(Branding::ProductLine) +
                   tr(" Server...."));
    m_bar->setRange(0, ServiceWait::Tries);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(windowTitle());

    auto* text = new QLabel(tr("Waiting for the background service to answer. This takes a few seconds."));
    text->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 24);
    layout->setSpacing(12);
    layout->addWidget(text);
    layout->addWidget(m_bar);
    setMinimumWidth(420);

    connect(&m_timer, &QTimer::timeout, this, &CConnectProgressDlg::OnTick);
    m_timer.start(tick);
}

void CConnectProgressDlg::OnTick() {
    m_bar->setValue(++m_ticks);
    if (m_wait.TakeOpenFailed()) {
        auto* box = new QMessageBox(QMessageBox::Warning, windowTitle(), tr("Open Service Manager Failed\n"),
                                    QMessageBox::Ok, this);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
        m_box = box;
    }
    // The dialog would take the message away with it.
    if (m_box)
        return;
    const ServiceWait::State state = m_wait.CurrentState();
    if (m_ticks >= ServiceWait::Tries)
        Finish(ConnectResult::TimedOut);
    else if (state == ServiceWait::State::Answered)
        Finish(ConnectResult::Answered);
    else if (state == ServiceWait::State::StartRefused)
        Finish(ConnectResult::StartRefused);
}

void CConnectProgressDlg::Finish(ConnectResult result) {
    m_timer.stop();
    m_result = result;
    done(result == ConnectResult::Answered ? Accepted : Rejected);
}
