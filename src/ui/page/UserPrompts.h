#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

class ProgressNote;
class QWidget;

struct MessageText {
    QString text = {};
    QString details = {}; ///< can be folded out
    QString title = {};   ///< of the window; empty: that of the window that asks
};

struct Question {
    QString text = {};
    QString details = {}; ///< can be folded out
    QString title = {};   ///< of the window; empty: that of the window that asks
    QString yes = {};     ///< the button's own words; empty: Yes
    QString no = {};      ///< the button's own words; empty: No
    bool destroys = true; ///< No is the button that the Enter key presses; otherwise Yes
    QString beside = {};  ///< words of a further button, which leaves the question open; empty: none
    std::function<void()> besideRun = {}; ///< what that does
};

struct TextRequest {
    QString title = {};  ///< of the window; empty: that of the window that asks
    QString label = {};  ///< above the field
    QString text = {};   ///< stands in the field at first, selected
    bool secret = false; ///< typed unseen, and shown on demand
    std::function<QString(const QString& text)> refuse = {}; ///< why a text cannot be taken; empty: it can
};

enum class PickKind { FileToOpen, FileToSave, Folder };

struct PickRequest {
    PickKind kind = PickKind::Folder;
    QString caption = {};
    QString start = {};  ///< a folder, or a file of it
    QString filter = {}; ///< "CSV files (*.csv);;All files (*)"; empty: all
    QString suffix = {}; ///< that a file to save gets when it is named without one, as "csv"
};

/// A folder of the service's tree; paths are as in "/Home/Backup".
struct RemoteFolderRequest {
    QString caption = {};
    QString start = {};                                      ///< opened and selected as far as it is there
    bool hiddenToo = false;                                  ///< offers the service's hidden folders as well
    bool oneLevel = false;                                   ///< folders of the first level only
    bool homeIsRoot = false;                                 ///< the folder "Home" may be shown as "/"
    std::function<QString(const QString& path)> refuse = {}; ///< why a folder cannot be taken; empty: it can
};

/// Work that a lane does while its window waits. How long it has taken is shown beside its progress.
struct OperationRequest {
    QString title = {};
    QString text = {};
    std::shared_ptr<ProgressNote> progress = {}; ///< none: only that it goes on
    std::function<void()> cancel = {};           ///< called once at most; none: it cannot be cancelled
    std::function<void()> leave = {}; ///< "go on in the background": the box closes; none: it cannot be left
};

/// Every message box, question, picker and clipboard write. Nothing waits here: an answer comes by its
/// callback, later; none comes once `over` is gone, the widget that asks and whose window the box blocks.
/// All texts are shown as plain text.
class UserPrompts {
public:
    virtual ~UserPrompts() = default;

    /// `done` is called when the box is closed.
    virtual void Tell(QWidget* over, const MessageText& message, std::function<void()> done) = 0;

    /// Closing the box is No.
    virtual void Ask(QWidget* over, const Question& question, std::function<void(bool yes)> answer) = 0;

    /// Nothing when cancelled.
    virtual void AskText(QWidget* over, const TextRequest& request,
                         std::function<void(std::optional<QString>)> answer) = 0;

    /// Nothing when cancelled.
    virtual void PickPath(QWidget* over, const PickRequest& request,
                          std::function<void(std::optional<QString>)> answer) = 0;

    /// Nothing when cancelled.
    virtual void PickRemoteFolder(QWidget* over, const RemoteFolderRequest& request,
                                  std::function<void(std::optional<QString>)> answer) = 0;

    /// Stands as long as the caller keeps what is returned, which it drops when the work has ended: also
    /// after `cancel`, until when the box says that it is being cancelled.
    [[nodiscard]] virtual std::shared_ptr<void> ShowOperation(QWidget* over,
                                                              const OperationRequest& request) = 0;

    virtual void SetClipboardText(const QString& text) = 0;

    /// The usual message.
    void ShowMessage(QWidget* over, const QString& text, std::function<void()> done = {},
                     const QString& details = {}) {
        Tell(over, {text, details, {}}, std::move(done));
    }

    /// The usual question: Yes and No, No being the default.
    void AskYesNo(QWidget* over, const QString& question, std::function<void(bool yes)> answer,
                  const QString& details = {}) {
        Ask(over, {question, details, {}, {}, {}, true}, std::move(answer));
    }
};
