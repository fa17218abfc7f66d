#include "wizard/PathField.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

PathField::PathField(Picker picker, QWidget* parent) : QWidget(parent), m_edit(new QLineEdit) {
    auto* browse = new QPushButton(tr("Browse..."));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(m_edit, 1);
    row->addWidget(browse);
    setFocusProxy(m_edit);
    connect(m_edit, &QLineEdit::textChanged, this, &PathField::PathChanged);
    connect(browse, &QPushButton::clicked, this, [this, picker = std::move(picker)] {
        picker(this, Path(), [this](const std::optional<QString>& path) {
            if (path)
                SetPath(*path);
            m_edit->setFocus(Qt::OtherFocusReason);
        });
    });
}

PathField::PathField(UserPrompts& prompts, const PickRequest& request, QWidget* parent)
    : PathField(
          [&prompts, request](QWidget* over, const QString& path,
                              std::function<void(std::optional<QString>)> answer) {
              PickRequest from = request;
              from.start = path.isEmpty() ? request.start : path;
              prompts.PickPath(over, from, std::move(answer));
          },
          parent) {}

QString PathField::Path() const {
    return m_edit->text();
}

void PathField::SetPath(const QString& path) {
    m_edit->setText(path);
}

void PathField::showEvent(QShowEvent* event) {
    if (!accessibleName().isEmpty())
        m_edit->setAccessibleName(accessibleName());
    QWidget::showEvent(event);
}
