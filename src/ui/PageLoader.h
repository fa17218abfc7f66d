#pragma once

#include "ui/Reader.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>

enum class LoadOutcome { Answered, Cancelled, Failed };

/// What a fetch brought; the value is there only when it was answered.
template <typename Value>
struct Loaded {
    LoadOutcome outcome = LoadOutcome::Failed;
    std::optional<Value> value;
    QString why; ///< of a failed one: a sentence for the user

    explicit operator bool() const { return value.has_value(); }
    const Value& operator*() const { return *value; }
    const Value* operator->() const { return &*value; }
};

/// Fetches on the Reader and applies on the UI thread, for the page that owns it: one loader for each kind of
/// thing that the page reads. A fetch is `Value (std::stop_token)` or `std::optional<Value>
/// (std::stop_token)`, where nothing means failed, as does an exception, which is traced; it captures values
/// or shared ownership, never the page. An apply is `void (const Loaded<Value>&)`. Each fetch ends in exactly
/// one apply, none once the page is gone.
class PageLoader : public QObject {
public:
    PageLoader(Reader& reader, QWidget& page);
    ~PageLoader() override;

    /// Reads anew: a read of this loader that has not ended yet ends as cancelled, whatever it brings.
    template <typename Fetch, typename Apply>
    void Load(Lane lane, Fetch fetch, Apply apply) {
        Cancel();
        m_timer.stop();
        m_read = std::stop_source();
        ++m_state->reads;
        Submit(lane, ReadPriority::Front, m_read, std::move(fetch), std::move(apply));
    }

    /// Commands the service: overtakes the reads, and is cancelled neither by another nor by the page's end.
    template <typename Fetch, typename Apply>
    void Command(Lane lane, Fetch fetch, Apply apply) {
        Submit(lane, ReadPriority::Command, std::stop_source(), std::move(fetch), std::move(apply));
    }

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
        std::mutex mutex;
        QString traced; ///< what the last fetch threw; under the mutex
    };

    template <typename T>
    struct Unwrapped {
        using Type = T;
    };
    template <typename T>
    struct Unwrapped<std::optional<T>> {
        using Type = T;
    };

    template <typename Fetch, typename Apply>
    void Submit(Lane lane, ReadPriority priority, std::stop_source stop, Fetch fetch, Apply apply) {
        using Value = typename Unwrapped<std::invoke_result_t<Fetch&, std::stop_token>>::Type;
        auto fetched = std::make_shared<Loaded<Value>>();
        auto work = [state = m_state, fetched, fetch = std::move(fetch)](std::stop_token token) mutable {
            QString thrown;
            try {
                fetched->value = fetch(token);
            } catch (const std::exception& exception) {
                thrown = QString::fromUtf8(exception.what());
            }
            fetched->why = NoteThrown(*state, thrown);
        };
        auto done = [state = m_state, priority, stop, fetched, apply = std::move(apply)]() mutable {
            if (!state->loader)
                return;
            Loaded<Value> loaded;
            if (stop.stop_requested())
                loaded.outcome = LoadOutcome::Cancelled;
            else if (fetched->value)
                loaded = {LoadOutcome::Answered, std::move(fetched->value), {}};
            else
                loaded.why = fetched->why;
            if (priority != ReadPriority::Command)
                --state->reads;
            apply(std::as_const(loaded));
            if (state->loader && priority != ReadPriority::Command)
                state->loader->RestartTimer();
        };
        m_reader.Submit({lane, PriorityOf(priority), std::move(stop), std::move(work), std::move(done)});
    }

    /// Traces what a fetch has thrown, once for as long as the fetches throw the same; empty: nothing.
    /// Returns the sentence about a fetch that brought nothing.
    static QString NoteThrown(State& state, const QString& what);

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
