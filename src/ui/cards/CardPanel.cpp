#include "cards/CardPanel.h"

#include "cards/ExpandableItem.h"
#include "list/FindBar.h"
#include "look/Look.h"
#include "page/NoticeLine.h"

#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int ChooseFrom = 10; ///< so few are seen at a glance
constexpr std::chrono::milliseconds CounterPeriod{1000};
constexpr QMargins EmptyMargins(20, 25, 20, 25);

} // namespace

void CardEntries::Add(CardEntry& entry) {
    if (entry.title.isEmpty())
        entry.title = entry.id;
    entry.key = entry.title.toCaseFolded();
    all.push_back(&entry);
}

CardPanel::CardPanel(const Console& console) : CExpandableItemList(console) {}

void CardPanel::SetSection(CardSection section) {
    m_section = std::move(section);
    SetHelp(m_section.help);
    SetToolbar({RefreshAction()});
    ReloadEvery(m_section.counter ? std::min(m_section.period, CounterPeriod) : m_section.period);
}

void CardPanel::CreatePanel() {
    CExpandableItemList::CreatePanel();
    auto* empty = new QWidget;
    auto* column = new QVBoxLayout(empty);
    column->setContentsMargins(0, 0, 0, 0);
    m_emptyText = new QLabel;
    m_emptyText->setTextFormat(Qt::PlainText);
    m_emptyText->setWordWrap(true);
    m_emptyText->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    column->addWidget(m_emptyText);
    SetEmptyView(empty, EmptyMargins);
    MakeHeader();
    ShowEmptyText();
}

void CardPanel::MakeHeader() {
    auto* header = new QWidget;
    auto* column = new QVBoxLayout(header);
    column->setContentsMargins(Look::PageMargin, 0, Look::PageMargin, 0);
    column->setSpacing(Look::CardGap);
    m_hidden = new NoticeLine;
    m_row = new QWidget;
    m_choices = new StateChoices(m_section.states);
    m_find = new FindBar(this);
    auto* row = new QHBoxLayout(m_row);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Look::PageMargin);
    row->addWidget(m_choices);
    row->addWidget(m_find, 1);
    row->addStretch();
    column->addWidget(m_row);
    column->addWidget(m_hidden);
    SetHeader(header);
    m_choices->setVisible(!m_section.states.empty());
    connect(m_find, &FindBar::Toggled, this, [this] { TellCounts(-1); });
    connect(m_find, &FindBar::WordsChanged, this, [this](const QString& words) {
        m_words = words.toCaseFolded();
        ChooseAnew();
    });
    connect(m_choices, &StateChoices::ChoiceChanged, this, &CardPanel::ChooseAnew);
}

void CardPanel::Reload() {
    ReadList();
    if (ExpandedCard())
        ExpandedCard()->Reload();
}

/// The counter is looked at more often than all is read.
void CardPanel::OnPeriod() {
    const bool due = std::chrono::steady_clock::now() - m_askedAt >= m_section.period;
    if (due ||
        (m_section.counter && TheConsole().counters.ZEPTraceCounterGet(*m_section.counter) != m_changes))
        ReadList();
}

void CardPanel::ReadList() {
    m_askedAt = std::chrono::steady_clock::now();
    if (m_section.counter)
        m_changes = TheConsole().counters.ZEPTraceCounterGet(*m_section.counter);
    Loader().Load(
        m_section.lane,
        [read = m_section.read](std::stop_token stop) {
            return std::make_shared<const CardEntries>(read(stop));
        },
        [this](const Loaded<std::shared_ptr<const CardEntries>>& loaded) {
            if (loaded)
                Take(*loaded);
            else if (loaded.outcome == LoadOutcome::Failed)
                TellAge(loaded.why);
        });
}

void CardPanel::Take(const std::shared_ptr<const CardEntries>& entries) {
    if (entries->read) {
        m_entries = entries;
        m_readAt = QTime::currentTime();
        ShowCards();
    }
    TellRead(entries->read);
}

void CardPanel::TellRead(const ReadResult& read) {
    TellAge(read.Sentence());
}

void CardPanel::TellAge(const QString& failure) {
    TellFailure(failure.isEmpty() || !m_entries
                    ? failure
                    : tr("%1 (Shown as it was at %2.)").arg(failure, m_readAt.toString(u"HH:mm:ss"_s)));
    ShowAge();
    ShowEmptyText();
}

void CardPanel::ShowAge() {
    for (int card = 0; card < CardCount(); ++card)
        CardAt(card)->SetStale(!Failure().isEmpty());
}

void CardPanel::ShowEmptyText() {
    QString text;
    if (!m_entries)
        text = Failure().isEmpty() ? tr("Loading...") : Failure();
    else if (!m_words.isEmpty())
        text = m_section.notFound.arg(m_find->Words());
    else if (m_choices->Chosen())
        text = tr("Nothing is in this state.");
    m_emptyText->setText(text);
    m_emptyText->setVisible(!text.isEmpty());
    // Made once there is nothing to show: reading a page of HTML would cost every start time and memory.
    if (!m_emptyView && m_section.makeEmptyView && text.isEmpty() && CardCount() == 0) {
        m_emptyView = m_section.makeEmptyView();
        m_emptyText->parentWidget()->layout()->addWidget(m_emptyView);
    }
    if (m_emptyView)
        m_emptyView->setVisible(text.isEmpty());
}

