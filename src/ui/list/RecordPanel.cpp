#include "list/RecordPanel.h"

#include "list/BrenListCtrl.h"
#include "list/FindBar.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "zep/LiveCounters.h"

#include <QVBoxLayout>

namespace {

constexpr std::chrono::milliseconds GlancePeriod{20};

} // namespace

CRecordPanel::CRecordPanel(const Console& console, RecordPage page)
    : CBrenPanel(console), m_page(std::move(page)) {
    SetHelp(m_page.status);
    ReloadEvery(m_page.period);
    connect(&m_glance, &QTimer::timeout, this, &CRecordPanel::ShowFirstRows);
}

void CRecordPanel::CreatePanel() {
    m_list = new CBrenListCtrl(TheConsole().prompts);
    m_list->setAccessibleName(m_page.name);
    m_list->SetTableKind(TableKind::Record);
    m_list->SetEmptyText(m_page.empty);
    AddColumns(*m_list);
    m_list->RememberWidths(m_page.widths);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    layout->addWidget(FindBar::Above(m_list));
    setFocusProxy(m_list);
    SetToolbar(Toolbar());
}

std::vector<FrameAction> CRecordPanel::Toolbar() {
    return {RefreshAction(tr("Refresh"))};
}

void CRecordPanel::Deactivate() {
    m_glance.stop();
    m_coming.reset();
    CBrenPanel::Deactivate();
}

void CRecordPanel::Reload() {
    if (IsActive())
        Read({});
}

void CRecordPanel::OnPeriod() {
    Read(m_page.gated ? m_changes : std::nullopt);
}

void CRecordPanel::Restart() {
    Loader().Cancel();
    m_coming.reset();
    m_shown.reset();
    m_changes.reset();
    TellFailure({});
    if (!m_list)
        return;
    m_list->SetEmptyText(m_page.empty);
    m_list->SetRows({});
    Reload();
}

void CRecordPanel::Read(std::optional<quint32> known) {
    const Stream rows = std::make_shared<RowStream>();
    Loader().Load(
        Lane::Databases,
        [read = Reading(), rows, shown = m_shown, known,
         counters = &TheConsole().counters](std::stop_token stop) {
            Outcome outcome;
            outcome.changes = counters->ZEPTraceCounterGet(TraceCounter::TaskTable);
            outcome.same = known && outcome.changes == known;
            if (!outcome.same) {
                outcome.read = read(*rows, stop);
                outcome.same = outcome.read && shown && rows->All() == shown->All();
            }
            return outcome;
        },
        [this, rows](const Loaded<Outcome>& loaded) {
            if (loaded)
                ShowEnd(*loaded, rows, loaded->read.Sentence());
            else if (loaded.outcome == LoadOutcome::Failed)
                ShowEnd({{ReadOutcome::Failed, {}}, {}, false}, rows, loaded.why);
        });
    m_coming.reset();
    if (m_list->Rows().TotalRows() > 0)
        return;
    if (!m_shown && Failure().isEmpty())
        m_list->SetLoading(m_page.loading.isEmpty() ? tr("Loading...") : m_page.loading);
    m_coming = rows;
    m_glance.start(GlancePeriod);
}

/// Each time as many as are there already, so that a million rows come in some twenty steps.
void CRecordPanel::ShowFirstRows() {
    const std::size_t waiting = m_coming ? m_coming->WaitingCount() : 0;
    if (waiting == 0 || waiting < static_cast<std::size_t>(m_list->Rows().TotalRows()))
        return;
    m_list->AppendRows(m_coming->Take());
    m_shown.reset();
    if (!m_page.listing.isEmpty())
        Frame().SetStatusText(m_page.listing);
}

void CRecordPanel::ShowEnd(const Outcome& outcome, const Stream& rows, const QString& failure) {
    m_glance.stop();
    if (rows == m_coming) {
        m_list->AppendRows(rows->Take());
        m_shown.reset();
    } else if (outcome.read && !outcome.same) {
        m_list->SetRows(rows->All());
    }
    if (outcome.read && (!outcome.same || !m_shown))
        m_shown = rows;
    m_coming.reset();
    m_changes = outcome.read ? outcome.changes : std::nullopt;
    TellFailure(failure);
    m_list->SetEmptyText(Failure().isEmpty()        ? m_page.empty
                         : m_page.failure.isEmpty() ? Failure()
                                                    : m_page.failure);
    OnReadEnded();
}

void CRecordPanel::OnReadEnded() {}
