#include "page/NoticeLine.h"

#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace {

class AccessibleNotice : public QAccessibleWidget {
public:
    explicit AccessibleNotice(NoticeLine& line) : QAccessibleWidget(&line, QAccessible::AlertMessage) {}

    /// Its tool-tip says the same as its name, in markup.
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Description ? QString() : QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* line = qobject_cast<NoticeLine*>(object);
    return line ? new AccessibleNotice(*line) : nullptr;
}

} // namespace

NoticeLine::NoticeLine(QWidget* parent) : QFrame(parent), m_text(new QLabel) {
    static const bool once = (QAccessible::installFactory(MakeAccessible), true);
    Q_UNUSED(once)
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setFont(Look::Font(Look::Small));
    QPalette colours = m_text->palette();
    colours.setColor(QPalette::WindowText, Look::NoticeInk);
    m_text->setPalette(colours);
    auto* icon = new QLabel;
    icon->setPixmap(
        IconRegistry::Icon(InformationIcon, Look::NoticeInk).pixmap(QSize(16, 16), devicePixelRatio()));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Look::TextInset, 6, Look::TextInset, 6);
    layout->setSpacing(8);
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
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
