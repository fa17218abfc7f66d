#pragma once

#include "lanes/PageLoader.h"
#include "plan/FileIndexing.h"

#include <functional>

struct Console;
class ProgressNote;

/// Leads a person to an index of files: asks what must be asked, and shows how its building goes on. One
/// thing at a time; what is asked for meanwhile is swallowed.
class FileIndexGuide : public QObject {
    Q_OBJECT

public:
    /// Boxes stand over the page, which owns it.
    FileIndexGuide(const Console& console, QWidget& page);
    ~FileIndexGuide() override;

    /// Calls `go` when the index can be used: at once, or after it was built; not when a person has called
    /// that off.
    void Ensure(std::function<void()> go);
    /// Asks, and lets the monitor build the index anew.
    void Force();
    /// Waits until the monitor says that the index is up to date; asks and builds one where there is none.
    void Refresh(std::function<void()> go);

private:
    using State = FileIndexState;
    void Ask(State (*ask)(const std::stop_token&), std::function<void(State)> answer);
    void AskToBuild(State state, const std::function<void()>& go);
    void Begin(void (*word)(), std::function<void()> go);
    void ShowProgress();
    void Poll();
    void Take(const Loaded<FileIndexing>& loaded);
    void End(const QString& message = {});

    const Console& m_console;
    QWidget& m_page;
    bool m_busy = false;
    bool m_cancelled = false;
    std::function<void()> m_go;
    std::shared_ptr<ProgressNote> m_note;
    std::shared_ptr<void> m_box;
    QTimer m_pause;
    PageLoader m_loader;
};
