#include "cards/ExpandableItem.h"

#include "cards/CardButton.h"
#include "cards/ExpandableItemList.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/BrenPanel.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int StatusLeft = 300; ///< from the right edge
constexpr int StatusRight = 50;

QString Elided(const QString& text, const QFont& font, const QRect& place) {
    return QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width());
}

} // namespace

CExpandableItem::CExpandableItem(const QString& title, QWidget* parent)
    : CLabeledPanel(title, parent), m_buttonRow(new QWidget(this)) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    m_buttonRow->setAttribute(Qt::WA_NoMousePropagation); // between the buttons is not the card
    auto* row = new QHBoxLayout(m_buttonRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    CardButton* open = AddButton(tr("Open"), IconRegistry::Icon(QStringLiteral("chevron-down"), Look::Muted));
    connect(open, &CardButton::Clicked, this, [this] {
        if (m_list)
            m_list->ToggleCard(*this);
    });
    hide();
}

void CExpandableItem::SetStatusText(const QString& text) {
    if (text.compare(m_statusText, Qt::CaseInsensitive) == 0)
        return;
    m_statusText = text;
    if (m_progress != 0)
        SetProgress(0);
    update(QRect(width() - StatusLeft, 0, StatusLeft - StatusRight, TitleBandHeight()));
    Describe();
}

void CExpandableItem::SetStatusIcon(int image, int state, const QString& caption, int value) {
    if (image == m_statusImage && state == m_statusState)
        return;
    m_statusImage = image;
    m_statusState = state;
    m_statusCaption = caption;
    m_statusValue = value;
    m_statusIcon = IconRegistry::Icon(image);
    update(QRect(width() - 54, 0, 82, TitleBandHeight()));
    Describe();
}

void CExpandableItem::SetProgress(int permille) {
    const int progress = std::clamp(permille, 0, 1000);
    if (progress == m_progress)
        return;
    m_progress = progress;
    update(QRect(0, TitleBandHeight() - 3, width(), 3));
}

void CExpandableItem::SetBodyText(const QString& text) {
    if (text == m_bodyText)
        return;
    m_bodyText = text;
    update(BodyTextRect());
    Describe();
}

void CExpandableItem::OnExpanded() {
    if (m_content)
        m_content->Activate();
}

void CExpandableItem::OnCollapsed() {
    if (m_content)
        m_content->Deactivate();
}

void CExpandableItem::OnBodyClick(const QPoint&) {}

void CExpandableItem::SetContent(CBrenPanel* content) {
    m_content = content;
    m_content->setParent(this);
    PlaceChildren();
}

CardButton* CExpandableItem::AddButton(const QString& caption, const QIcon& icon) {
    auto* button = new CardButton(m_buttonRow);
    button->Set(caption, icon);
    static_cast<QHBoxLayout*>(m_buttonRow->layout())->insertWidget(0, button);
    button->show();
    m_buttons.push_back(button);
    // Tab goes through the buttons from left to right.
    QWidget* previous = this;
    for (std::size_t i = m_buttons.size(); i-- > 0; previous = m_buttons[i])
        setTabOrder(previous, m_buttons[i]);
    PlaceChildren();
    return button;
}

void CExpandableItem::SetExpanded(bool expanded) {
    m_expanded = expanded;
    m_buttonRow->setVisible(!expanded);
    Describe();
    update();
}

void CExpandableItem::PlaceChildren() {
    QRect row(QPoint(), m_buttonRow->sizeHint());
    row.moveCenter(BodyRect().center());
    row.moveRight(width() - Look::TextInset - 1);
    m_buttonRow->setGeometry(row);
    m_buttonRow->layout()->activate();
    if (m_content)
        m_content->setGeometry(BodyRect().adjusted(0, 0, 0, -Look::CornerRadius));
}

void CExpandableItem::Describe() {
    QStringList parts{m_bodyText, m_statusCaption, m_statusText,
                      m_expanded ? tr("expanded") : tr("collapsed")};
    parts.removeAll(QString());
    setAccessibleDescription(parts.join(QStringLiteral(", ")));
}

QRect CExpandableItem::TitleRect() const {
    return CLabeledPanel::TitleRect().intersected(
        BandRect().adjusted(0, 0, -StatusLeft - Look::TextInset, 0));
}

QRect CExpandableItem::StatusRect() const {
    return {width() - StatusLeft, 0, StatusLeft - StatusRight - 1, TitleBandHeight() - 1};
}

QRect CExpandableItem::BodyTextRect() const {
    const int right = m_buttonRow->x() - Look::TextInset;
    return {Look::TextInset, BodyRect().top(), right - Look::TextInset, BodyRect().height()};
}

void CExpandableItem::paintEvent(QPaintEvent* event) {
    CLabeledPanel::paintEvent(event);
    QPainter painter(this);
    if (m_progress > 0)
        painter.fillRect(QRectF(1, TitleBandHeight() - 3, (width() - 2) * m_progress / 1000.0, 2),
                         Look::Running);

    painter.setFont(Look::Font(Look::Small));
    painter.setPen(Look::Secondary);
    painter.drawText(StatusRect(), Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine,
                     Elided(m_statusText, painter.font(), StatusRect()));
    m_statusIcon.paint(&painter, QRect(width() - 38, (TitleBandHeight() - 24) / 2, 24, 24));

    if (!m_expanded) {
        painter.setPen(Look::Muted);
        painter.drawText(BodyTextRect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                         Elided(m_bodyText, painter.font(), BodyTextRect()));
    }
}

void CExpandableItem::resizeEvent(QResizeEvent* event) {
    CLabeledPanel::resizeEvent(event);
    PlaceChildren();
}

void CExpandableItem::mouseMoveEvent(QMouseEvent* event) {
    setCursor(BandRect().contains(event->position().toPoint()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
    CLabeledPanel::mouseMoveEvent(event);
}

void CExpandableItem::keyPressEvent(QKeyEvent* event) {
    if (!m_list || !m_list->OnCardKey(*this, event->key()))
        CLabeledPanel::keyPressEvent(event);
}

bool CExpandableItem::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return CLabeledPanel::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    QStringList texts;
    const auto addWhenCut = [&](const QString& text, const QFont& font, const QRect& place) {
        if (place.contains(help->pos()) && Elided(text, font, place) != text)
            texts.append(text);
    };
    addWhenCut(Title(), Look::Font(Look::Body, QFont::Bold), TitleRect());
    addWhenCut(m_statusText, Look::Font(Look::Small), StatusRect());
    if (!m_expanded)
        addWhenCut(m_bodyText, Look::Font(Look::Small), BodyTextRect());
    if (help->pos().y() < TitleBandHeight() && help->pos().x() >= width() - StatusRight)
        texts.append(m_statusCaption);
    QToolTip::showText(help->globalPos(), Look::ToolTip(texts.join(u'\n')), this);
    return true;
}
