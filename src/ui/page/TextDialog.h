#pragma once

#include "page/UserPrompts.h"

#include <QDialog>

class PasswordField;
class QLabel;
class QLineEdit;

/// Asks for one text, and stays open with a reason as long as the text is refused.
class TextDialog : public QDialog {
    Q_OBJECT

public:
    TextDialog(TextRequest request, QWidget* parent);

    QString Text() const;
    void accept() override;

private:
    TextRequest m_request;
    QLineEdit* m_edit = nullptr;
    QLabel* m_reason;
};
