#pragma once

#include <QDialog>

class QProgressBar;

/// The window of start-up that says what is waited for, with a bar that is busy until it is given a range.
/// Closing it gives the wait up.
class WaitDlg : public QDialog {
    Q_OBJECT

public:
    WaitDlg(const QString& title, const QString& text);

protected:
    QProgressBar* Bar() const { return m_bar; }

private:
    QProgressBar* m_bar;
};
