#pragma once

#include "list/ListTable.h"
#include "list/RecordView.h"
#include "page/BrenPanel.h"

/// A page with one record table, read again while it is shown as the table says.
class RecordPanel : public CBrenPanel {
    Q_OBJECT

public:
    RecordPanel(const Console& console, ListTable table);

    /// Turns to a table of the same columns; before the panel is made too.
    void Turn(ListTable table);
    /// Stands above the table; given before the panel is made, which owns it.
    void SetControls(QWidget* controls);

    void Reload() override;
    bool CanFind() const override { return m_view; }
    void OpenFind() override;

    /// Null until the panel is made.
    RecordView* View() const { return m_view; }

protected:
    void CreatePanel() override;
    void OnPeriod() override;

private:
    void ShowState();

    std::optional<ListTable> m_table; ///< until the view is made
    QWidget* m_controls = nullptr;
    RecordView* m_view = nullptr;
};
