#include "list/RecordView.h"

#include "list/BrenListCtrl.h"
#include "list/FindBar.h"
#include "list/RowDeletion.h"
#include "page/Console.h"

#include <QAction>
#include <QHideEvent>
#include <QLocale>
#include <QPointer>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::milliseconds GlancePeriod{20};

} // namespace

RecordView::RecordView(const Console& console, ListTable table, QWidget* parent)
    : QWidget(parent), m_console(console), m_table(std::move(table)),
      m_list(new CBrenListCtrl(console.prompts)), m_deletion(new RowDeletion(console, *m_list)),
      m_loader(console.reader, *this) {
    m_list->setAccessibleName(m_table.page.name);
    m_list->SetTableKind(TableKind::Record);
    m_list->SetEmptyText(m_table.page.empty);
    m_list->WorkOn(console.reader);
    for (const ListColumn& column : m_table.columns)
        m_list->AddColumn(column.title, column.width, column.alignment, column.name, column.least);
    if (!m_table.page.widths.isEmpty())
        m_list->RememberWidths(m_table.page.widths);
    AddCommands();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(FindBar::For(m_list));
    layout->addWidget(m_list);
    layout->addWidget(m_deletion);
    setFocusProxy(m_list);
    connect(m_deletion, &RowDeletion::Sent, this, &RecordView::Read);
    connect(m_list, &CBrenListCtrl::CountsChanged, this, &RecordView::Changed);
    connect(&m_glance, &QTimer::timeout, this, &RecordView::ShowFirstRows);
}

/// The table's commands are asked for anew at each click: they may have turned to another subject.
void RecordView::AddCommands() {
    const auto command = [this](std::size_t number) -> const RowCommand& { return m_table.commands[number]; };
    int cells = 0;
    for (const RowCommand& said : m_table.commands)
        cells += said.icon != 0;
    m_list->SetCommandColumns(cells);
    int column = int(m_table.columns.size()) - cells;
    for (std::size_t number = 0; number < m_table.commands.size(); ++number) {
        m_list->SetMultiSelection(true);
        const int own = command(number).icon != 0 ? column++ : -1;
        connect(m_list, &CBrenListCtrl::LeftClicked, this, [=, this](int, int clicked, const TakenRow& row) {
            if (clicked != own)
                return;
            const std::vector<TakenRow> selected = m_list->SelectedRows();
            const bool among = std::any_of(selected.begin(), selected.end(),
                                           [&row](const TakenRow& other) { return row.HasIdOf(other); });
            RunCommand(command(number),
                       among && !command(number).single ? selected : std::vector<TakenRow>{row});
        });
        connect(m_list, &CBrenListCtrl::KeyReleased, this, [=, this](int key) {
            if (key == command(number).key)
                RunCommand(command(number), m_list->SelectedRows());
        });
        auto* action = new QAction(command(number).caption, m_list);
        connect(action, &QAction::triggered, this,
                [=, this] { RunCommand(command(number), m_list->SelectedRows()); });
        m_list->addAction(action);
    }
}

void RecordView::RunCommand(const RowCommand& command, const std::vector<TakenRow>& rows) {
    if (rows.empty())
        return;
    if (command.remove)
        m_deletion->Ask(command, rows);
    else
        command.run(*this, command.single ? std::vector<TakenRow>{rows.front()} : rows);
}

bool RecordView::IsEnabled(const TableAction& action) const {
    const bool ready = action.needs == TableAction::Rows || !IsReading();
    return m_list->Rows().TotalRows() > 0 && ready && !m_busy.contains(action.caption);
}

void RecordView::Run(std::size_t number) {
    const TableAction action = m_table.actions[number];
    if (!IsEnabled(action))
        return;
    m_busy.insert(action.caption);
    emit Changed();
    action.run(*this, [view = QPointer(this), caption = action.caption] {
        if (!view)
            return;
        view->m_busy.remove(caption);
        emit view->Changed();
    });
}

std::vector<FrameAction> RecordView::Buttons() {
    std::vector<FrameAction> buttons;
    for (std::size_t number = 0; number < m_table.actions.size(); ++number) {
        const TableAction& action = m_table.actions[number];
        buttons.push_back({action.caption, action.image, [this, number] { Run(number); }, IsEnabled(action)});
    }
    return buttons;
}

void RecordView::Read() {
    if (isVisible())
        Load({});
}

void RecordView::ReadIfChanged() {
    Load(m_table.page.changes ? m_changes : std::nullopt);
}

