#pragma once

#include "page/UserPrompts.h"

/// The program's prompts: window-modal boxes.
class WindowPrompts : public UserPrompts {
public:
    using RemoteFolderPicker = std::function<void(QWidget* over, const RemoteFolderRequest& request,
                                                  std::function<void(std::optional<QString>)> answer)>;

    /// The picker is a window of a section; until it is set, such a question counts as cancelled.
    void SetRemoteFolderPicker(RemoteFolderPicker picker) { m_remoteFolders = std::move(picker); }

    void Tell(QWidget* over, const MessageText& message, std::function<void()> done) override;
    void Ask(QWidget* over, const Question& question, std::function<void(bool yes)> answer) override;
    void AskText(QWidget* over, const TextRequest& request,
                 std::function<void(std::optional<QString>)> answer) override;
    void PickPath(QWidget* over, const PickRequest& request,
                  std::function<void(std::optional<QString>)> answer) override;
    void PickRemoteFolder(QWidget* over, const RemoteFolderRequest& request,
                          std::function<void(std::optional<QString>)> answer) override;
    [[nodiscard]] std::shared_ptr<void> ShowOperation(QWidget* over,
                                                      const OperationRequest& request) override;
    void SetClipboardText(const QString& text) override;

private:
    RemoteFolderPicker m_remoteFolders;
};
