#include "list/ListUpdate.h"

#include "list/CellMarkup.h"

#include <QMultiHash>

#include <algorithm>
#include <exception>
#include <numeric>

namespace {

struct Stopped : std::exception {};

/// Looks at the token now and then: it costs more than a row.
class StopWatch {
public:
    explicit StopWatch(const std::stop_token& stop) : m_stop(stop) {}

    void Look() {
        constexpr unsigned now = 1024;
        if (++m_looks % now == 0 && m_stop.stop_requested())
            throw Stopped();
    }

private:
    const std::stop_token& m_stop;
    unsigned m_looks = 0;
};

/// Of rows that share an id, those at the same place from the front or the back belong together.
Places MatchRows(const RowSet& old, const RowSet& fresh, StopWatch& stop) {
    const int oldCount = old.Count();
    const int freshCount = fresh.Count();
    Places matches(std::size_t(oldCount), -1);
    const int shorter = std::min(oldCount, freshCount);
    int front = 0;
    for (; front < shorter && old.HasIdOf(front, fresh, front); ++front, stop.Look())
        matches[std::size_t(front)] = front;
    int back = 0;
    for (; back < shorter - front && old.HasIdOf(oldCount - 1 - back, fresh, freshCount - 1 - back);
         ++back, stop.Look())
        matches[std::size_t(oldCount - 1 - back)] = freshCount - 1 - back;
    if (front + back == shorter)
        return matches;

    QMultiHash<std::size_t, int> places;
    places.reserve(freshCount - back - front);
    for (int place = freshCount - back - 1; place >= front; --place, stop.Look())
        places.insert(fresh.IdHash(place), place); // what was inserted last is found first
    for (int place = front; place < oldCount - back; ++place, stop.Look()) {
        const std::size_t hash = old.IdHash(place);
        for (auto found = places.find(hash); found != places.end() && found.key() == hash; ++found) {
            if (old.HasIdOf(place, fresh, *found)) {
                matches[std::size_t(place)] = *found;
                places.erase(found);
                break;
            }
        }
    }
    return matches;
}

bool Matches(const RowSet& rows, int row, const Arrangement& arrangement) {
    if (!arrangement.hidden.isEmpty() &&
        arrangement.hidden.contains(rows.Cell(row, arrangement.hidingColumn)))
        return false;
    return arrangement.words.isEmpty() ||
           std::any_of(arrangement.columns.begin(), arrangement.columns.end(), [&](int column) {
               const QString cell = rows.Cell(row, column);
               return (cell.startsWith(u'#') ? WordsOfCell(cell) : cell)
                   .contains(arrangement.words, Qt::CaseInsensitive);
           });
}

Places Arranged(const RowSet& rows, const Arrangement& arrangement, StopWatch& stop) {
    Places places(std::size_t(rows.Count()));
    std::iota(places.begin(), places.end(), 0);
    if (!arrangement.words.isEmpty() || !arrangement.hidden.isEmpty())
        std::erase_if(places, [&](int place) {
            stop.Look();
            return !Matches(rows, place, arrangement);
        });
    if (!arrangement.order)
        return places;
    std::vector<SortKey> keys(std::size_t(rows.Count()));
    for (const int place : places) {
        stop.Look();
        keys[std::size_t(place)] = rows.KeyOf(place, arrangement.sortColumn);
    }
    const bool descending = *arrangement.order == Qt::DescendingOrder;
    std::stable_sort(places.begin(), places.end(), [&](int a, int b) {
        stop.Look();
        return descending ? keys[std::size_t(b)] < keys[std::size_t(a)]
                          : keys[std::size_t(a)] < keys[std::size_t(b)];
    });
    return places;
}

} // namespace

ListUpdate MakeUpdate(const RowSet& old, const RowSet& rows, const Arrangement& arrangement,
                      const std::stop_token& stop) {
    StopWatch watch(stop);
    ListUpdate update{rows, arrangement, MatchRows(old, rows, watch), {}, {}};
    for (int place = 0; place < old.Count(); ++place, watch.Look()) {
        const int match = update.matches[std::size_t(place)];
        if (match >= 0 && !old.Equals(place, rows, match))
            update.changed.push_back({place, match});
    }
    update.places = Arranged(rows, arrangement, watch);
    return update;
}

bool AreEqual(const RowSet& a, const RowSet& b, const std::stop_token& stop) {
    StopWatch watch(stop);
    if (a.Count() != b.Count())
        return false;
    for (int row = 0; row < a.Count(); ++row, watch.Look()) {
        if (!a.Equals(row, b, row))
            return false;
    }
    return true;
}

int FindRow(const RowSet& rows, const Places& displayed, const RowSearch& search,
            const std::stop_token& stop) {
    StopWatch watch(stop);
    const int count = int(displayed.size());
    for (int step = 0; step < count; ++step, watch.Look()) {
        const int row = (search.from + (search.up ? count - step : step)) % count;
        const bool starts = std::any_of(search.columns.begin(), search.columns.end(), [&](int column) {
            return WordsOfCell(rows.Cell(displayed[std::size_t(row)], column))
                .startsWith(search.start, Qt::CaseInsensitive);
        });
        if (starts)
            return row;
    }
    return -1;
}

std::vector<NumberRun> RunsOf(const std::vector<bool>& places) {
    std::vector<NumberRun> runs;
    for (int place = 0; place < int(places.size()); ++place) {
        if (!places[size_t(place)])
            continue;
        if (!runs.empty() && runs.back().last == place - 1)
            runs.back().last = place;
        else
            runs.push_back({place, place});
    }
    return runs;
}
