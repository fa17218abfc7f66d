#include "window/PageHead.h"

#include "look/Look.h"
#include "window/CommandButton.h"

#include <QHBoxLayout>
#include <QLabel>

CPageHead::CPageHead() : m_title(new QLabel), m_status(new QLabel), m_toolbar(new QHBoxLayout) {
    QPalette paper = this->palette();
    paper.setColor(QPalette::Window, Look::Paper);
    setPalette(paper);
    setAutoFillBackground(true);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setFont(Look::Font(Look::Title, QFont::Bold));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setFont(Look::Font(Look::Small));
    m_status->setWordWrap(true);
    m_status->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_status->setAccessibleName(tr("About this page"));
    QPalette palette = m_status->palette();
    palette.setColor(QPalette::WindowText, Look::Muted);
    m_status->setPalette(palette);
    // Room for two lines from the start, so that a page does not jump when its text comes.
    m_status->setFixedHeight(2 * QFontMetrics(m_status->font()).lineSpacing());

    m_toolbar->setSpacing(4);
    auto* top = new QHBoxLayout;
    top->setSpacing(24);
    top->addWidget(m_title, 1);
    top->addLayout(m_toolbar);
    m_title->setFixedHeight(CommandButtonHeight);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 6, 16, 4);
    layout->setSpacing(2);
    layout->addLayout(top);
    layout->addWidget(m_status);
}

void CPageHead::SetTitle(const QString& title) {
    m_title->setText(title);
}

void CPageHead::SetStatusText(const QString& text) {
    m_status->setText(text);
}

QString CPageHead::StatusText() const {
    return m_status->text();
}

void CPageHead::SetActions(QWidget& owner, const std::vector<FrameAction>& actions) {
    ReplaceButtons(*m_toolbar, owner, actions, CommandButtonKind::Toolbar);
}
