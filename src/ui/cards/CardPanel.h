#pragma once

#include "cards/ExpandableItemList.h"
#include "cards/StateChoices.h"
#include "lanes/Reader.h"
#include "stores/ReadResult.h"
#include "zep/LiveCounters.h"

#include <QHash>
#include <QSet>
#include <QTime>

class FindBar;
class NoticeLine;
class QLabel;

/// What every entry of a page of cards has; a section's record derives from it.
struct CardEntry {
    QString id;
    QString title;      ///< of its card; the id when it has none
    QString key = {};   ///< the title without its case: cards are found by it
    int shownState = 0; ///< one of the section's states, or any other number
};

/// What a read brought.
struct CardEntries {
    ReadResult read;
    std::vector<const CardEntry*> all;   ///< in the order of the page
    std::shared_ptr<const void> records; ///< what `all` points into

    /// Of records that derive from CardEntry and have no key yet. On a lane.
    template <typename Record>
    static CardEntries Of(ReadResult read, std::vector<Record> records) {
        auto kept = std::make_shared<std::vector<Record>>(std::move(records));
        CardEntries entries{std::move(read), {}, kept};
        for (Record& record : *kept)
            entries.Add(record);
        return entries;
    }

private:
    void Add(CardEntry& entry);
};

/// All that one page of cards has of its own.
struct CardSection {
    QString help;
    QString hidden;   ///< "%1 more ... are not shown": there is no room for their cards
    QString notFound; ///< of the words "%1"
    QString shared;   ///< how many, "%1", have the card's title
    std::vector<CardState> states = {};
    Lane lane = Lane::Databases;
    std::chrono::milliseconds period{5000};
    std::optional<TraceCounter> counter = {};         ///< what is shown is read again too when it has moved
    std::function<CardEntries(std::stop_token)> read; ///< holds values and parts of the console only
    std::function<std::unique_ptr<CExpandableItem>(const CardEntry&)> make;
    std::function<void(CExpandableItem&, const CardEntry&)> show; ///< also after `make`
    std::function<QWidget*()> makeEmptyView = {};                 ///< shown when there is nothing
};

/// A page of cards that is read again by itself. Above the cards stand the choice of a state and the words to
/// find by, which reach those entries too that the list has no room for.
class CardPanel : public CExpandableItemList {
    Q_OBJECT

public:
    explicit CardPanel(const Console& console);

    /// Reads the list and what the expanded card shows.
    void Reload() override;
    /// In the expanded card, where there is one.
    bool CanFind() const override;
    void OpenFind() override;

protected:
    /// Before the panel is created.
    void SetSection(CardSection section);

    void CreatePanel() override;
    void OnPeriod() override;
    /// Says how a read ended, after what it brought is shown.
    virtual void TellRead(const ReadResult& read);
    /// What failed, and since when all stands as it is; empty: nothing did.
    void TellAge(const QString& failure);
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void MakeHeader();
    void ReadList();
    void Take(const std::shared_ptr<const CardEntries>& entries);
    void ChooseAnew();
    void ShowCards();
    bool IsWanted(const CardEntry& entry) const;
    int ShowNewCards(const std::vector<const CardEntry*>& entries);
    void ShowCard(const CardEntry& entry);
    void TellCounts(int hidden);
    void ShowAge();
    void ShowEmptyText();

    CardSection m_section;
    std::shared_ptr<const CardEntries> m_entries; ///< as last read well; none before
    QHash<QString, int> m_sharing;                ///< how many entries have a title, by its key
    QSet<QString> m_wanted;                       ///< the ids of all that a card may stay with
    QString m_words;
    int m_matching = 0;            ///< how many hold the words
    QHash<int, int> m_stateCounts; ///< of those
    std::chrono::steady_clock::time_point m_askedAt;
    QTime m_readAt;
    std::optional<quint32> m_changes;
    QWidget* m_row = nullptr; ///< of the choices and the find bar
    StateChoices* m_choices = nullptr;
    FindBar* m_find = nullptr;
    NoticeLine* m_hidden = nullptr;
    QLabel* m_emptyText = nullptr;
    QWidget* m_emptyView = nullptr;
};
