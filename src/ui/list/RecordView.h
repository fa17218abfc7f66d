#pragma once

#include "lanes/PageLoader.h"
#include "list/ListTable.h"
#include "page/MainFrame.h"

#include <QSet>
#include <QTime>

class CBrenListCtrl;
class RowDeletion;
struct Console;

/// A record table at work, its find bar above it: the first rows are shown while the others are still read; a
/// refresh is applied when it has ended, and when it brought something new. A failed one changes no row. A
/// page may hold several.
class RecordView : public QWidget {
    Q_OBJECT

public:
    RecordView(const Console& console, ListTable table, QWidget* parent = nullptr);

    /// Reads again, whatever the change counter says.
    void Read();
    /// Reads again unless the table has a change counter which has not moved since.
    void ReadIfChanged();
    /// Gives the read under way up. What it has brought to an empty list stays.
    void CancelRead();
    bool IsReading() const { return m_loader.IsReading(); }

    /// Takes a table of the same columns: of another subject, whose rows take the place of all there are, or
    /// of another edition, which is read at once.
    void Turn(ListTable table);

    const RecordPage& Page() const { return m_table.page; }
    /// The table's actions as buttons of its page.
    std::vector<FrameAction> Buttons();

    /// What a page says of it while all is well.
    QString Help() const;
    /// Why the last read failed; empty when it did not.
    const QString& Failure() const { return m_failure; }

    CBrenListCtrl& List() const { return *m_list; }
    const Console& TheConsole() const { return m_console; }
    PageLoader& Loader() { return m_loader; }

signals:
    /// What Help, Failure and Buttons say.
    void Changed();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    struct Outcome {
        ReadResult read;
        std::optional<quint32> changes; ///< the change counter before the read
        bool same = false;              ///< as the rows that are shown
    };
    using Stream = std::shared_ptr<RowStream>;

    bool IsEnabled(const TableAction& action) const;
    void Run(std::size_t number);
    void AddCommands();
    void RunCommand(const RowCommand& command, const std::vector<TakenRow>& rows);
    void Load(std::optional<quint32> known);
    void TellReading();
    void ShowFirstRows();
    void ShowCancelled(const Stream& rows);
    void ShowEnd(const Outcome& outcome, const Stream& rows, const QString& failure);

    const Console& m_console;
    ListTable m_table;
    CBrenListCtrl* m_list;
    RowDeletion* m_deletion;
    Stream m_coming; ///< of the read under way that fills an empty list
    Stream m_shown;  ///< all of it is in the list
    bool m_listing = false;
    std::optional<quint32> m_changes;
    QString m_failure;
    QTime m_readAt;
    QSet<QString> m_busy; ///< the captions of the actions under way
    QTimer m_glance;      ///< at what has come
    PageLoader m_loader;
};
