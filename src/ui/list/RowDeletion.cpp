#include "list/RowDeletion.h"

#include "list/BrenListCtrl.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/UserPrompts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

RowDeletion::RowDeletion(const Console& console, CBrenListCtrl& list, QWidget* parent)
    : QWidget(parent), m_console(console), m_list(list), m_progress(new QLabel),
      m_stop(new QPushButton(tr("Stop"))) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 8, 0, 0);
    line->addWidget(m_progress);
    line->addWidget(m_stop);
    line->addStretch();
    m_progress->setFont(Look::Font(Look::Small));
    m_progress->setTextFormat(Qt::PlainText);
    connect(m_stop, &QPushButton::clicked, this, [this] {
        m_list.setFocus(Qt::OtherFocusReason);
        for (const BatchInWork& batch : m_batches)
            batch->stopped = true;
    });
    hide();
}

std::vector<TakenRow> RowDeletion::Present(const std::vector<TakenRow>& rows) const {
    const RowSet& all = m_list.Rows().AllRows();
    std::vector<TakenRow> present;
    RowIds moved;
    for (const TakenRow& row : rows) {
        if (row.place < all.Count() && all.At(row.place).HasIdOf(row))
            present.push_back(all.At(row.place));
        else
            moved.insert(row);
    }
    for (int place = 0; place < all.Count() && !moved.empty(); ++place) {
        TakenRow row = all.At(place);
        if (moved.erase(row) > 0)
            present.push_back(std::move(row));
    }
    return present;
}

/// The one row by its words, several by their number.
QString RowDeletion::Subject(const std::vector<TakenRow>& rows) const {
    if (rows.size() > 1)
        return tr("%1 rows").arg(rows.size());
    QStringList words;
    const BrenListModel& list = m_list.Rows();
    for (int column = 0; column < list.columnCount() && words.size() < 2; ++column) {
        const QString text = WordsOfCell(rows.front().Cell(column));
        if (!list.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().isEmpty() && !text.isEmpty())
            words.append(text);
    }
    return words.join(u", "_s);
}

void RowDeletion::Ask(const RowCommand& command, const std::vector<TakenRow>& clicked) {
    std::vector<TakenRow> rows = Present(clicked);
    std::erase_if(rows, [this](const TakenRow& row) { return m_inFlight.contains(row); });
    if (m_asking || rows.empty())
        return;
    m_asking = true;
    const QString question = rows.size() == 1 ? command.deletion.one : command.deletion.several;
    const QString subject =
        command.deletion.subject ? command.deletion.subject(rows, m_list.Rows().AllRows()) : Subject(rows);
    m_console.prompts.AskYesNo(&m_list, question + u'\n' + subject, [this, command, rows](bool yes) {
        m_asking = false;
        if (yes)
            Begin(command, rows);
    });
}

void RowDeletion::Begin(const RowCommand& command, const std::vector<TakenRow>& rows) {
    std::vector<TakenRow> present = Present(rows);
    if (command.deletion.before)
        std::sort(present.begin(), present.end(), command.deletion.before);
    if (present.empty())
        return m_console.prompts.ShowMessage(&m_list, command.deletion.failed);
    m_inFlight.insert(present.begin(), present.end());
    const auto batch = std::make_shared<Batch>(Batch{command, present});
    m_batches.push_back(batch);
    ShowProgress();
    SendNext(batch);
}

/// As a read among those of the page in front: commands overtake it, and other reads have their turn.
void RowDeletion::SendNext(const BatchInWork& batch) {
    auto answer = std::make_shared<std::optional<ServiceAnswer>>();
    const auto send = [service = m_console.service, remove = batch->command.remove,
                       row = batch->rows[batch->next],
                       answer](const std::stop_token& stop) { *answer = remove(service, row, stop); };
    m_console.reader.Submit({Lane::Service, [] { return ReadPriority::Front; }, std::stop_source(), send,
                             [page = QPointer(this), batch, answer] {
                                 if (page)
                                     page->OnAnswer(batch, *answer);
                             }});
}

/// Goes on as long as the service answers, and the rows do not hang on each other.
void RowDeletion::OnAnswer(const BatchInWork& batch, const std::optional<ServiceAnswer>& answer) {
    const bool done = answer && *answer;
    const bool answers = done || (answer && answer->outcome == ServiceOutcome::OtherStatus);
    batch->anyFailed = batch->anyFailed || !done;
    batch->stopped = batch->stopped || !answers || (!done && batch->command.deletion.before);
    m_inFlight.erase(batch->rows[batch->next]);
    ++batch->next;
    if (batch->stopped || batch->next == batch->rows.size())
        return End(batch);
    ShowProgress();
    SendNext(batch);
}

void RowDeletion::End(const BatchInWork& batch) {
    for (; batch->next < batch->rows.size(); ++batch->next)
        m_inFlight.erase(batch->rows[batch->next]);
    std::erase(m_batches, batch);
    ShowProgress();
    if (batch->anyFailed)
        m_console.prompts.ShowMessage(&m_list, batch->command.deletion.failed);
    emit Sent();
}

/// A single row needs no words.
void RowDeletion::ShowProgress() {
    std::size_t sent = 0;
    std::size_t all = 0;
    for (const BatchInWork& batch : m_batches) {
        sent += batch->next;
        all += batch->rows.size();
    }
    if (all > 1)
        m_progress->setText(tr("Deleting %1 of %2...").arg(sent + 1).arg(all));
    else if (m_stop->hasFocus())
        m_list.setFocus(Qt::OtherFocusReason);
    setVisible(all > 1);
}
