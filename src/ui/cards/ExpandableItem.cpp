#include "cards/ExpandableItem.h"

#include "cards/CardAccessible.h"
#include "look/Formatters.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/ActionButton.h"
#include "page/BrenPanel.h"
#include "page/LinkLabel.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int StatusLeft = 300; ///< from the right edge
constexpr int StatusRight = 50;
constexpr int SignSize = 16;
constexpr int SignRoom = SignSize + 6;
constexpr qreal StaleOpacity = 0.5;
const QString BetweenRemarks = u"  \u00B7  "_s;

QString Elided(const QString& text, const QFont& font, const QRect& place) {
    return QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width());
}

} // namespace

CExpandableItem::CExpandableItem(const QString& title, QWidget* parent) : CLabeledPanel(title, parent) {
    TeachCardsToScreenReaders();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    AddButton({tr("Open"), IconRegistry::Icon(u"chevron-down"_s, Look::Muted), [this] { emit Toggled(); }});
    hide();
}

void CExpandableItem::SetStatusText(const QString& text) {
    if (text.compare(m_statusText, Qt::CaseInsensitive) == 0)
        return;
    const QRect before = TitleRect();
    m_statusText = text;
    if (m_progress != 0)
        SetProgress(0);
    update(QRect(width() - StatusLeft, 0, StatusLeft - StatusRight, TitleBandHeight()));
    const int shorter = std::min(before.width(), TitleRect().width());
    if (QFontMetrics(Look::Font(Look::Body, QFont::Bold)).horizontalAdvance(Title()) > shorter)
        update(before.united(TitleRect()));
    Describe();
}

