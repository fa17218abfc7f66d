#pragma once

#include <QWidget>

class CBrenListCtrl;
class QLabel;
class QLineEdit;

/// Words to find, and how many were found. The Escape key clears and closes it.
class FindBar : public QWidget {
    Q_OBJECT

public:
    /// Gives the focus back to `target`, which outlives it.
    explicit FindBar(QWidget* target, QWidget* parent = nullptr);

    /// The bar of a record table: it opens by the table's find key, and the table shows the rows with the
    /// words.
    static FindBar* For(CBrenListCtrl* list);
    /// A widget that holds a record table with its bar above it, and owns both.
    static QWidget* Above(CBrenListCtrl* list, QWidget* parent = nullptr);

    void Open();
    void Close();
    void SetCounts(int shown, int total);
    QString Words() const;

signals:
    void WordsChanged(const QString& words);
    void Toggled(); ///< opened or closed

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// The Escape key in the target closes an open bar before it means anything else.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* m_target;
    QLineEdit* m_words;
    QLabel* m_count;
};
