#include "list/RecordPanel.h"

#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/MainFrame.h"

#include <QVBoxLayout>

CRecordPanel::CRecordPanel(const Console& console, ListTable table)
    : CBrenPanel(console.frame), m_console(console), m_table(std::move(table)) {}

void CRecordPanel::SetControls(QWidget* controls) {
    m_controls = controls;
    controls->setParent(this);
}

void CRecordPanel::CreatePanel() {
    m_view = new RecordView(m_console, *std::exchange(m_table, std::nullopt));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    if (m_controls)
        layout->addWidget(m_controls);
    layout->addWidget(m_view);
    setFocusProxy(m_view);
    connect(m_view, &RecordView::Changed, this, &CRecordPanel::ShowState);
}

void CRecordPanel::Turn(ListTable table) {
    if (m_view)
        m_view->Turn(std::move(table));
    else
        m_table = std::move(table);
}

void CRecordPanel::Activate() {
    CBrenPanel::Activate();
    std::vector<FrameAction> toolbar{{m_view->Page().reload.isEmpty() ? tr("Refresh") : m_view->Page().reload,
                                      Command::Refresh, RefreshIcon}};
    for (const TableAction& action : m_view->Actions())
        toolbar.push_back({action.caption, int(toolbar.size()), action.image, m_view->IsEnabled(action)});
    Frame().SetToolbar(*this, toolbar);
    ShowState();
    m_view->Read();
    if (m_view->Page().period.count() > 0)
        m_view->Loader().StartTimer(m_view->Page().period, [this] { m_view->ReadIfChanged(); });
}

void CRecordPanel::Deactivate() {
    m_view->Loader().StopTimer();
    CBrenPanel::Deactivate();
}

/// The actions are the commands from 1 on.
void CRecordPanel::OnCommand(int command) {
    if (command == Command::Refresh)
        m_view->Read();
    else if (command > 0 && std::size_t(command) <= m_view->Actions().size())
        m_view->Run(m_view->Actions()[std::size_t(command) - 1]);
}

void CRecordPanel::ShowState() {
    if (!IsActive())
        return;
    Frame().SetStatusText(m_view->Status());
    int number = 0;
    for (const TableAction& action : m_view->Actions())
        Frame().EnableCommand(++number, m_view->IsEnabled(action));
}
