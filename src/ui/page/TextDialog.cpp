#include "page/TextDialog.h"

#include "look/Look.h"
#include "page/PasswordField.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

TextDialog::TextDialog(TextRequest request, QWidget* parent)
    : QDialog(parent), m_request(std::move(request)), m_reason(new QLabel) {
    auto* label = new QLabel(m_request.label);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    m_reason->setTextFormat(Qt::PlainText);
    m_reason->setWordWrap(true);
    Look::SetInk(*m_reason, Look::Failed);
    m_reason->hide();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->addWidget(label);
    if (m_request.secret) {
        auto* field = new PasswordField;
        m_edit = &field->Edit();
        column->addWidget(field);
    } else {
        m_edit = new QLineEdit;
        column->addWidget(m_edit);
    }
    column->addWidget(m_reason);
    column->addStretch();
    column->addWidget(buttons);
    setMinimumWidth(380);

    m_edit->setText(m_request.text);
    m_edit->setAccessibleName(m_request.label);
    m_edit->selectAll();
    m_edit->setFocus();
    connect(m_edit, &QLineEdit::textChanged, m_reason, &QLabel::hide);
    connect(buttons, &QDialogButtonBox::accepted, this, &TextDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &TextDialog::reject);
}

QString TextDialog::Text() const {
    return m_edit->text();
}

void TextDialog::accept() {
    const QString reason = m_request.refuse ? m_request.refuse(Text()) : QString();
    if (reason.isEmpty()) {
        QDialog::accept();
        return;
    }
    m_reason->setText(reason);
    m_reason->show();
    m_edit->setAccessibleDescription(reason);
    m_edit->setFocus();
    m_edit->selectAll();
}
