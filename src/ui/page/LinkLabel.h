#pragma once

#include <QLabel>

/// A text in which each span between "<a>" and "</a>" can be clicked, by mouse and by keyboard. All other
/// markup is shown as it stands.
class LinkLabel : public QLabel {
    Q_OBJECT

public:
    explicit LinkLabel(const QString& text = {}, QWidget* parent = nullptr);

    void SetText(const QString& text);
    const QString& Text() const { return m_text; }
    /// The words of its spans, in their order.
    const QStringList& Spans() const { return m_spans; }

signals:
    /// `span` counts the spans of the text from 0.
    void LinkClicked(int span);

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    QString m_text;
    QStringList m_spans;
};
