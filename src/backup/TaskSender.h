#pragma once

#include "plan/TaskCreation.h"

class CBrenPropertySheet;
struct Console;

/// Sends the record of a wizard's last page. While it is not known whether the service took the one before,
/// it looks for that task first, and says what it found.
class TaskSender {
public:
    explicit TaskSender(const Console& console) : m_console(console) {}

    /// From the page's `Leave`; ends in the sheet's Pass or Stay. `failure` is said before why the service
    /// did not take it, `known` are the tasks that had the name already.
    void Send(CBrenPropertySheet& sheet, const NewTask& task, const QString& failure,
              const QStringList& known);

    bool IsSending() const { return m_sending; }
    /// Waits for the answer no longer.
    void GiveUp() { m_stop.request_stop(); }

private:
    /// A record of which it is not known what became of it.
    struct Unsure {
        NewTask task;
        QStringList known;
    };

    void SendNow(CBrenPropertySheet& sheet, const NewTask& task, const QString& failure,
                 const QStringList& known, const QString& busy);
    void Judge(CBrenPropertySheet& sheet, const ListedTasks& listed, const NewTask& task,
               const std::function<void(const QString& busy)>& send);
    void TellTaken(CBrenPropertySheet& sheet, const NewTask& task, const std::function<void()>& send);

    const Console& m_console;
    std::optional<Unsure> m_unsure;
    std::stop_source m_stop;
    bool m_sending = false;
};
