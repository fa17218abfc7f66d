#pragma once

#include <QComboBox>

/// The in-place editor of a boolean: "True" or "False".
class CDynamicCombo : public QComboBox {
    Q_OBJECT

public:
    /// Nothing is chosen when the text is neither.
    CDynamicCombo(const QString& text, QWidget* parent);

    void hidePopup() override;

signals:
    /// The list was closed, its choice is made.
    void ListClosed();

protected:
    /// Leaves the wheel to the page, which it is meant to scroll.
    void wheelEvent(QWheelEvent* event) override;
};
