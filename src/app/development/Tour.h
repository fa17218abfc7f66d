#pragma once

#include "lanes/Reader.h"

#include <QSet>
#include <QString>
#include <QTimer>

#include <memory>

class CBTaskMMCDlg;
class CBrenPanel;
class CTabPanel;

/// A Reader that knows whether any work is under way.
class IdleWatch : public Reader {
public:
    explicit IdleWatch(Reader& reader) : m_reader(reader), m_pending(std::make_shared<int>(0)) {}

    void Submit(Job job) override;
    bool IsIdle() const { return *m_pending == 0; }

private:
    Reader& m_reader;
    std::shared_ptr<int> m_pending;
};

/// Opens every section in turn, each of its tabs, the first of its cards and that card's tabs, waits until it
/// has read, writes a picture of the window, prints the picture's path, and closes the window after the last.
class Tour {
public:
    Tour(CBTaskMMCDlg& window, const IdleWatch& reader, const QString& folder);

private:
    void Step();
    void TakePicture();
    /// Goes on to the next view below the page; false after its last.
    bool ShowNextView(CBrenPanel* page);
    /// Chooses the box beside the tabs once its turn has come to show the others.
    bool ShowNextTab(CTabPanel& tabs);
    /// As in "task-manager-card-history".
    QString ViewName() const;

    CBTaskMMCDlg& m_window;
    const IdleWatch& m_reader;
    QString m_folder;
    QTimer m_timer;
    int m_section = 0;
    QSet<const CBrenPanel*> m_opened; ///< lists whose first card was
    int m_quietSteps = 0;
};
