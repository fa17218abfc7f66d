#pragma once

#include "cards/LabeledPanel.h"

#include <QIcon>

#include <functional>

class ActionButton;
class CBrenPanel;
class LinkLabel;

/// What is to be known of a card's subject now, beside what it is.
struct CardRemark {
    QString text;
    QColor ink;

    bool operator==(const CardRemark&) const = default;
};

/// A card of a list: a title band with status text and icon, below it a line of text with buttons, or its
/// content while it is expanded. Its title is the key by which the list finds it.
class CExpandableItem : public CLabeledPanel {
    Q_OBJECT

public:
    explicit CExpandableItem(const QString& title, QWidget* parent = nullptr);

    bool IsExpanded() const { return m_expanded; }
    /// What it looks like and is to screen readers; the list says so.
    void SetExpanded(bool expanded);
    /// As old as it is: in weaker colours, because it could not be read again.
    void SetStale(bool stale);

    /// No change when the text is the same but for case. A change sets the progress to 0.
    virtual void SetStatusText(const QString& text);
    const QString& StatusText() const { return m_statusText; }

    /// Stands in place of the status text, with a sign and in the colour of failures; empty: nothing failed.
    void SetFailure(const QString& sentence);
    const QString& Failure() const { return m_failure; }

    /// `icon` is a name of the icon registry and `caption` says it in words.
    virtual void SetStatusIcon(const QString& icon, int state, const QString& caption = {});
    int StatusState() const { return m_statusState; }

    /// A thin line along the title band, of 0 to 1000 parts.
    void SetProgress(int permille);
    int Progress() const { return m_progress; }

    /// The line that says what the card is; its tool-tip says `more`.
    void SetBodyText(const QString& text, const QString& more = {});
    const QString& BodyText() const { return m_bodyText; }

    /// Stand one behind the other below the line that says what the card is.
    void SetRemarks(std::vector<CardRemark> remarks);
    const std::vector<CardRemark>& Remarks() const { return m_remarks; }
    /// Stands before the remarks as a link; empty words: none.
    void SetRemarkLink(const QString& words, std::function<void()> run);

    /// Told by the title band's tool-tip and to screen readers; empty: nothing.
    void SetNote(const QString& note);

    /// The list has expanded or collapsed the card, or the page around an expanded card was activated or
    /// deactivated: starts or stops what is shown live.
    virtual void OnExpanded();
    virtual void OnCollapsed();

    /// A press of the left button below the title band.
    virtual void OnBodyClick(const QPoint& position);

    /// What comes last when the Tab key goes through the collapsed card.
    QWidget* LastStop();

    /// Reads anew what the expanded card shows.
    virtual void Reload();

    QString entryId;         ///< of what a section shows in the card
    quint32 refreshMark = 0; ///< of the refresh that last found the card

signals:
    /// Wants to be expanded or, when it is, collapsed.
    void Toggled();

protected:
    /// Shown while the card is expanded; the card owns it. Call it by the first OnExpanded, before the
    /// base's.
    void SetContent(CBrenPanel* content);
    CBrenPanel* Content() const { return m_content; }

    /// A button of the card. It is made when the card is first shown: most cards of a long list never are.
    struct Button {
        QString caption;
        QIcon icon;
        std::function<void()> run;
        bool busy = false;
        QString why = {}; ///< it is busy
        bool shown = true;
        ActionButton* made = nullptr;
    };

    /// Adds a button to the left of those that are there; the buttons are hidden while the card is expanded.
    void AddButton(Button button);
    const Button& ButtonAt(std::size_t index) const { return m_buttons.at(index); }
    void SetButton(std::size_t index, const QString& caption, const QIcon& icon);
    void SetButtonBusy(std::size_t index, bool busy, const QString& why);
    void SetButtonShown(std::size_t index, bool shown);
    void PlaceChildren();

    QRect TitleRect() const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;

private:
    void MakeButtons();
    void MakeButtonRow();
    void Describe();
    void ShowMenu(const QPoint& position);
    const QString& ShownStatus() const { return m_failure.isEmpty() ? m_statusText : m_failure; }
    int StatusWidth() const;
    QRect StatusRect() const;
    void PaintStatus(QPainter& painter) const;
    QRect BodyTextRect() const;
    QRect RemarksRect() const;
    bool HasRemarks() const { return !m_remarks.empty() || m_link; }
    void PaintRemarks(QPainter& painter) const;
    QString RemarksText(const QString& between) const;

    CBrenPanel* m_content = nullptr;
    QWidget* m_buttonRow = nullptr; ///< made with the buttons
    std::vector<Button> m_buttons;  ///< from right to left
    bool m_expanded = false;
    bool m_stale = false;
    QString m_statusText;
    QString m_failure;
    QString m_bodyText;
    QString m_bodyMore;
    std::vector<CardRemark> m_remarks;
    LinkLabel* m_link = nullptr; ///< before the remarks; none while there is nothing to open
    std::function<void()> m_openLink;
    QString m_note;
    QIcon m_statusIcon;
    QString m_statusIconName;
    QString m_statusCaption;
    int m_statusState = 0;
    int m_progress = 0;
};
