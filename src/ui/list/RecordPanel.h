#pragma once

#include "lanes/PageLoader.h"
#include "list/RowStream.h"
#include "page/BrenPanel.h"
#include "stores/ReadResult.h"

class CBrenListCtrl;

/// What a record panel says, and how often it reads again.
struct RecordPage {
    QString name; ///< for screen readers; the list's widths are kept under `widths`
    QString widths;
    QString status;
    QString empty;
    QString loading = {};               ///< until the first row has come; empty: "Loading..."
    QString listing = {};               ///< as the status, until all rows have come; empty: none
    QString failure = {};               ///< in a list whose read failed; empty: the read's own sentence
    std::chrono::milliseconds period{}; ///< of reading again by itself; 0: never
    bool gated = false; ///< that reading is done only when the service's change counter has moved
};

/// A page with one record table, its find bar above it. The first rows are shown while the others are still
/// read; a refresh is applied when it has ended, and when it brought something new. A failed one changes no
/// row.
class CRecordPanel : public CBrenPanel {
    Q_OBJECT

public:
    void Deactivate() override;
    /// Reads again while the page is shown, whatever the change counter says.
    void Reload() override;

protected:
    /// Puts the rows into the stream until it is told to stop. Runs on the databases' lane: it holds values
    /// and parts of the console, never the page.
    using RowReader = std::function<ReadResult(RowStream&, std::stop_token)>;

    CRecordPanel(const Console& console, RecordPage page);

    void CreatePanel() override;
    virtual void AddColumns(CBrenListCtrl& list) = 0;
    virtual RowReader Reading() const = 0;
    virtual std::vector<FrameAction> Toolbar();
    virtual void OnReadEnded();

    void OnPeriod() override;
    /// Forgets all rows: the page turns to another subject, which its Reading knows already.
    void Restart();
    CBrenListCtrl& List() const { return *m_list; }

private:
    struct Outcome {
        ReadResult read;
        std::optional<quint32> changes; ///< the change counter before the read
        bool same = false;              ///< as the rows that are shown
    };
    using Stream = std::shared_ptr<RowStream>;

    void Read(std::optional<quint32> known);
    void ShowFirstRows();
    void ShowEnd(const Outcome& outcome, const Stream& rows, const QString& failure);

    RecordPage m_page;
    CBrenListCtrl* m_list = nullptr;
    Stream m_coming; ///< of the read under way that fills an empty list
    Stream m_shown;  ///< all of it is in the list
    std::optional<quint32> m_changes;
    QTimer m_glance; ///< at what has come
};
