#pragma once

#include <QWidget>

class CBrenListCtrl;
class QLabel;
class QLineEdit;

/// Stands above a record table and shows itself when the list's find key is pressed: the list shows the rows
/// with what is typed. The Escape key closes it and brings all rows back.
class FindBar : public QWidget {
    Q_OBJECT

public:
    /// The bar serves the list as long as both live.
    explicit FindBar(CBrenListCtrl* list, QWidget* parent = nullptr);

    /// A widget that holds the list with its bar above it, and owns both.
    static QWidget* Above(CBrenListCtrl* list, QWidget* parent = nullptr);

    void Open();
    void Close();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void ShowCount();

    CBrenListCtrl* m_list;
    QLineEdit* m_words;
    QLabel* m_count;
};
