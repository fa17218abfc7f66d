#include "wizard/WizardLine.h"

#include "look/Look.h"
#include "page/LinkLabel.h"
#include "page/WorkBar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto NotePeriod = 100ms;

} // namespace

WizardLine::WizardLine(QWidget* parent)
    : QFrame(parent), m_lead(new QLabel), m_rest(new QLabel), m_again(new LinkLabel(tr("<a>Try again</a>"))),
      m_bar(new WorkBar) {
    for (QLabel* label : {m_lead, m_rest}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    m_lead->setFont(Look::Font(Look::Small, QFont::Bold));
    m_rest->setFont(Look::Font(Look::Small));
    m_again->setFont(Look::Font(Look::Small));

    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    words->addWidget(m_lead);
    words->addWidget(m_rest);
    auto* row = new QHBoxLayout;
    row->setSpacing(Look::TextInset);
    row->addLayout(words, 1);
    row->addWidget(m_again, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 6, 0, 6);
    column->setSpacing(6);
    column->addLayout(row);
    column->addWidget(m_bar);
    setAccessibleName(tr("State"));

    connect(m_again, &LinkLabel::LinkClicked, this, &WizardLine::TryAgain);
    connect(&m_timer, &QTimer::timeout, this, [this] { ShowProgress(m_note->Read()); });
    SetFace(Face::Chosen, {}, {});
}

void WizardLine::SetFace(Face face, const QString& lead, const QString& rest) {
    m_face = face;
    const bool failed = face == Face::Failure;
    const int inset = face == Face::Chosen ? 0 : Look::TextInset; // of the others the edge may show
    layout()->setContentsMargins(inset, failed ? 8 : 6, inset, failed ? 8 : 6);
    m_lead->setText(lead);
    m_lead->setVisible(!lead.isEmpty());
    m_rest->setText(rest);
    m_rest->setVisible(!rest.isEmpty());
    for (QLabel* label : {m_lead, m_rest})
        Look::SetInk(*label, failed ? Look::RefusalInk : label == m_lead ? Look::Ink : Look::Secondary);
    m_again->setVisible(false);
    m_bar->setVisible(face == Face::Busy);
    setFocusPolicy(face == Face::Busy ? Qt::StrongFocus : Qt::NoFocus);
    m_timer.stop();
    m_note.reset();
    setAccessibleDescription(Text());
    if (!Text().isEmpty()) {
        QAccessibleEvent event(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
    setVisible(!Text().isEmpty());
    update();
}

void WizardLine::ShowChosen(const PageLine& line) {
    SetFace(Face::Chosen, line.lead, line.rest);
}

void WizardLine::ShowBusy(const QString& what, std::shared_ptr<const ProgressNote> note) {
    if (m_face == Face::Busy && m_lead->text() == what && m_note == note)
        return;
    SetFace(Face::Busy, what, {});
    m_bar->setAccessibleName(what);
    m_bar->SetProgress({});
    m_note = std::move(note);
    if (m_note)
        m_timer.start(NotePeriod);
}

void WizardLine::ShowProgress(const Progress& progress) {
    if (m_face != Face::Busy)
        return;
    m_bar->SetProgress(progress);
    m_rest->setText(progress.text);
    m_rest->setVisible(!progress.text.isEmpty());
    setAccessibleDescription(Text());
}

void WizardLine::ShowFailure(const QString& why, bool again) {
    SetFace(Face::Failure, {}, why);
    m_again->setVisible(again);
}

QWidget* WizardLine::Link() const {
    return m_again;
}

QString WizardLine::Text() const {
    QStringList words{m_lead->text(), m_rest->text()};
    words.removeAll({});
    return words.join(u' ');
}

void WizardLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_face == Face::Failure) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Look::RefusalLine);
        painter.setBrush(Look::RefusalBack);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Look::CornerRadius,
                                Look::CornerRadius);
    }
    if (hasFocus())
        Look::DrawFocusRing(painter, rect());
}
