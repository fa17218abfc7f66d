#include "list/RowMatch.h"

#include <QHash>

std::vector<int> MatchRows(const std::vector<ListRow>& old, const std::vector<ListRow>& fresh) {
    std::vector<int> matches(old.size(), -1);
    const size_t shorter = std::min(old.size(), fresh.size());
    size_t front = 0;
    for (; front < shorter && old[front].Id() == fresh[front].Id(); ++front)
        matches[front] = int(front);
    size_t back = 0;
    for (; back < shorter - front && old[old.size() - 1 - back].Id() == fresh[fresh.size() - 1 - back].Id();
         ++back)
        matches[old.size() - 1 - back] = int(fresh.size() - 1 - back);

    if (front + back == old.size())
        return matches;

    QHash<QStringView, int> places;
    for (size_t place = front; place < fresh.size() - back; ++place)
        places.insert(fresh[place].Id(), int(place));
    for (size_t place = front; place < old.size() - back; ++place) {
        const auto found = places.constFind(old[place].Id());
        if (found != places.constEnd()) {
            matches[place] = *found;
            places.erase(found);
        }
    }
    return matches;
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
