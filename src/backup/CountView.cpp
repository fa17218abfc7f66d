#include "backup/CountView.h"

#include "lanes/ProgressNote.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/WorkBar.h"
#include "service/AccountQuota.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::milliseconds LookPeriod{100};
constexpr int DetailLines = 4;

QLabel* MakeLabel(QFont::Weight weight, const QColor& ink) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setFont(Look::Font(Look::Small, weight));
    label->setWordWrap(true);
    Look::SetInk(*label, ink);
    return label;
}

bool IsSameCount(const BackupDraft& one, const BackupDraft& other) {
    return one.sources == other.sources && one.exclusions == other.exclusions && one.filter == other.filter;
}

} // namespace

CountView::CountView(const Console& console, QWidget* parent)
    : QFrame(parent), m_console(console), m_counting(console.reader, *this), m_quota(console.reader, *this),
      m_total(MakeLabel(QFont::Bold, Look::Ink)), m_beside(MakeLabel(QFont::Normal, Look::Secondary)),
      m_bar(new WorkBar), m_details(new QPlainTextEdit) {
    setFrameShape(QFrame::StyledPanel);
    m_details->setReadOnly(true);
    m_details->setFont(Look::Font(Look::Caption));
    m_details->setTabChangesFocus(true);
    m_details->setAccessibleName(tr("What will be backed up, in numbers"));
    const int line = QFontMetrics(m_details->font()).lineSpacing();
    m_details->setFixedHeight(DetailLines * line + 14);
    auto* head = new QHBoxLayout;
    head->setSpacing(8);
    head->addWidget(m_total);
    head->addWidget(m_beside, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Look::TextInset, 6, Look::TextInset, 6);
    column->setSpacing(4);
    column->addLayout(head);
    column->addWidget(m_bar);
    column->addWidget(m_details);
    QSizePolicy kept = m_bar->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    m_bar->setSizePolicy(kept);
    m_look.setInterval(LookPeriod);
    connect(&m_look, &QTimer::timeout, this, [this] { TakeFigures(m_note->Read()); });
    ShowFigures();
}

void CountView::Count(const BackupDraft& draft) {
    if (m_note && IsSameCount(draft, m_draft))
        return;
    m_draft = draft;
    m_note.reset();
    m_figures = {};
    ShowFigures();
    if (isVisible())
        Start();
}

void CountView::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    if (!m_draft.sources.isEmpty() && !m_figures.isWhole)
        Start();
}

void CountView::hideEvent(QHideEvent* event) {
    m_look.stop(); // the loader has given its read up
    QFrame::hideEvent(event);
}

void CountView::Start() {
    m_note = std::make_shared<FiguresNote>();
    m_bar->show();
    m_bar->SetProgress({});
    m_look.start();
    m_counting.Load(
        Lane::Apart,
        [draft = m_draft, note = m_note](const std::stop_token& stop) {
            AwaitCount(draft, note, stop);
            return note->Read();
        },
        [this](const Loaded<BackupFigures>& figures) {
            if (figures.outcome == LoadOutcome::Cancelled)
                return;
            m_look.stop();
            m_bar->hide();
            if (figures)
                TakeFigures(*figures);
        });
    ReadQuota();
}

void CountView::ReadQuota() {
    if (m_free)
        return;
    m_quota.Load(
        Lane::Service,
        [service = m_console.service](std::stop_token stop) -> std::optional<AccountQuota> {
            const ServiceAnswer answer = RequestQuota(service, std::move(stop));
            return answer ? ParseQuota(answer.body) : std::nullopt;
        },
        [this](const Loaded<AccountQuota>& quota) {
            if (quota && quota->allocated > 0)
                m_free = quota->Available();
            ShowFigures();
        });
}

void CountView::TakeFigures(BackupFigures figures) {
    m_figures = std::move(figures);
    ShowFigures();
    emit Counted();
}

void CountView::ShowFigures() {
    m_total->setText(FiguresText(m_figures));
    const bool isTooMuch = m_free && m_figures.taken.bytes > *m_free;
    QStringList beside;
    if (m_free)
        beside.append(tr("%1 free in the account").arg(SizeText(std::max<qint64>(*m_free, 0))));
    if (isTooMuch)
        beside.append(tr("this is more than that"));
    m_beside->setText(beside.isEmpty() ? QString() : u"\u00B7 "_s + beside.join(u" \u00B7 "_s));
    Look::SetInk(*m_beside, isTooMuch ? Look::Failed : Look::Secondary);
    QStringList lines = FigureLines(m_figures);
    lines.removeFirst();
    if (const QString text = lines.join(u'\n'); text != m_details->toPlainText()) {
        const int at = m_details->verticalScrollBar()->value();
        m_details->setPlainText(text);
        m_details->verticalScrollBar()->setValue(at);
    }
}