void RecordView::CancelRead() {
    m_loader.Cancel();
}

void RecordView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (event->spontaneous()) // the window became an icon
        return;
    m_loader.Cancel();
}

void RecordView::Turn(ListTable table) {
    const bool otherSubject = table.page.subject != m_table.page.subject;
    const bool otherEdition = table.page.edition != m_table.page.edition;
    m_table = std::move(table);
    if (otherSubject) {
        m_loader.Cancel();
        m_coming.reset();
        m_shown.reset();
        m_changes.reset();
        m_failure.clear();
        m_readAt = {};
        m_list->SetEmptyText(m_table.page.empty);
        m_list->SetRows(RowSet());
    }
    if (otherSubject || otherEdition)
        Read();
    emit Changed();
}

void RecordView::Load(std::optional<quint32> known) {
    const Stream rows = m_table.makeStream();
    m_loader.Load(
        m_table.page.lane,
        [read = m_table.read, changes = m_table.page.changes, rows, shown = m_shown,
         known](const std::stop_token& stop) {
            Outcome outcome;
            outcome.changes = changes ? changes() : std::nullopt;
            outcome.same = known && outcome.changes == known;
            if (!outcome.same) {
                outcome.read = read(*rows, stop);
                outcome.same = outcome.read && shown && AreEqual(rows->Rows(), shown->Rows(), stop);
            }
            return outcome;
        },
        [this, rows](const Loaded<Outcome>& loaded) {
            if (loaded)
                ShowEnd(*loaded, rows, loaded->read.Sentence());
            else if (loaded.outcome == LoadOutcome::Failed)
                ShowEnd({{ReadOutcome::Failed, {}}, {}, false}, rows, loaded.why);
            else
                ShowCancelled(rows);
        });
    TellReading();
    m_coming.reset();
    if (m_list->Rows().TotalRows() > 0)
        return;
    if (!m_shown && m_failure.isEmpty())
        m_list->SetLoading(m_table.page.loading.isEmpty() ? tr("Loading...") : m_table.page.loading);
    m_coming = rows;
    m_glance.start(GlancePeriod);
}

/// A read has begun, or was given up.
void RecordView::TellReading() {
    if (std::any_of(m_table.actions.begin(), m_table.actions.end(),
                    [](const TableAction& action) { return action.needs == TableAction::AllRows; }))
        emit Changed();
}

/// Each time as many as are there already, so that a million rows come in some twenty steps.
void RecordView::ShowFirstRows() {
    const int shown = m_list->Rows().TotalRows();
    const int come = m_coming ? m_coming->Count() : 0;
    if (const auto& steps = m_table.page.steps;
        steps && shown == 0 && come == 0 && !steps->Read().text.isEmpty())
        m_list->SetLoading(steps->Read().text);
    if (come == shown || come < 2 * shown)
        return;
    m_list->AppendRows(m_coming->Rows());
    m_shown.reset();
    m_listing = true;
    emit Changed();
}

void RecordView::ShowCancelled(const Stream& rows) {
    if (rows == m_coming) {
        m_glance.stop();
        m_listing = false;
        m_shown.reset();
        m_list->AppendRows(rows->Rows());
        m_coming.reset();
    }
    TellReading();
}

void RecordView::ShowEnd(const Outcome& outcome, const Stream& rows, const QString& failure) {
    m_glance.stop();
    m_listing = false;
    if (rows == m_coming) {
        m_list->AppendRows(rows->Rows());
        m_shown.reset();
    } else if (outcome.read && !outcome.same) {
        m_list->SetRows(rows->Rows());
    }
    if (outcome.read && (!outcome.same || !m_shown))
        m_shown = rows;
    m_coming.reset();
    m_changes = outcome.read ? outcome.changes : std::nullopt;
    m_failure = failure;
    if (outcome.read)
        m_readAt = QTime::currentTime();
    m_list->SetEmptyText(m_failure.isEmpty()              ? m_table.page.empty
                         : m_table.page.failure.isEmpty() ? m_failure
                                                          : m_table.page.failure);
    emit Changed();
}

QString RecordView::Help() const {
    if (m_listing && !m_table.page.listing.isEmpty())
        return m_table.page.listing;
    if (!m_table.page.tellsAge || !m_readAt.isValid())
        return m_table.page.status;
    return tr("%1 Read at %2, new ones by \"Refresh\".")
        .arg(m_table.page.status, QLocale().toString(m_readAt, u"HH:mm:ss"_s));
}
