#pragma once

#include "list/ListTable.h"

#include <QPointer>
#include <QWidget>

#include <memory>

class CBrenListCtrl;
class QLabel;
class QPushButton;
struct Console;

/// Deletes rows of a list after a question that says how many: one request a row on the service's lane, so
/// that others come in between. While several are deleted it is a line that says how far it is, with a button
/// to stop. What fails is told once; those rows stay, and stay selected.
class RowDeletion : public QWidget {
    Q_OBJECT

public:
    /// Of rows of the list, which outlives this.
    RowDeletion(const Console& console, CBrenListCtrl& list, QWidget* parent = nullptr);

    /// Those of the rows that are still there and not on their way out already.
    void Ask(const RowCommand& command, const std::vector<TakenRow>& clicked);

signals:
    /// All were sent, answered or not: what the list shows is out of date.
    void Sent();

private:
    /// What was confirmed at once. It goes on when the page is left, and ends when the list is gone.
    struct Batch {
        RowCommand command;
        std::vector<TakenRow> rows;
        std::size_t next = 0;
        bool anyFailed = false;
        bool stopped = false; ///< nothing more is sent
    };
    using BatchInWork = std::shared_ptr<Batch>;

    std::vector<TakenRow> Present(const std::vector<TakenRow>& rows) const;
    QString Subject(const std::vector<TakenRow>& rows) const;
    void Begin(const RowCommand& command, const std::vector<TakenRow>& rows);
    void SendNext(const BatchInWork& batch);
    void OnAnswer(const BatchInWork& batch, const std::optional<ServiceAnswer>& answer);
    void End(const BatchInWork& batch);
    void ShowProgress();

    const Console& m_console;
    CBrenListCtrl& m_list;
    QLabel* m_progress;
    QPushButton* m_stop;
    bool m_asking = false;
    RowIds m_inFlight;
    std::vector<BatchInWork> m_batches; ///< the oldest first
};