/// Begins with no cards, or those that are found would go before the others from then on.
void CardPanel::ChooseAnew() {
    RemoveAll();
    if (m_entries)
        ShowCards();
    ShowAge();
    ShowEmptyText();
}

/// The expanded card stays while its entry does: who starts a failed task looks on.
bool CardPanel::IsWanted(const CardEntry& entry) const {
    const std::optional<int> chosen = m_choices->Chosen();
    return !chosen || *chosen == entry.shownState || (ExpandedCard() && ExpandedCard()->entryId == entry.id);
}

void CardPanel::ShowCards() {
    m_sharing.clear();
    m_wanted.clear();
    m_stateCounts.clear();
    m_matching = 0;
    QSet<QString> titles;
    for (int card = 0; card < CardCount(); ++card)
        titles.insert(CardAt(card)->Title().toCaseFolded());
    std::vector<const CardEntry*> known;
    std::vector<const CardEntry*> others; // without a card
    for (const CardEntry* entry : m_entries->all) {
        if (!entry->key.contains(m_words))
            continue;
        ++m_matching;
        ++m_stateCounts[entry->shownState];
        ++m_sharing[entry->key];
        if (!IsWanted(*entry))
            continue;
        m_wanted.insert(entry->id);
        (titles.contains(entry->key) ? known : others).push_back(entry);
    }
    BeginRefresh();
    for (const CardEntry* entry : known)
        ShowCard(*entry);
    const bool removed = EndRefresh(); // first of all, to make room for the others
    const int kept = CardCount();
    const int hidden = ShowNewCards(others);
    if (removed && CardCount() > kept)
        ShowAll();
    TellCounts(hidden);
}

int CardPanel::ShowNewCards(const std::vector<const CardEntry*>& entries) {
    QSet<QString> titles;
    const auto isFull = [&] { return CardCount() + titles.size() >= MaxCards; };
    for (const CardEntry* entry : entries)
        if (!isFull())
            titles.insert(entry->key);
    int hidden = 0;
    for (const CardEntry* entry : entries) {
        if (titles.contains(entry->key))
            ShowCard(*entry);
        else
            ++hidden;
    }
    return hidden;
}

void CardPanel::ShowCard(const CardEntry& entry) {
    CExpandableItem* card = Keep(entry.title, [&] {
        auto made = m_section.make(entry);
        made->entryId = entry.id;
        return made;
    });
    // Entries of one title share a card, which stays with its entry for as long as that is to be shown.
    if (!card || (card->entryId != entry.id && m_wanted.contains(card->entryId)))
        return;
    card->entryId = entry.id;
    const int sharing = m_sharing.value(entry.key);
    card->SetNote(sharing > 1 ? m_section.shared.arg(sharing) : QString());
    m_section.show(*card, entry);
}

/// `hidden`: how many have no card; -1: as before. Bar and line keep their room once there is a use for them.
void CardPanel::TellCounts(int hidden) {
    if (hidden >= 0)
        m_hidden->SetText(hidden > 0 ? m_section.hidden.arg(hidden) : QString());
    const int total = m_entries ? static_cast<int>(m_entries->all.size()) : 0;
    m_find->SetCounts(static_cast<int>(m_wanted.size()), total);
    m_choices->SetCounts(m_matching, [this](int state) { return m_stateCounts.value(state); });
    if (total > MaxCards)
        m_find->show(); // the way to those without a card
    const bool any = total > ChooseFrom || !m_find->isHidden();
    m_row->setVisible(any);
    QSizePolicy policy = m_hidden->sizePolicy();
    policy.setRetainSizeWhenHidden(total > MaxCards);
    m_hidden->setSizePolicy(policy);
    m_row->parentWidget()->layout()->setContentsMargins(Look::PageMargin, any ? Look::PageMargin : 0,
                                                        Look::PageMargin, 0);
    RecalcLayout();
}

bool CardPanel::CanFind() const {
    const auto* inside = ExpandedCard() ? ExpandedCard()->findChild<CBrenPanel*>() : nullptr;
    return ExpandedCard() ? inside && inside->CanFind() : m_find != nullptr;
}

void CardPanel::OpenFind() {
    if (ExpandedCard())
        return ExpandedCard()->findChild<CBrenPanel*>()->OpenFind();
    m_row->show();
    m_find->Open();
}

void CardPanel::keyPressEvent(QKeyEvent* event) {
    if (!event->matches(QKeySequence::Find) || ExpandedCard())
        return CExpandableItemList::keyPressEvent(event);
    OpenFind();
}

/// The find bar gives its focus to the panel.
void CardPanel::focusInEvent(QFocusEvent* event) {
    CExpandableItemList::focusInEvent(event);
    FocusCard(0);
}
