#pragma once

#include "lanes/PageLoader.h"
#include "service/ServiceClient.h"

#include <QSet>

class CBrenListCtrl;
class UserPrompts;
struct Console;

/// Deletes rows of a list after a question: the clicked one or all selected ones, by their delete cells or
/// the Delete key. One request a row, one box when any failed; the failed rows stay, and stay selected.
class RowDeletion : public QObject {
    Q_OBJECT

public:
    struct Texts {
        QString one;     ///< the question for one row
        QString several; ///< the question for several rows
        QString failed;
    };
    /// Called on the service's lane. The row's id says all that it needs.
    using Delete = ServiceAnswer (*)(const ServiceClient& service, const QString& rowId,
                                     std::stop_token stop);

    /// Serves the list, which owns it, by clicks into `column`.
    RowDeletion(const Console& console, CBrenListCtrl& list, int column, Texts texts, Delete remove);

signals:
    /// All were sent, answered or not: what the list shows is out of date.
    void Sent();

private:
    void Ask(const QStringList& clicked);
    void Send(const QStringList& ids);

    const ServiceClient& m_service;
    UserPrompts& m_prompts;
    CBrenListCtrl& m_list;
    Texts m_texts;
    Delete m_delete;
    bool m_asking = false;
    QSet<QString> m_inFlight;
    PageLoader m_loader;
};
