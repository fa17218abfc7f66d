#pragma once

#include <QWidget>

class QLineEdit;
class QToolButton;

/// A text that is typed unseen, with a button that shows it.
class PasswordField : public QWidget {
    Q_OBJECT

public:
    explicit PasswordField(QWidget* parent = nullptr);

    QString Text() const;
    void SetText(const QString& text);
    QLineEdit& Edit() const { return *m_edit; }

signals:
    void TextChanged(const QString& text);

protected:
    /// The line to type in is heard by the field's name.
    void showEvent(QShowEvent* event) override;

private:
    void Show(bool shown);

    QLineEdit* m_edit;
    QToolButton* m_show;
};
