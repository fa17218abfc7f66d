#pragma once

#include "stores/AuditTraceStore.h"

#include <QWidget>

class QCheckBox;
class QDateEdit;
class QLineEdit;
class QPushButton;

/// What a user asks of the audit trace: text, times and count, and the button that begins or stops the query.
/// The filter of the last query stands in it again the next time.
class AuditFilterForm : public QWidget {
    Q_OBJECT

public:
    AuditFilterForm();

    /// As it is asked for now.
    AuditFilter Filter() const;
    /// Asks for all between these times, which stay to be chosen.
    void AskForTimes(const QString& from, const QString& to);
    /// Keeps what is asked for, but for times that were not chosen here.
    void Remember() const;

    /// While a query runs the button stops it.
    void SetRunning(bool running);

signals:
    void QueryWanted();
    void StopWanted();

protected:
    /// The Enter key in a field begins a query.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void LayOut();
    void Recall();
    void Choose(const QCheckBox* period, bool chosen);

    QCheckBox* m_containing;
    QLineEdit* m_text;
    QCheckBox* m_between;
    QDateEdit* m_from;
    QDateEdit* m_to;
    QCheckBox* m_lastDay;
    QCheckBox* m_given; ///< the times of AskForTimes
    std::pair<QString, QString> m_times;
    QLineEdit* m_maximum;
    QPushButton* m_query;
    bool m_running = false;
};
