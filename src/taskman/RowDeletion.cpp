#include "taskman/RowDeletion.h"

#include "list/BrenListCtrl.h"
#include "list/VirtualKey.h"
#include "page/Console.h"
#include "page/UserPrompts.h"

namespace {

/// Sends as long as the service answers, and returns the rows that were not deleted.
QStringList DeleteAll(const ServiceClient& service, RowDeletion::Delete remove, const QStringList& ids,
                      std::stop_token stop) {
    QStringList failed;
    bool answers = true;
    for (const QString& id : ids) {
        const ServiceAnswer answer = answers ? remove(service, id, stop) : ServiceAnswer();
        answers = answer || answer.outcome == ServiceOutcome::OtherStatus;
        if (!answer)
            failed.append(id);
    }
    return failed;
}

/// Those of the rows that the list still has.
QStringList Present(const BrenListModel& rows, const QStringList& ids) {
    const QSet<QString> wanted(ids.begin(), ids.end());
    QStringList present;
    for (const ListRow& row : rows.AllRows()) {
        const QString id = row.Id().toString();
        if (wanted.contains(id))
            present.append(id);
    }
    return present;
}

} // namespace

RowDeletion::RowDeletion(const Console& console, CBrenListCtrl& list, int column, Texts texts, Delete remove)
    : QObject(&list), m_service(console.service), m_prompts(console.prompts), m_list(list),
      m_texts(std::move(texts)), m_delete(remove), m_loader(console.reader, list) {
    list.SetMultiSelection(true);
    connect(&list, &CBrenListCtrl::LeftClicked, this, [this, column](int, int clicked, const QString& id) {
        const QStringList selected = m_list.SelectedIds();
        if (clicked == column)
            Ask(selected.contains(id) ? selected : QStringList(id));
    });
    connect(&list, &CBrenListCtrl::KeyReleased, this, [this](int key, unsigned) {
        if (key == DeleteKey)
            Ask(m_list.SelectedIds());
    });
}

void RowDeletion::Ask(const QStringList& clicked) {
    QStringList ids = Present(m_list.Rows(), clicked);
    ids.removeIf([this](const QString& id) { return m_inFlight.contains(id); });
    if (m_asking || ids.isEmpty())
        return;
    m_asking = true;
    m_prompts.AskYesNo(&m_list, ids.size() == 1 ? m_texts.one : m_texts.several, [this, ids](bool yes) {
        m_asking = false;
        if (yes)
            Send(ids);
    });
}

void RowDeletion::Send(const QStringList& ids) {
    const QStringList present = Present(m_list.Rows(), ids);
    if (present.isEmpty())
        return m_prompts.ShowMessage(&m_list, m_texts.failed);
    m_inFlight += QSet<QString>(present.begin(), present.end());
    m_loader.Command(
        Lane::Service,
        [service = m_service, remove = m_delete, present](std::stop_token stop) {
            return DeleteAll(service, remove, present, stop);
        },
        [this, present](const Loaded<QStringList>& failed) {
            m_inFlight -= QSet<QString>(present.begin(), present.end());
            if (!failed || !failed->isEmpty())
                m_prompts.ShowMessage(&m_list, m_texts.failed);
            emit Sent();
        });
}
