#pragma once

#include "page/MainFrame.h"

#include <QWidget>

class ActionButton;
class NoticeLine;
class QHBoxLayout;
class QLabel;

/// The head of the page area: the section's title, the page's status text and its toolbar.
class PageHead : public QWidget {
    Q_OBJECT

public:
    PageHead();

    void SetTitle(const QString& title);
    void SetStatusText(const QString& text);
    QString StatusText() const;
    /// Shows the line in the status text's place whenever it is not hidden; what is below does not move. Of
    /// several the last one lies on top. The head owns it.
    void LayOverStatus(NoticeLine* line);
    void SetActions(QWidget& owner, const std::vector<FrameAction>& actions);
    /// Whether the page has something to find words in.
    void OfferFind(bool offered);

    /// Has room for the buttons without their captions.
    QSize minimumSizeHint() const override;

signals:
    void FindClicked();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void FitStatus();
    void FitActions();
    int RoomBeside(int buttons) const;

    QString m_statusText;
    QLabel* m_title;
    QLabel* m_status;
    QHBoxLayout* m_toolbar;
    ActionButton* m_find;
    std::vector<NoticeLine*> m_lines;
};
