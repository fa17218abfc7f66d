#pragma once

#include <QWidget>

class QTextBrowser;

/// A local page that comes with the program, in a text browser.
class WebPage : public QWidget {
    Q_OBJECT

public:
    /// `fileName` is looked for beside the executable.
    explicit WebPage(const QString& fileName, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTextBrowser* m_browser;
};
