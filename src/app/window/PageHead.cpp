#include "window/PageHead.h"

#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/NoticeLine.h"
#include "window/ActionButtons.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QTextLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int HeadSpacing = 24;

/// As much of the text as two lines hold, with a sign where it is cut.
QString InTwoLines(QString text, const QFont& font, int width) {
    QTextLayout layout(QString(text).replace(u'\n', QChar(QChar::LineSeparator)), font);
    layout.beginLayout();
    layout.createLine().setLineWidth(width);
    QTextLine second = layout.createLine();
    if (second.isValid())
        second.setLineWidth(width);
    const bool more = layout.createLine().isValid();
    layout.endLayout();
    if (!more)
        return text;
    const QString rest = text.mid(second.textStart());
    return text.left(second.textStart()).trimmed() + u'\n' +
           QFontMetrics(font).elidedText(Look::OneLine(rest), Qt::ElideRight, width);
}

} // namespace

PageHead::PageHead()
    : m_title(new QLabel), m_status(new QLabel), m_toolbar(new QHBoxLayout),
      m_find(new ActionButton(ActionButton::Kind::Icon)) {
    setObjectName(u"pageHead"_s);
    Look::SetGround(*this, Look::Paper);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setFont(Look::Font(Look::Title, QFont::Bold));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setFont(Look::Font(Look::Small));
    m_status->setWordWrap(true);
    m_status->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_status->setAccessibleDescription(tr("About this page"));
    Look::SetInk(*m_status, Look::Muted);
    // Room for two lines from the start, so that a page does not jump when its text comes.
    m_status->setFixedHeight(2 * QFontMetrics(m_status->font()).lineSpacing());

    m_toolbar->setSpacing(4);
    auto* top = new QHBoxLayout;
    top->setSpacing(HeadSpacing);
    top->addWidget(m_title, 1);
    top->addLayout(m_toolbar);
    top->addWidget(m_find);
    m_find->Set(tr("Find (%1)").arg(QKeySequence(QKeySequence::Find).toString(QKeySequence::NativeText)),
                IconRegistry::Icon(u"search"_s));
    m_find->hide();
    connect(m_find, &ActionButton::Clicked, this, &PageHead::FindClicked);
    m_title->setFixedHeight(ActionButton::Height);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 6, 16, 4);
    layout->setSpacing(2);
    layout->addLayout(top);
    layout->addWidget(m_status);
}

void PageHead::SetTitle(const QString& title) {
    m_title->setText(title);
    FitActions();
}

void PageHead::SetStatusText(const QString& text) {
    if (text == m_statusText)
        return;
    m_statusText = text;
    FitStatus();
    if (text.isEmpty())
        return;
    QAccessibleEvent told(m_status, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

/// What is cut off is told by the tool-tip, and to screen readers.
void PageHead::FitStatus() {
    const QString shown = InTwoLines(m_statusText, m_status->font(), m_status->width());
    m_status->setText(shown);
    m_status->setAccessibleName(m_statusText);
    m_status->setToolTip(shown == m_statusText ? QString() : Look::ToolTip(m_statusText));
}

void PageHead::LayOverStatus(NoticeLine* line) {
    line->setParent(this);
    line->layout()->setContentsMargins(Look::TextInset, 2, Look::TextInset, 2);
    m_lines.push_back(line);
}

void PageHead::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FitActions();
    layout()->activate();
    FitStatus();
    for (NoticeLine* line : m_lines)
        line->setGeometry(m_status->geometry().adjusted(-8, -2, 8, 4));
}

QString PageHead::StatusText() const {
    return m_statusText;
}

void PageHead::SetActions(QWidget& owner, const std::vector<FrameAction>& actions) {
    ShowActions(*m_toolbar, owner, actions, ActionButton::Kind::Framed);
    FitActions();
}

void PageHead::OfferFind(bool offered) {
    m_find->setVisible(offered);
    FitActions();
}

/// What head and title need with buttons of that width.
int PageHead::RoomBeside(int buttons) const {
    const QMargins margins = layout()->contentsMargins();
    const int find = m_find->isHidden() ? 0 : HeadSpacing + ActionButton::Height;
    return margins.left() + margins.right() + m_title->minimumSizeHint().width() + HeadSpacing + buttons +
           find;
}

QSize PageHead::minimumSizeHint() const {
    const int count = m_toolbar->count();
    const int buttons = count * ActionButton::Height + std::max(0, count - 1) * m_toolbar->spacing();
    return {RoomBeside(buttons), QWidget::minimumSizeHint().height()};
}

/// The buttons show their captions only where all of them have room.
void PageHead::FitActions() {
    int wanted = std::max(0, m_toolbar->count() - 1) * m_toolbar->spacing();
    const auto button = [this](int index) {
        return static_cast<ActionButton*>(m_toolbar->itemAt(index)->widget());
    };
    for (int index = 0; index < m_toolbar->count(); ++index)
        wanted += button(index)->CaptionWidth();
    for (int index = 0; index < m_toolbar->count(); ++index)
        button(index)->SetCompact(RoomBeside(wanted) > width());
}
