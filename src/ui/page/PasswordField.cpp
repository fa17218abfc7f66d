#include "page/PasswordField.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

PasswordField::PasswordField(QWidget* parent)
    : QWidget(parent), m_edit(new QLineEdit), m_show(new QToolButton) {
    m_edit->setEchoMode(QLineEdit::Password);
    m_show->setCheckable(true);
    m_show->setFocusPolicy(Qt::StrongFocus);
    Show(false);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(m_edit, 1);
    row->addWidget(m_show);
    setFocusProxy(m_edit);
    connect(m_show, &QToolButton::toggled, this, &PasswordField::Show);
    connect(m_edit, &QLineEdit::textChanged, this, &PasswordField::TextChanged);
}

QString PasswordField::Text() const {
    return m_edit->text();
}

void PasswordField::SetText(const QString& text) {
    m_edit->setText(text);
}

void PasswordField::Show(bool shown) {
    m_edit->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
    m_show->setText(shown ? tr("Hide") : tr("Show"));
    m_show->setAccessibleName(shown ? tr("Hide the password") : tr("Show the password"));
}

void PasswordField::showEvent(QShowEvent* event) {
    if (!accessibleName().isEmpty())
        m_edit->setAccessibleName(accessibleName());
    QWidget::showEvent(event);
}
