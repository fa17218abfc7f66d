#include "wizard/BrenPropertySheet.h"

#include "look/Look.h"
#include "page/UserPrompts.h"
#include "wizard/WizardLine.h"
#include "wizard/WizardSteps.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize FirstSize(760, 560);
constexpr int ContentMargin = 20;

bool IsEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool TakesKeys(const QWidget* widget) {
    return widget && widget->isEnabled() && widget->isVisible() && widget->focusPolicy() & Qt::TabFocus;
}

} // namespace

CBrenPropertySheet::CBrenPropertySheet(Reader& reader, UserPrompts& prompts, const QString& caption,
                                       QWidget* parent)
    : QDialog(parent), m_reader(reader), m_prompts(prompts),
      m_work(std::make_unique<PageLoader>(reader, *this)), m_steps(new WizardSteps(caption)),
      m_title(new QLabel), m_subtitle(new QLabel), m_pages(new QStackedWidget), m_line(new WizardLine),
      m_back(new QPushButton(tr("&Back"))), m_main(new QPushButton(tr("&Next"))),
      m_cancel(new QPushButton(tr("Cancel"))) {
    setWindowTitle(caption);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* upper = new QHBoxLayout;
    upper->setSpacing(0);
    upper->addWidget(m_steps);
    upper->addWidget(MakeContent(), 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(upper, 1);
    column->addWidget(MakeFoot());
    resize(FirstSize);

    m_main->setDefault(true);
    m_main->installEventFilter(this);
    connect(m_back, &QPushButton::clicked, this, [this] { StepBack(m_travel.Current() - 1); });
    connect(m_main, &QPushButton::clicked, this, &CBrenPropertySheet::Advance);
    connect(m_cancel, &QPushButton::clicked, this, &CBrenPropertySheet::reject);
    connect(m_line, &WizardLine::TryAgain, this, &CBrenPropertySheet::TryAgain);
}

// The pages' loaders go before the pages.
CBrenPropertySheet::~CBrenPropertySheet() = default;

QWidget* CBrenPropertySheet::MakeContent() {
    auto* content = new QWidget;
    Look::SetGround(*content, Look::Paper);
    for (QLabel* label : {m_title, m_subtitle}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    m_title->setFont(Look::Font(Look::Title, QFont::Bold));
    m_subtitle->setFont(Look::Font(Look::Small));
    Look::SetInk(*m_subtitle, Look::Muted);

    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(ContentMargin, 14, ContentMargin, Look::TextInset);
    column->setSpacing(4);
    column->addWidget(m_title);
    column->addWidget(m_subtitle);
    column->addSpacing(8);
    column->addWidget(m_pages, 1);
    column->addSpacing(4);
    column->addWidget(m_line);
    return content;
}

QWidget* CBrenPropertySheet::MakeFoot() {
    auto* line = new QFrame;
    line->setFixedHeight(1);
    Look::SetGround(*line, Look::Line);
    auto* foot = new QWidget;
    Look::SetGround(*foot, Look::Side);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(16, 11, 16, 11);
    row->setSpacing(8);
    row->addStretch();
    row->addWidget(m_back);
    row->addWidget(m_main);
    row->addSpacing(10);
    row->addWidget(m_cancel);
    auto* column = new QVBoxLayout(foot);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(line);
    column->addLayout(row);
    return foot;
}

void CBrenPropertySheet::AddPage(WizardPage* page) {
    page->m_sheet = this;
    page->setAccessibleName(page->Title());
    m_pages->addWidget(page);
    m_travel.Add();
    Entry entry;
    entry.page = page;
    entry.loader = std::make_unique<PageLoader>(m_reader, *this);
    m_entries.push_back(std::move(entry));
    connect(page, &WizardPage::Edited, this, [this, page] { OnEdited(page); });
}

CBrenPropertySheet::Entry& CBrenPropertySheet::EntryOf(const WizardPage& page) {
    return *std::find_if(m_entries.begin(), m_entries.end(),
                         [&page](const Entry& entry) { return entry.page == &page; });
}

CBrenPropertySheet::Entry& CBrenPropertySheet::Current() {
    return m_entries.at(static_cast<std::size_t>(m_travel.Current()));
}

bool CBrenPropertySheet::IsReady() {
    const Entry& entry = Current();
    return entry.busy.isEmpty() && entry.failure.isEmpty() && entry.page->IsComplete();
}

WizardPage* CBrenPropertySheet::CurrentPage() const {
    return m_entries.at(static_cast<std::size_t>(m_travel.Current())).page;
}

void CBrenPropertySheet::LeaveOut(const WizardPage& page, bool leftOut) {
    m_travel.LeaveOut(int(&EntryOf(page) - m_entries.data()), leftOut);
    Refresh();
}

void CBrenPropertySheet::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (m_entries.empty() || event->spontaneous())
        return;
    if (std::exchange(m_opened, true))
        return FillCurrent(); // a read may have ended with the window hidden
    resize(size().boundedTo(screen()->availableSize()));
    EnterPage();
}

void CBrenPropertySheet::EnterPage() {
    m_said.clear();
    m_pages->setCurrentWidget(CurrentPage());
    m_title->setText(CurrentPage()->Title());
    m_subtitle->setText(CurrentPage()->Subtitle());
    m_subtitle->setVisible(!CurrentPage()->Subtitle().isEmpty());
    FillCurrent();
    OrderTabs();
    FocusPage();
}

void CBrenPropertySheet::OrderTabs() {
    QWidget* last = nullptr;
    for (QWidget* next = nextInFocusChain(); next != this; next = next->nextInFocusChain())
        if (CurrentPage()->isAncestorOf(next) && next->focusPolicy() & Qt::TabFocus)
            last = next;
    if (!last)
        return;
    for (QWidget* next : {m_line->Link(), static_cast<QWidget*>(m_back), static_cast<QWidget*>(m_main),
                          static_cast<QWidget*>(m_cancel)})
        setTabOrder(std::exchange(last, next), next);
}

void CBrenPropertySheet::FillCurrent() {
    Entry& entry = Current();
    const QVariantList inputs = entry.page->Inputs();
    if (entry.filledFrom != inputs || !entry.failure.isEmpty()) {
        entry.loader->Cancel();
        ++entry.reads;
        entry.busy.clear();
        entry.failure.clear();
        entry.filledFrom = inputs;
        const Filling filling(*this);
        entry.page->Fill();
    }
    Refresh();
}

void CBrenPropertySheet::TryAgain() {
    Current().filledFrom.reset();
    FillCurrent();
}

int CBrenPropertySheet::BeginRead(WizardPage& page, const QString& busy,
                                  std::shared_ptr<const ProgressNote> note) {
    Entry& entry = EntryOf(page);
    entry.busy = busy;
    entry.note = std::move(note);
    entry.failure.clear();
    if (&page == CurrentPage())
        m_said.clear(); // something else has been entered since
    const int number = ++entry.reads;
    Refresh();
    return number;
}

bool CBrenPropertySheet::IsPresentRead(const WizardPage& page, int number, const QVariantList& inputs) {
    Entry& entry = EntryOf(page);
    if (entry.reads != number)
        return false;
    if (page.Inputs() == inputs)
        return true;
    entry.busy.clear();
    entry.note.reset();
    entry.filledFrom.reset();
    if (&page == CurrentPage())
        FillCurrent();
    return false;
}

void CBrenPropertySheet::EndRead(WizardPage& page, const QString& failure, bool ended) {
    Entry& entry = EntryOf(page);
    entry.busy.clear();
    entry.note.reset();
    entry.failure = failure;
    if (!ended)
        entry.filledFrom.reset();
    const bool focusRested = focusWidget() == m_line;
    Refresh();
    OrderTabs();
    if (&page == CurrentPage() && focusRested && m_travel.Now() == WizardTravel::Phase::Idle)
        FocusPage();
}

void CBrenPropertySheet::Advance() {
    if (!m_travel.Allowed(IsReady(), false).main || !m_travel.Begin())
        return;
    ++m_attempt;
    m_said.clear();
    m_busy.clear();
    m_heldFocus = focusWidget();
    CurrentPage()->Leave();
    Refresh();
}

void CBrenPropertySheet::Pass() {
    if (m_travel.Now() == WizardTravel::Phase::Idle)
        return;
    ++m_attempt;
    m_busy.clear();
    m_note.reset();
    if (m_travel.Pass()) {
        CurrentPage()->setEnabled(true);
        EnterPage();
    } else {
        accept();
    }
}

void CBrenPropertySheet::Stay(const Refusal& refusal) {
    ++m_attempt;
    m_work->Cancel();
    m_travel.Stay();
    m_busy.clear();
    m_note.reset();
    m_said = refusal.why;
    Refresh();
    const QPointer<QWidget> wanted = refusal.field ? refusal.field : m_heldFocus;
    if (refusal.inBox)
        m_prompts.ShowMessage(this, refusal.why, [this, wanted] { ReleaseFocus(wanted); });
    else
        ReleaseFocus(wanted);
}

void CBrenPropertySheet::BeginWork(const QString& busy, std::shared_ptr<const ProgressNote> note) {
    m_busy = busy;
    m_note = std::move(note);
    Refresh();
}

void CBrenPropertySheet::BeginCommit(const QString& busy, std::shared_ptr<const ProgressNote> note) {
    Q_ASSERT(m_travel.IsLast());
    m_travel.Commit();
    BeginWork(busy, std::move(note));
}

struct CBrenPropertySheet::Sending {
    Lane lane;
    std::vector<WizardRequest> requests;
    std::size_t next = 0;
};

void CBrenPropertySheet::SendAll(Lane lane, std::vector<WizardRequest> requests) {
    auto sending = std::make_shared<Sending>(Sending{lane, std::move(requests)});
    while (sending->next < std::min(m_sent.size(), sending->requests.size()) &&
           m_sent[sending->next] == sending->requests[sending->next].identity)
        ++sending->next;
    m_sent.resize(sending->next);
    SendNext(sending);
}

void CBrenPropertySheet::SendNext(const std::shared_ptr<Sending>& sending) {
    if (sending->next == sending->requests.size()) {
        Pass();
        return;
    }
    const WizardRequest& request = sending->requests[sending->next];
    Commit(sending->lane, request.busy, request.send, [this, sending](const Loaded<QString>& failure) {
        const WizardRequest& sent = sending->requests[sending->next];
        if (!failure || !failure->isEmpty())
            return Stay({failure ? *failure : tr("The request could not be sent."), {}, sent.failureInBox});
        m_sent.push_back(sent.identity);
        ++sending->next;
        SendNext(sending);
    });
    ShowProgress({qint64(sending->next), qint64(sending->requests.size()), {}});
}

void CBrenPropertySheet::ShowProgress(const Progress& progress) {
    m_line->ShowProgress(progress);
}

void CBrenPropertySheet::GoBackTo(const WizardPage& page) {
    const int number = int(&EntryOf(page) - m_entries.data());
    if (m_travel.MarkOf(number) == WizardTravel::Mark::Done)
        StepBack(number);
}

void CBrenPropertySheet::StepBack(int page) {
    if (m_travel.Now() == WizardTravel::Phase::Checking)
        GiveCheckUp();
    bool moved = false;
    while (m_travel.Current() > page && m_travel.Back())
        moved = true;
    if (moved)
        EnterPage();
}

void CBrenPropertySheet::GiveCheckUp() {
    Stay();
}

void CBrenPropertySheet::OnEdited(WizardPage* page) {
    if (m_filling > 0)
        return;
    m_entered = true;
    if (page != CurrentPage())
        return;
    if (m_travel.Now() == WizardTravel::Phase::Checking) {
        m_heldFocus = focusWidget();
        GiveCheckUp();
    }
    Refresh();
}

void CBrenPropertySheet::reject() {
    switch (m_travel.Now()) {
    case WizardTravel::Phase::Committing:
        if (CurrentPage()->CanEscape())
            CurrentPage()->Escape();
        break;
    case WizardTravel::Phase::Checking:
        GiveCheckUp();
        break;
    case WizardTravel::Phase::Idle:
        if (m_entered)
            AskToDiscard();
        else
            QDialog::reject();
    }
}

void CBrenPropertySheet::AskToDiscard() {
    if (std::exchange(m_asking, true))
        return;
    m_prompts.Ask(this,
                  {tr("Do you really want to discard what you have entered?"),
                   {},
                   windowTitle(),
                   tr("&Discard"),
                   tr("&Keep")},
                  [this](bool yes) {
                      m_asking = false;
                      if (yes)
                          QDialog::reject();
                  });
}

void CBrenPropertySheet::Refresh() {
    const WizardTravel::Buttons allowed = m_travel.Allowed(IsReady(), CurrentPage()->CanEscape());
    ShowSteps();
    m_main->setText(m_travel.IsLast() ? tr("&Finish") : tr("&Next"));
    ShowLine();
    HoldFocus(allowed);
    m_back->setEnabled(allowed.back);
    m_main->setEnabled(allowed.main);
    m_cancel->setEnabled(allowed.cancel);
    CurrentPage()->setEnabled(m_travel.Now() != WizardTravel::Phase::Committing);
}

void CBrenPropertySheet::ShowSteps() {
    std::vector<WizardSteps::Step> steps;
    for (std::size_t page = 0; page < m_entries.size(); ++page)
        steps.push_back({m_entries[page].page->Title(), m_travel.MarkOf(int(page))});
    m_steps->SetSteps(std::move(steps));
}

void CBrenPropertySheet::ShowLine() {
    const Entry& entry = Current();
    if (m_travel.Now() != WizardTravel::Phase::Idle)
        m_line->ShowBusy(m_busy.isEmpty() ? tr("Please wait...") : m_busy, m_note);
    else if (!entry.busy.isEmpty())
        m_line->ShowBusy(entry.busy, entry.note);
    else if (!entry.failure.isEmpty())
        m_line->ShowFailure(entry.failure, true);
    else if (!m_said.isEmpty())
        m_line->ShowFailure(m_said, false);
    else
        m_line->ShowChosen(entry.page->Line());
}

void CBrenPropertySheet::HoldFocus(const WizardTravel::Buttons& allowed) {
    QWidget* focused = focusWidget();
    const bool loses = (focused == m_main && !allowed.main) || (focused == m_back && !allowed.back) ||
                       (focused == m_cancel && !allowed.cancel) ||
                       (m_travel.Now() == WizardTravel::Phase::Committing && focused &&
                        CurrentPage()->isAncestorOf(focused));
    if (!loses)
        return;
    if (m_line->IsBusy())
        m_line->setFocus(Qt::OtherFocusReason);
    else
        FocusPage();
}

void CBrenPropertySheet::ReleaseFocus(QWidget* wanted) {
    if (wanted && wanted->focusProxy())
        wanted = wanted->focusProxy();
    if (wanted && wanted->isEnabled() && wanted->isVisible())
        wanted->setFocus(Qt::OtherFocusReason);
    else
        FocusPage();
}

void CBrenPropertySheet::FocusPage() {
    QWidget* page = CurrentPage();
    QWidget* wanted = page->focusWidget();
    if (!TakesKeys(wanted) || wanted == page) {
        wanted = page->nextInFocusChain();
        while (wanted != page && (!page->isAncestorOf(wanted) || !TakesKeys(wanted) || wanted->focusProxy()))
            wanted = wanted->nextInFocusChain();
    }
    if (wanted != page)
        wanted->setFocus(Qt::OtherFocusReason);
    else if (m_main->isEnabled())
        m_main->setFocus(Qt::OtherFocusReason);
    else
        (m_line->IsBusy() ? static_cast<QWidget*>(m_line) : m_cancel)->setFocus(Qt::OtherFocusReason);
}

void CBrenPropertySheet::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Refresh) && !Current().failure.isEmpty())
        return TryAgain();
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (!IsEnter(*event) || (modifiers != Qt::NoModifier && modifiers != Qt::ControlModifier)) {
        QDialog::keyPressEvent(event);
        return;
    }
    event->accept();
    // A tree or list that has no use for the key ends nothing with it.
    if (!event->isAutoRepeat() && !qobject_cast<QAbstractItemView*>(focusWidget()))
        Advance();
}

bool CBrenPropertySheet::eventFilter(QObject* watched, QEvent* event) {
    // A key that is held, or a double click, must not run through several pages.
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        return key.isAutoRepeat() && IsEnter(key);
    }
    return event->type() == QEvent::MouseButtonDblClick || QDialog::eventFilter(watched, event);
}
