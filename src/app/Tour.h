#pragma once

#include "ui/Reader.h"

#include <QString>
#include <QTimer>

#include <memory>

class CBTaskMMCDlg;

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

/// Opens every section in turn, each of its tabs and the first of its cards, waits until it has read, writes
/// a picture of the window, prints the picture's path, and closes the window after the last.
class Tour {
public:
    Tour(CBTaskMMCDlg& window, const IdleWatch& reader, const QString& folder);

private:
    void Step();
    void TakePicture();
    /// Goes on to the next view of the section; false after its last.
    bool ShowNextView();

    CBTaskMMCDlg& m_window;
    const IdleWatch& m_reader;
    QString m_folder;
    QTimer m_timer;
    int m_section = 0;
    int m_view = 0;
    int m_quietSteps = 0;
};
