#include "window/ConsoleStatusBar.h"

#include "look/Look.h"

#include <QAbstractButton>
#include <QPainter>

#include <algorithm>

/// A part of the bar: a text behind a thin line, which is a button where a click does something.
class StatusPart : public QAbstractButton {
public:
    StatusPart(QWidget* parent, bool clickable, const QString& toolTip) : QAbstractButton(parent) {
        setToolTip(toolTip);
        setAccessibleName(toolTip); // as long as there is no text
        setFont(Look::Font(Look::Caption));
        setFocusPolicy(clickable ? Qt::TabFocus : Qt::NoFocus);
        if (clickable)
            setCursor(Qt::PointingHandCursor);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(QRect(0, 4, 1, height() - 8), Look::Line);
        painter.setPen(Look::Secondary);
        const QRect area = rect().adjusted(12, 0, -4, 0);
        Look::DrawTextLine(painter, area, text());
        if (hasFocus())
            Look::DrawFocusRing(painter, rect());
    }
};

namespace {

constexpr int BarHeight = 24;
constexpr std::array<int, 6> Edges{0, 160, 290, 440, 590, 900};

} // namespace

CConsoleStatusBar::CConsoleStatusBar() {
    setObjectName(QStringLiteral("statusBar"));
    setFixedHeight(BarHeight);
    const std::array<QString, 5> toolTips{
        QString(), tr("Version Information"), tr("Click to configure cloud space"),
        tr("Click to set bandwidth limit"), tr("Click to set bandwidth limit")};
    for (size_t part = Version; part < m_parts.size(); ++part) {
        m_parts[part] = new StatusPart(this, part != Version, toolTips[part]);
        m_parts[part]->setGeometry(Edges[part], 1, Edges[part + 1] - Edges[part], BarHeight - 1);
    }
    connect(m_parts[CloudSpace], &QAbstractButton::clicked, this, &CConsoleStatusBar::CloudSpaceClicked);
    connect(m_parts[Upload], &QAbstractButton::clicked, this, &CConsoleStatusBar::BandwidthClicked);
    connect(m_parts[Download], &QAbstractButton::clicked, this, &CConsoleStatusBar::BandwidthClicked);
}

void CConsoleStatusBar::SetPart(Part part, const QString& text) {
    StatusPart* button = m_parts[part];
    if (button->text().compare(text, Qt::CaseInsensitive) == 0)
        return;
    button->setText(text);
    button->setAccessibleName(text);
}

QString CConsoleStatusBar::PartText(Part part) const {
    return part == Blank ? QString() : m_parts[part]->text();
}

void CConsoleStatusBar::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    // A click behind the last part counts as one on it; in a narrow window its text is shortened.
    const int left = Edges[Download];
    m_parts[Download]->setGeometry(left, 1, std::max(0, width() - left), BarHeight - 1);
}

void CConsoleStatusBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Look::Side);
    painter.fillRect(QRect(0, 0, width(), 1), Look::Line);
}
