#pragma once

#include "list/RowSet.h"
#include "page/BrenPanel.h"

class CBrenListCtrl;

/// A row of a summary. Without a detail it keeps the one that it shows.
struct SummaryRow {
    QString title;
    std::optional<QString> detail;
};

/// A look at one subject, read again every second: titles and details, fixed in their order.
class SummaryPanel : public CBrenPanel {
    Q_OBJECT

public:
    /// The widths of the columns are remembered under `widths`.
    /// `titleWidth` is that of the first column while nobody has drawn it.
    SummaryPanel(const Console& console, QString widths, int titleWidth = 170);

protected:
    void CreatePanel() override;
    enum class Known { Before, Read };
    /// What is known before the first read has ended, where a word says that it is under way, or since.
    void SetRows(const std::vector<SummaryRow>& rows, Known known = Known::Read);
    /// A click on the row's detail, or the Enter key: the row as it was then.
    virtual void OnRowClicked(const TakenRow& row) { Q_UNUSED(row) }
    /// Details of another subject are none of the next one.
    void ForgetRows() { m_rows.clear(); }

private:
    QString m_widths;
    int m_titleWidth;
    std::vector<SummaryRow> m_rows;
    CBrenListCtrl* m_list = nullptr;
};
