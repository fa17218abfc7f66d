#include "page/NoticeLine.h"

#include "look/AccessiblePart.h"
#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int IconSize = 16;

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* line = qobject_cast<NoticeLine*>(object);
    return line ? new AccessiblePart(line, QAccessible::AlertMessage) : nullptr;
}

} // namespace

NoticeLine::NoticeLine(QWidget* parent) : QFrame(parent), m_text(new QLabel) {
    static const bool once = (QAccessible::installFactory(MakeAccessible), true);
    Q_UNUSED(once)
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setFont(Look::Font(Look::Small));
    m_text->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    Look::SetInk(*m_text, Look::NoticeInk);
    auto* icon = new QLabel;
    icon->setPixmap(IconRegistry::Icon(InformationIcon, Look::NoticeInk)
                        .pixmap(QSize(IconSize, IconSize), devicePixelRatio()));
    // Beside the first line of the text, and both in the middle of a line that has room to spare.
    const int firstLine = QFontMetrics(m_text->font()).height();
    icon->setFixedHeight(std::max(firstLine, IconSize));
    m_text->setContentsMargins(0, std::max(0, (IconSize - firstLine) / 2), 0, 0);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(m_text, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::TextInset, 6, Look::TextInset, 6);
    layout->setSpacing(0);
    layout->addStretch();
    layout->addLayout(row);
    layout->addStretch();
    hide();
}

void NoticeLine::SetText(const QString& text) {
    if (text == m_text->text())
        return;
    m_text->setText(text);
    setToolTip(Look::ToolTip(text));
    setAccessibleName(text);
    setVisible(!text.isEmpty());
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QString NoticeLine::Text() const {
    return m_text->text();
}

void NoticeLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Look::NoticeLine);
    painter.setBrush(Look::NoticeBack);
    painter.drawRoundedRect(QRectF(contentsRect()).adjusted(0.5, 0.5, -0.5, -0.5), Look::CornerRadius,
                            Look::CornerRadius);
}
