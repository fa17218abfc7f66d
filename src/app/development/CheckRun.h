#pragma once

#include "development/Sweep.h"
#include "development/ViewWalk.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>

class WatchedReader;

/// A find of the sweep, and the view where it was made.
struct ViewFind {
    QString view;
    SweepFind find;
};

/// A line for each place, as in "fit | task-manager and 3 more | CBTaskMMCDlg/QLabel 'Title' | wants a width
/// of 90, has 70".
QStringList ReportLines(const std::vector<ViewFind>& finds);

/// Takes a window through all of its views and sweeps each: at once for words, while its reads are held back,
/// and by all rules when they have ended.
class CheckRun : public QObject {
    Q_OBJECT

public:
    struct Options {
        SweepRules rules = Sweeps::Everything;
        /// How long a view may take to be filled before it is swept as it is, as when the service hangs.
        std::chrono::milliseconds patience{5000};
    };

    CheckRun(CBTaskMMCDlg& window, WatchedReader& reader, std::vector<DialogEntry> dialogs,
             const Options& options);

    const std::vector<ViewFind>& Finds() const { return m_finds; }
    int ViewCount() const { return m_views; }

signals:
    void Finished();

private:
    void Enter();
    void Step();
    void Note(const std::vector<SweepFind>& finds);

    WatchedReader& m_reader;
    Options m_options;
    ViewWalk m_walk;
    QTimer m_timer;
    QElapsedTimer m_since; ///< the view was shown
    int m_views = 0;
    std::vector<ViewFind> m_finds;
};
