#pragma once

#include <QString>

#include <functional>
#include <optional>

class QWidget;

enum class PickKind { FileToOpen, FileToSave, Folder };

struct PickRequest {
    PickKind kind = PickKind::Folder;
    QString caption;
    QString start;  ///< a folder, or a file of it
    QString filter; ///< "CSV files (*.csv);;All files (*)"; empty: all
};

/// Every message box, question, picker and clipboard write. Nothing waits here: an answer comes by its
/// callback, later; none comes once `over` is gone, the widget that asks and whose window the box blocks.
/// All texts are shown as plain text.
class UserPrompts {
public:
    virtual ~UserPrompts() = default;

    /// `details` can be folded out; `done` is called when the box is closed.
    virtual void ShowMessage(QWidget* over, const QString& text, std::function<void()> done = {},
                             const QString& details = {}) = 0;

    /// Yes and No. Closing the box is No.
    virtual void AskYesNo(QWidget* over, const QString& question, std::function<void(bool yes)> answer,
                          const QString& details = {}) = 0;

    /// Nothing when cancelled.
    virtual void PickPath(QWidget* over, const PickRequest& request,
                          std::function<void(std::optional<QString>)> answer) = 0;

    virtual void SetClipboardText(const QString& text) = 0;
};
