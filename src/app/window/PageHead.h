#pragma once

#include "page/MainFrame.h"

#include <QWidget>

class QHBoxLayout;
class QLabel;

/// The head of the page area: the section's title, the page's status text and its toolbar.
class CPageHead : public QWidget {
    Q_OBJECT

public:
    CPageHead();

    void SetTitle(const QString& title);
    void SetStatusText(const QString& text);
    QString StatusText() const;
    void SetActions(QWidget& owner, const std::vector<FrameAction>& actions);

private:
    QLabel* m_title;
    QLabel* m_status;
    QHBoxLayout* m_toolbar;
};
