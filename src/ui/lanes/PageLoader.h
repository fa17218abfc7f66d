#pragma once

#include "lanes/Reader.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <memory>
#include <optional>

enum class LoadOutcome { Answered, Cancelled, Failed };

/// What a fetch brought; the value is there only when it was answered.
template <typename Value>
struct Loaded {
    LoadOutcome outcome = LoadOutcome::Failed;
    std::optional<Value> value;

    explicit operator bool() const { return value.has_value(); }
    const Value& operator*() const { return *value; }
    const Value* operator->() const { return &*value; }
};

/// Fetches on the Reader and applies on the UI thread, for the page that owns it: one loader for each kind of
/// thing that the page reads. A fetch is `Value (std::stop_token)` or `std::optional<Value>
/// (std::stop_token)`, where nothing means failed, as does an exception; it captures values or shared
/// ownership, never the page. An apply is `void (const Loaded<Value>&)`. Each fetch ends in exactly one
/// apply, none once the page is gone. A loader rests with its page: when the page is hidden, its timer stops
/// and its read ends as cancelled.
class PageLoader : public QObject {
public:
    PageLoader(Reader& reader, QWidget& page);
    ~PageLoader() override;

    /// Reads anew: a read of this loader that has not ended yet ends as cancelled, whatever it brings.
    template <typename Fetch, typename Apply>
    void Load(Lane lane, Fetch fetch, Apply apply) {
        BeginRead();
        Submit(lane, ReadPriority::Front, m_read, std::move(fetch),
               [state = m_state, apply = std::move(apply)](const auto& loaded) mutable {
                   --state->reads;
                   apply(loaded);
                   EndRead(*state);
               });
    }

    /// Reads one item after the other with `fetchOne (const Item&, std::stop_token)`, and lets commands go
    /// first between two of them. Ends at the first one that fails: the values are fewer than the items then.
    template <typename Item, typename FetchOne, typename Apply>
    void LoadEach(Lane lane, std::vector<Item> items, FetchOne fetchOne, Apply apply) {
        using Value = ValueOf<FetchOne, const Item&>;
        using Each = Batch<Item, Value, FetchOne, Apply>;
        BeginRead();
        LoadNext(lane, m_read,
                 std::make_shared<Each>(Each{std::move(items), {}, std::move(fetchOne), std::move(apply)}));
    }

    /// Commands the service: overtakes the reads, and is cancelled neither by another nor by the page's end.
    template <typename Fetch, typename Apply>
    void Command(Lane lane, Fetch fetch, Apply apply) {
        Submit(lane, ReadPriority::Command, std::stop_source(), std::move(fetch), std::move(apply));
    }

    /// Stops the timer and cancels the read, as when the page is left.
    void Rest();

    /// Gives the read under way up, as when the selection changes.
    void Cancel() { m_read.request_stop(); }
    bool IsReading() const { return m_state->reads > 0; }

    /// Calls `refresh` after `first` (or `period`) and then `period` after each refresh has ended. The timer
    /// stands still while a read is under way, and for good once the page is found hidden.
    void StartTimer(std::chrono::milliseconds period, std::function<void()> refresh,
                    std::optional<std::chrono::milliseconds> first = {});
    void StopTimer();
    bool IsTimerRunning() const { return m_timer.isActive(); }

private:
    /// Outlives the loader in the jobs under way, to tell them that it is gone.
    struct State {
        PageLoader* loader = nullptr;
        int reads = 0;
    };

    template <typename T>
    struct Unwrapped {
        using Type = T;
    };
    template <typename T>
    struct Unwrapped<std::optional<T>> {
        using Type = T;
    };

    /// What a fetch brings when it does not fail.
    template <typename Fetch, typename... Arguments>
    using ValueOf = typename Unwrapped<std::invoke_result_t<Fetch&, Arguments..., std::stop_token>>::Type;

    template <typename Item, typename Value, typename FetchOne, typename Apply>
    struct Batch {
        std::vector<Item> items;
        std::vector<Value> values;
        FetchOne fetchOne;
        Apply apply;
    };

    template <typename Each>
    void LoadNext(Lane lane, const std::stop_source& stop, const std::shared_ptr<Each>& batch) {
        using Value = typename decltype(batch->values)::value_type;
        const auto fetch = [batch](std::stop_token token) -> std::optional<Value> {
            const std::size_t place = batch->values.size();
            if (place == batch->items.size())
                return {};
            return batch->fetchOne(batch->items[place], token);
        };
        const auto next = [state = m_state, lane, stop, batch](const Loaded<Value>& loaded) {
            if (loaded)
                batch->values.push_back(*loaded);
            if (loaded && batch->values.size() < batch->items.size())
                return state->loader->LoadNext(lane, stop, batch);
            Loaded<std::vector<Value>> all;
            all.outcome = loaded.outcome;
            if (loaded.outcome != LoadOutcome::Cancelled)
                all = {LoadOutcome::Answered, std::move(batch->values)};
            --state->reads;
            batch->apply(std::as_const(all));
            EndRead(*state);
        };
        Submit(lane, ReadPriority::Front, stop, fetch, next);
    }

    template <typename Fetch, typename Apply>
    void Submit(Lane lane, ReadPriority priority, std::stop_source stop, Fetch fetch, Apply apply) {
        using Value = ValueOf<Fetch>;
        auto fetched = std::make_shared<std::optional<Value>>();
        auto work = [fetched, fetch = std::move(fetch)](std::stop_token token) mutable {
            try {
                *fetched = fetch(token);
            } catch (const std::exception&) {
                fetched->reset();
            }
        };
        auto done = [state = m_state, stop, fetched, apply = std::move(apply)]() mutable {
            if (!state->loader)
                return;
            Loaded<Value> loaded;
            if (stop.stop_requested())
                loaded.outcome = LoadOutcome::Cancelled;
            else if (*fetched)
                loaded = {LoadOutcome::Answered, std::move(*fetched)};
            apply(std::as_const(loaded));
        };
        m_reader.Submit({lane, PriorityOf(priority), std::move(stop), std::move(work), std::move(done)});
    }

    /// The page's hiding.
    bool eventFilter(QObject* watched, QEvent* event) override;

    void BeginRead();
    static void EndRead(const State& state);
    std::function<ReadPriority()> PriorityOf(ReadPriority wanted) const;
    bool IsInFront() const { return m_page && m_page->isVisible(); }
    void Refresh();
    void RestartTimer();

    Reader& m_reader;
    QPointer<QWidget> m_page;
    std::shared_ptr<State> m_state;
    std::stop_source m_read{std::nostopstate};
    QTimer m_timer;
    std::function<void()> m_refresh; ///< none while the timer is off
    std::chrono::milliseconds m_period{};
    std::optional<std::chrono::milliseconds> m_first; ///< until it has been used
};
