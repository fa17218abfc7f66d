#pragma once

#include "development/ViewWalk.h"

#include <QTimer>

class WatchedReader;

/// Goes through every view, waits until it has read, writes a picture of the window or dialog in front,
/// prints the picture's path, and closes the window after the last.
class Tour {
public:
    Tour(CBTaskMMCDlg& window, WatchedReader& reader, std::vector<DialogEntry> dialogs,
         const QString& folder);

private:
    void Step();
    void TakePicture();

    CBTaskMMCDlg& m_window;
    WatchedReader& m_reader;
    ViewWalk m_walk;
    QString m_folder;
    QTimer m_timer;
};
