#include "cards/SummaryPanel.h"

#include "list/BrenListCtrl.h"
#include "look/Look.h"

#include <QVBoxLayout>

namespace {

constexpr std::chrono::milliseconds FirstPeriod{100};
constexpr std::chrono::milliseconds Period{1000};

} // namespace

SummaryPanel::SummaryPanel(const Console& console, QString widths, int titleWidth)
    : CBrenPanel(console), m_widths(std::move(widths)), m_titleWidth(titleWidth) {
    ReloadEvery(Period, FirstPeriod);
}

void SummaryPanel::CreatePanel() {
    m_list = new CBrenListCtrl(TheConsole().prompts);
    m_list->setAccessibleName(tr("Summary"));
    m_list->AddColumn(tr("Info"), m_titleWidth);
    m_list->AddColumn(tr("Detail"), 220);
    m_list->RememberWidths(m_widths);
    connect(m_list, &CBrenListCtrl::LeftClicked, this,
            [this](int, int, const TakenRow& row) { OnRowClicked(row); });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    layout->addWidget(m_list);
    setFocusProxy(m_list);
}

void SummaryPanel::SetRows(const std::vector<SummaryRow>& rows, Known known) {
    m_rows.resize(rows.size());
    QString word = known == Known::Before ? tr("Reading...") : QString(); // in the first row that lacks one
    std::vector<ListRow> shown;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        m_rows[row].title = rows[row].title;
        if (rows[row].detail)
            m_rows[row].detail = rows[row].detail;
        const QString detail = m_rows[row].detail ? *m_rows[row].detail : std::exchange(word, QString());
        shown.emplace_back(QString::number(row), QStringList{m_rows[row].title, detail});
    }
    if (m_list)
        m_list->SetRows(std::move(shown));
}
