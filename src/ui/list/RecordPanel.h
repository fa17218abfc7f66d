#pragma once

#include "list/ListTable.h"
#include "list/RecordView.h"
#include "page/BrenPanel.h"

/// A page with one record table, read again while it is shown as the table says.
class CRecordPanel : public CBrenPanel {
    Q_OBJECT

public:
    CRecordPanel(const Console& console, ListTable table);

    /// Turns to a table of the same columns; before the panel is made too.
    void Turn(ListTable table);
    /// Stands above the table. The panel owns it.
    void SetControls(QWidget* controls);

    void Activate() override;
    void Deactivate() override;
    void OnCommand(int command) override;

    RecordView& View() { return *m_view; }

protected:
    void CreatePanel() override;

private:
    void ShowState();

    const Console& m_console;
    std::optional<ListTable> m_table; ///< until the view is made
    QWidget* m_controls = nullptr;
    RecordView* m_view = nullptr;
};