void CExpandableItem::SetFailure(const QString& sentence) {
    if (sentence == m_failure)
        return;
    m_failure = sentence;
    update(BandRect());
    Describe();
    if (sentence.isEmpty())
        return;
    QAccessibleEvent told(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

void CExpandableItem::SetStatusIcon(const QString& icon, int state, const QString& caption) {
    if (std::exchange(m_statusCaption, caption) != caption)
        Describe();
    if (icon == m_statusIconName && state == m_statusState)
        return;
    m_statusIconName = icon;
    m_statusState = state;
    m_statusIcon = IconRegistry::Icon(icon);
    update(QRect(width() - 54, 0, 82, TitleBandHeight()));
}

void CExpandableItem::SetProgress(int permille) {
    const int progress = std::clamp(permille, 0, 1000);
    if (progress == m_progress)
        return;
    m_progress = progress;
    update(QRect(0, TitleBandHeight() - 3, width(), 3));
}

void CExpandableItem::SetBodyText(const QString& text, const QString& more) {
    m_bodyMore = more;
    if (text == m_bodyText)
        return;
    m_bodyText = text;
    update(BodyTextRect());
    Describe();
}

void CExpandableItem::SetRemarks(std::vector<CardRemark> remarks) {
    if (remarks == m_remarks)
        return;
    m_remarks = std::move(remarks);
    PlaceChildren();
    update(BodyRect());
    Describe();
}

void CExpandableItem::SetRemarkLink(const QString& words, std::function<void()> run) {
    m_openLink = std::move(run);
    const QString text = words.isEmpty() ? QString() : u"<a>%1</a>"_s.arg(words);
    if (text == (m_link ? m_link->Text() : QString()))
        return;
    if (words.isEmpty()) {
        if (m_link->hasFocus())
            setFocus(Qt::OtherFocusReason);
        delete std::exchange(m_link, nullptr);
    } else if (!m_link) {
        m_link = new LinkLabel(text, this);
        connect(m_link, &LinkLabel::LinkClicked, this, [this] { m_openLink(); });
        setTabOrder(this, m_link);
        m_link->setVisible(!m_expanded);
    } else {
        m_link->SetText(text);
    }
    PlaceChildren();
    update(BodyRect());
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

void CExpandableItem::Reload() {
    if (m_content)
        m_content->Reload();
}

void CExpandableItem::OnBodyClick(const QPoint&) {}

void CExpandableItem::SetContent(CBrenPanel* content) {
    m_content = content;
    m_content->setParent(this);
    PlaceChildren();
}

void CExpandableItem::AddButton(Button button) {
    m_buttons.push_back(std::move(button));
    if (m_buttonRow)
        MakeButtons();
}

void CExpandableItem::SetButton(std::size_t index, const QString& caption, const QIcon& icon) {
    Button& button = m_buttons.at(index);
    button.caption = caption;
    button.icon = icon;
    if (button.made)
        button.made->Set(caption, icon);
}

void CExpandableItem::SetButtonBusy(std::size_t index, bool busy, const QString& why) {
    Button& button = m_buttons.at(index);
    button.busy = busy;
    button.why = why;
    if (button.made)
        button.made->SetBusy(busy, why);
}

void CExpandableItem::SetButtonShown(std::size_t index, bool shown) {
    Button& button = m_buttons.at(index);
    if (std::exchange(button.shown, shown) == shown || !button.made)
        return;
    button.made->setVisible(shown);
    PlaceChildren();
    update(BodyTextRect());
}

void CExpandableItem::MakeButtonRow() {
    m_buttonRow = new QWidget(this);
    m_buttonRow->setAttribute(Qt::WA_NoMousePropagation); // between the buttons is not the card
    m_buttonRow->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_buttonRow, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { ShowMenu(m_buttonRow->mapToGlobal(place)); });
    auto* row = new QHBoxLayout(m_buttonRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    m_buttonRow->setVisible(!m_expanded);
}

void CExpandableItem::MakeButtons() {
    if (!m_buttonRow)
        MakeButtonRow();
    for (Button& button : m_buttons) {
        if (button.made)
            continue;
        button.made = new ActionButton(ActionButton::Kind::Icon, m_buttonRow);
        button.made->Set(button.caption, button.icon);
        button.made->SetBusy(button.busy, button.why);
        connect(button.made, &ActionButton::Clicked, this, button.run);
        static_cast<QHBoxLayout*>(m_buttonRow->layout())->insertWidget(0, button.made);
        button.made->setVisible(button.shown);
    }
    // Tab goes through the buttons from left to right.
    QWidget* previous = m_link ? static_cast<QWidget*>(m_link) : this;
    for (std::size_t i = m_buttons.size(); i-- > 0; previous = m_buttons[i].made)
        setTabOrder(previous, m_buttons[i].made);
    PlaceChildren();
}

QWidget* CExpandableItem::LastStop() {
    return m_buttons.front().made ? static_cast<QWidget*>(m_buttons.front().made) : this;
}

void CExpandableItem::SetExpanded(bool expanded) {
    m_expanded = expanded;
    if (m_buttonRow)
        m_buttonRow->setVisible(!expanded);
    if (m_link)
        m_link->setVisible(!expanded);
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    TellScreenReaders(*this, changed);
    update();
}

void CExpandableItem::SetStale(bool stale) {
    if (stale == m_stale)
        return;
    m_stale = stale;
    Describe();
    update();
}

void CExpandableItem::SetNote(const QString& note) {
    if (note == m_note)
        return;
    m_note = note;
    Describe();
}

void CExpandableItem::PlaceChildren() {
    if (m_buttonRow) {
        QRect row(QPoint(), m_buttonRow->sizeHint());
        row.moveCenter(BodyRect().center());
        row.moveRight(width() - Look::TextInset - 1);
        m_buttonRow->setGeometry(row);
        m_buttonRow->layout()->activate();
    }
    if (m_link) {
        const QRect line = RemarksRect();
        m_link->setGeometry(line.x(), line.y(), std::min(m_link->sizeHint().width(), line.width()),
                            line.height());
    }
    if (m_content)
        m_content->setGeometry(BodyRect().adjusted(0, 0, 0, -Look::CornerRadius));
}

void CExpandableItem::Describe() {
    QStringList parts{m_failure,
                      m_bodyText,
                      m_statusCaption,
                      m_statusText,
                      RemarksText(u", "_s),
                      m_note,
                      m_stale ? tr("not read again") : QString()};
    parts.removeAll(QString());
    setAccessibleDescription(parts.join(u", "_s));
}

QRect CExpandableItem::TitleRect() const {
    const int status = StatusWidth();
    return CLabeledPanel::TitleRect().intersected(
        BandRect().adjusted(0, 0, -StatusRight - status - (status > 0 ? Look::TextInset : 0), 0));
}

/// What its text needs; but where title and text do not both fit, at least half of the band is the title's. A
/// failure has all the room that the title leaves.
int CExpandableItem::StatusWidth() const {
    if (ShownStatus().isEmpty())
        return 0;
    const bool failed = !m_failure.isEmpty();
    const int band = width() - 2 * Look::TextInset - StatusRight;
    const int title = QFontMetrics(Look::Font(Look::Body, QFont::Bold)).horizontalAdvance(Title());
    const int text = QFontMetrics(Look::Font(Look::Small)).horizontalAdvance(ShownStatus()) + 1;
    const int wanted = failed ? text + SignRoom : std::min(text, StatusLeft - StatusRight);
    return std::max(0, std::min(wanted, std::max(band - title, band / 2)));
}

QRect CExpandableItem::StatusRect() const {
    return {width() - StatusRight - StatusWidth(), 0, StatusWidth(), TitleBandHeight() - 1};
}

QRect CExpandableItem::BodyTextRect() const {
    const int right = (m_buttonRow ? m_buttonRow->x() : width()) - Look::TextInset;
    const QRect body = BodyRect();
    return {Look::TextInset, body.top(), right - Look::TextInset,
            HasRemarks() ? body.height() / 2 + 1 : body.height()};
}

/// The lower half of the body, below its text.
QRect CExpandableItem::RemarksRect() const {
    const QRect text = BodyTextRect();
    return {text.x(), text.bottom() - 1, text.width(), BodyRect().bottom() - text.bottom()};
}

/// All that stands there, for readers and where it is cut.
QString CExpandableItem::RemarksText(const QString& between) const {
    QStringList texts;
    if (m_link)
        texts = m_link->Spans();
    for (const CardRemark& remark : m_remarks)
        texts.append(remark.text);
    return texts.join(between);
}

void CExpandableItem::paintEvent(QPaintEvent* event) {
    CLabeledPanel::paintEvent(event);
    QPainter painter(this);
    painter.setOpacity(m_stale ? StaleOpacity : 1);
    if (m_progress > 0)
        painter.fillRect(QRectF(1, TitleBandHeight() - 3, (width() - 2) * m_progress / 1000.0, 2),
                         Look::Running);

    painter.setFont(Look::Font(Look::Small));
    PaintStatus(painter);
    m_statusIcon.paint(&painter, QRect(width() - 38, (TitleBandHeight() - 24) / 2, 24, 24));

    if (!m_expanded) {
        painter.setPen(Look::Muted);
        painter.drawText(BodyTextRect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                         Elided(m_bodyText, painter.font(), BodyTextRect()));
        PaintRemarks(painter);
    }
}

void CExpandableItem::PaintRemarks(QPainter& painter) const {
    QRect place = RemarksRect();
    bool first = !m_link;
    if (m_link)
        place.setLeft(m_link->geometry().right() + 1);
    for (const CardRemark& remark : m_remarks) {
        const QString text = std::exchange(first, false) ? remark.text : BetweenRemarks + remark.text;
        painter.setPen(remark.ink);
        painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                         Elided(text, painter.font(), place));
        place.setLeft(place.left() + painter.fontMetrics().horizontalAdvance(text));
        if (place.width() <= 0)
            return;
    }
}

void CExpandableItem::PaintStatus(QPainter& painter) const {
    const bool failed = !m_failure.isEmpty();
    const QRect place = StatusRect();
    if (failed)
        IconRegistry::Icon(TaskFailedIcon, Look::Failed)
            .paint(&painter, QRect(place.left(), place.center().y() - SignSize / 2, SignSize, SignSize));
    painter.setPen(failed ? Look::Failed : Look::Secondary);
    painter.drawText(place, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine,
                     Elided(ShownStatus(), painter.font(), place.adjusted(failed ? SignRoom : 0, 0, 0, 0)));
}

void CExpandableItem::resizeEvent(QResizeEvent* event) {
    CLabeledPanel::resizeEvent(event);
    PlaceChildren();
}

void CExpandableItem::showEvent(QShowEvent* event) {
    CLabeledPanel::showEvent(event);
    if (!m_buttonRow)
        MakeButtons();
}

void CExpandableItem::mouseMoveEvent(QMouseEvent* event) {
    setCursor(BandRect().contains(event->position().toPoint()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
    CLabeledPanel::mouseMoveEvent(event);
}

/// Asked for by key, or by mouse on what is the card's own.
void CExpandableItem::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    if (!byKey && m_expanded && !BandRect().contains(event->pos()))
        return event->ignore();
    ShowMenu(byKey ? mapToGlobal(BandRect().bottomLeft()) : event->globalPos());
}

/// An action means the button as it was when the menu was opened.
void CExpandableItem::ShowMenu(const QPoint& position) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(m_expanded ? tr("Show all") : tr("Open"), this, &CExpandableItem::Toggled);
    for (std::size_t i = m_buttons.size(); !m_expanded && i-- > 1;) {
        const QString caption = m_buttons[i].caption;
        if (!m_buttons[i].shown)
            continue;
        QAction* action = menu->addAction(m_buttons[i].icon, QString(caption).replace(u'&', u"&&"_s));
        action->setEnabled(!m_buttons[i].busy);
        connect(action, &QAction::triggered, this, [this, i, caption] {
            if (m_buttons[i].caption == caption && m_buttons[i].made && m_buttons[i].shown)
                m_buttons[i].made->click();
        });
    }
    menu->popup(position);
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
    addWhenCut(ShownStatus(), Look::Font(Look::Small),
               StatusRect().adjusted(m_failure.isEmpty() ? 0 : SignRoom, 0, 0, 0));
    if (!m_expanded)
        addWhenCut(m_bodyText, Look::Font(Look::Small), BodyTextRect());
    if (!m_expanded && BodyTextRect().contains(help->pos()))
        texts.append(m_bodyMore);
    if (!m_expanded)
        addWhenCut(RemarksText(BetweenRemarks), Look::Font(Look::Small), RemarksRect());
    if (help->pos().y() < TitleBandHeight())
        texts += {help->pos().x() >= width() - StatusRight ? m_statusCaption : QString(), m_note};
    texts.removeAll(QString());
    QToolTip::showText(help->globalPos(), Look::ToolTip(texts.join(u'\n')), this);
    return true;
}
