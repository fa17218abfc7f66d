#include "page/BrenPanel.h"

#include "look/Look.h"
#include "page/MainFrame.h"

#include <QMouseEvent>

CBrenPanel::CBrenPanel(MainFrame& frame, QWidget* parent) : QWidget(parent), m_frame(frame) {
    QPalette colours = palette();
    colours.setColor(QPalette::Window, Look::Paper);
    colours.setColor(QPalette::WindowText, Look::Ink);
    setPalette(colours);
    setAutoFillBackground(true);
    hide();
}

void CBrenPanel::Activate() {
    EnsureCreated();
    m_active = true;
    show();
    m_frame.SetStatusText({});
}

void CBrenPanel::Deactivate() {
    m_active = false;
    hide();
}

void CBrenPanel::OnCommand(int) {}

void CBrenPanel::PostCommand(int command) {
    QMetaObject::invokeMethod(
        this, [this, command] { OnCommand(command); }, Qt::QueuedConnection);
}

void CBrenPanel::EnsureCreated() {
    if (!m_created) {
        m_created = true;
        CreatePanel();
    }
}

void CBrenPanel::CreatePanel() {}

void CBrenPanel::OnPanelClick(const QPoint&) {}

void CBrenPanel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        OnPanelClick(event->position().toPoint());
}
