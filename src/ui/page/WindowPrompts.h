#pragma once

#include "page/UserPrompts.h"

/// The program's prompts: window-modal boxes.
class WindowPrompts : public UserPrompts {
public:
    void ShowMessage(QWidget* over, const QString& text, std::function<void()> done = {},
                     const QString& details = {}) override;
    void AskYesNo(QWidget* over, const QString& question, std::function<void(bool yes)> answer,
                  const QString& details = {}) override;
    void PickPath(QWidget* over, const PickRequest& request,
                  std::function<void(std::optional<QString>)> answer) override;
    void SetClipboardText(const QString& text) override;
};
