#include "list/RecordPanel.h"

#include "list/BrenListCtrl.h"

#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QVBoxLayout>

RecordPanel::RecordPanel(const Console& console, ListTable table)
    : CBrenPanel(console), m_table(std::move(table)) {}

void RecordPanel::SetControls(QWidget* controls) {
    m_controls = controls;
    controls->setParent(this);
}

void RecordPanel::CreatePanel() {
    m_view = new RecordView(TheConsole(), *std::exchange(m_table, std::nullopt));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    if (m_controls)
        layout->addWidget(m_controls);
    layout->addWidget(m_view);
    setFocusProxy(m_view);
    connect(m_view, &RecordView::Changed, this, &RecordPanel::ShowState);
    ShowState();
    ReloadEvery(m_view->Page().period);
}

void RecordPanel::Turn(ListTable table) {
    if (m_view)
        m_view->Turn(std::move(table));
    else
        m_table = std::move(table);
}

void RecordPanel::Reload() {
    if (m_view)
        m_view->Read();
}

/// A read that takes longer than the period is left to end.
void RecordPanel::OnPeriod() {
    if (!m_view->IsReading())
        m_view->ReadIfChanged();
}

void RecordPanel::ShowState() {
    SetHelp(m_view->Help());
    TellFailure(m_view->Failure());
    const RecordPage& page = m_view->Page();
    std::vector<FrameAction> toolbar{RefreshAction(page.reload.isEmpty() ? tr("Refresh") : page.reload)};
    for (FrameAction& button : m_view->Buttons())
        toolbar.push_back(std::move(button));
    SetToolbar(std::move(toolbar));
}

void RecordPanel::OpenFind() {
    emit m_view->List().FindRequested();
}
