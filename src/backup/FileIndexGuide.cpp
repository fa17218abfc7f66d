#include "backup/FileIndexGuide.h"

#include "lanes/ProgressNote.h"
#include "page/Console.h"
#include "page/UserPrompts.h"
#include "zep/Mui.h"
#include "zep/Text.h"

using namespace std::chrono_literals;

FileIndexGuide::FileIndexGuide(const Console& console, QWidget& page)
    : QObject(&page), m_console(console), m_page(page), m_loader(console.reader, page) {
    m_pause.setSingleShot(true);
    m_pause.setInterval(500ms);
    connect(&m_pause, &QTimer::timeout, this, &FileIndexGuide::Poll);
}

FileIndexGuide::~FileIndexGuide() = default;

void FileIndexGuide::Ensure(std::function<void()> go) {
    Ask(AskFileIndex, [this, go = std::move(go)](State state) {
        if (state == State::Kept) {
            End();
            return go();
        }
        AskToBuild(state, go);
    });
}

/// Where there is no index, and one can be built.
void FileIndexGuide::AskToBuild(State state, const std::function<void()>& go) {
    if (state != State::NeverBuilt)
        return End(FileIndexRefusal(state));
    const Question question{.text = ZEPMuiGetStringW(Message::AskBuildFileIndex), .destroys = false};
    m_console.prompts.Ask(&m_page, question,
                          [this, go](bool yes) { yes ? Begin(BeginFileIndex, go) : End(); });
}

void FileIndexGuide::Force() {
    Ask(AskFileMonitor, [this](State state) {
        if (const QString refusal = FileIndexRefusal(state); !refusal.isEmpty())
            return End(refusal);
        const QString question = tr("Click 'Yes' to force refresh the file index that is used by file type "
                                    "backup, The initial indexing may "
                                    "take a few minutes, during which the CPU usage may be high too. This is "
                                    "a one-time event. Do you want to "
                                    "continue?");
        m_console.prompts.AskYesNo(&m_page, question,
                                   [this](bool yes) { yes ? Begin(ForceFileIndex, {}) : End(); });
    });
}

void FileIndexGuide::Refresh(std::function<void()> go) {
    Ask(AskFileIndex, [this, go = std::move(go)](State state) {
        if (state == State::Kept)
            Begin(ForgetFileIndexed, go);
        else
            AskToBuild(state, go);
    });
}

void FileIndexGuide::Ask(State (*ask)(const std::stop_token&), std::function<void(State)> answer) {
    if (std::exchange(m_busy, true))
        return;
    m_loader.Command(
        Lane::Databases, [ask](const std::stop_token& stop) { return ask(stop); },
        [answer = std::move(answer)](const Loaded<State>& state) {
            answer(state ? *state : State::Unknown);
        });
}

void FileIndexGuide::Begin(void (*word)(), std::function<void()> go) {
    m_go = std::move(go);
    m_cancelled = false;
    ShowProgress();
    m_loader.Command(
        Lane::Databases,
        [word](const std::stop_token& stop) {
            word();
            return ReadFileIndexing(stop);
        },
        [this](const Loaded<FileIndexing>& loaded) { Take(loaded); });
}

void FileIndexGuide::ShowProgress() {
    m_note = std::make_shared<ProgressNote>();
    const auto cancel = [guide = QPointer(this)] {
        if (!guide)
            return;
        guide->m_cancelled = true;
        if (guide->m_pause.isActive())
            guide->End();
    };
    m_box = m_console.prompts.ShowOperation(
        &m_page,
        {.title = tr("File Index"), .text = tr("Indexing files..."), .progress = m_note, .cancel = cancel});
}

void FileIndexGuide::Poll() {
    m_loader.Command(
        Lane::Databases, [](const std::stop_token& stop) { return ReadFileIndexing(stop); },
        [this](const Loaded<FileIndexing>& loaded) { Take(loaded); });
}

void FileIndexGuide::Take(const Loaded<FileIndexing>& loaded) {
    if (m_cancelled)
        return End();
    const FileIndexing indexing = loaded ? *loaded : FileIndexing();
    m_note->Tell({indexing.files, 0, tr("%1 files found").arg(GroupedNumber(indexing.files))});
    switch (indexing.end) {
    case FileIndexing::End::Running:
        return m_pause.start();
    case FileIndexing::End::Gone:
        return End(FileIndexLostText());
    case FileIndexing::End::Built:
        break;
    }
    const auto go = m_go;
    End();
    if (go)
        go();
}

void FileIndexGuide::End(const QString& message) {
    m_pause.stop();
    m_box.reset();
    m_go = {};
    m_busy = false;
    if (!message.isEmpty())
        m_console.prompts.ShowMessage(&m_page, message);
}
