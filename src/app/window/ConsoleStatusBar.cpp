#include "window/ConsoleStatusBar.h"

#include "look/Look.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPainter>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int BarHeight = 24;
constexpr int TextInset = 12;
constexpr std::array<int, 6> Edges{0, 160, 290, 440, 590, 900};

} // namespace

/// A part of the bar that does something when it is clicked.
class StatusButton : public QAbstractButton {
public:
    StatusButton(QWidget* parent, const QString& toolTip) : QAbstractButton(parent) {
        setToolTip(toolTip);
        setAccessibleName(toolTip); // as long as there is no text
        setFont(Look::Font(Look::Caption));
        setFocusPolicy(Qt::TabFocus);
        setCursor(Qt::PointingHandCursor);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setPen(Look::Secondary);
        Look::DrawTextLine(painter, rect().adjusted(TextInset, 0, -4, 0), text());
        if (hasFocus())
            Look::DrawFocusRing(painter, rect());
    }
};

ConsoleStatusBar::ConsoleStatusBar() : m_version(new QLabel(this)) {
    setObjectName(u"statusBar"_s);
    setFixedHeight(BarHeight);
    const auto place = [](QWidget& part, int number) {
        part.setGeometry(Edges[number], 1, Edges[number + 1] - Edges[number], BarHeight - 1);
    };
    m_version->setTextFormat(Qt::PlainText);
    m_version->setFont(Look::Font(Look::Caption));
    m_version->setContentsMargins(TextInset, 0, 4, 0);
    m_version->setToolTip(tr("Version Information"));
    Look::SetInk(*m_version, Look::Secondary);
    place(*m_version, Version);
    const QString setsLimit = tr("Click to set bandwidth limit");
    for (const auto& [part, toolTip] : {std::pair(CloudSpace, tr("Click to configure cloud space")),
                                        std::pair(Upload, setsLimit), std::pair(Download, setsLimit)}) {
        m_parts[part] = new StatusButton(this, toolTip);
        place(*m_parts[part], part);
    }
    connect(m_parts[CloudSpace], &QAbstractButton::clicked, this, &ConsoleStatusBar::CloudSpaceClicked);
    connect(m_parts[Upload], &QAbstractButton::clicked, this, &ConsoleStatusBar::BandwidthClicked);
    connect(m_parts[Download], &QAbstractButton::clicked, this, &ConsoleStatusBar::BandwidthClicked);
}

void ConsoleStatusBar::SetPart(Part part, const QString& text) {
    if (PartText(part).compare(text, Qt::CaseInsensitive) == 0)
        return;
    if (part == Version) {
        m_version->setText(text);
    } else if (StatusButton* button = m_parts[part]) {
        button->setText(text);
        button->setAccessibleName(text);
    }
}

QString ConsoleStatusBar::PartText(Part part) const {
    if (part == Version)
        return m_version->text();
    return m_parts[part] ? m_parts[part]->text() : QString();
}

void ConsoleStatusBar::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    // A click behind the last part counts as one on it; in a narrow window its text is shortened.
    const int left = Edges[Download];
    m_parts[Download]->setGeometry(left, 1, std::max(0, width() - left), BarHeight - 1);
}

void ConsoleStatusBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Look::Side);
    painter.fillRect(QRect(0, 0, width(), 1), Look::Line);
    for (const int part : {Version, CloudSpace, Upload, Download})
        painter.fillRect(QRect(Edges[part], 5, 1, BarHeight - 9), Look::Line);
}
