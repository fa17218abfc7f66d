#pragma once

#include <QFrame>

class QLabel;

/// A thin line that tells of a condition as long as it lasts: an icon and a plain text.
class NoticeLine : public QFrame {
    Q_OBJECT

public:
    explicit NoticeLine(QWidget* parent = nullptr);

    /// Shows the text; an empty one hides the line.
    void SetText(const QString& text);
    QString Text() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_text;
};
