#include "list/TraceRows.h"

#include "list/BrenListCtrl.h"
#include "list/RecordPanel.h"
#include "page/UserPrompts.h"

#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Makes the rows of a walk, newest first.
class TraceMaker {
public:
    TraceMaker(RecordStream<Trace>& rows, std::shared_ptr<TraceCounts> counts)
        : m_rows(rows), m_counts(std::move(counts)) {}

    bool operator()(const AuditRecord& record) {
        // An unknown level keeps the colour of the row before, on purpose.
        constexpr std::array levels{SwatchColour::Green, SwatchColour::Yellow, SwatchColour::Red};
        if (record.level >= 0 && std::size_t(record.level) < levels.size())
            m_level = levels.at(std::size_t(record.level));
        const QByteArray time = record.time.toUtf8();
        const QByteArray message = AuditMessage(record.trace).toUtf8();
        const Trace trace{m_level, time, message};
        m_rows.Put(trace);
        if (m_counts)
            m_counts->Add(trace);
        return true;
    }

private:
    RecordStream<Trace>& m_rows;
    std::shared_ptr<TraceCounts> m_counts;
    std::optional<SwatchColour> m_level;
};

} // namespace

void TraceBlock::push_back(const Trace& trace) {
    m_texts.append(trace.time).append(trace.message);
    m_places.push_back(
        {quint64(m_texts.size()), quint32(trace.time.size()), trace.level ? qint8(*trace.level) : qint8(-1)});
}

Trace TraceBlock::operator[](std::size_t row) const {
    const Place& place = m_places[row];
    const auto begin = qsizetype(row == 0 ? 0 : m_places[row - 1].end);
    const QByteArrayView texts = QByteArrayView(m_texts).sliced(begin, qsizetype(place.end) - begin);
    return {place.level < 0 ? std::nullopt : std::optional(SwatchColour(place.level)),
            texts.first(place.timeLength), texts.sliced(place.timeLength)};
}

void TraceBlock::shrink_to_fit() {
    m_texts.squeeze();
    m_places.shrink_to_fit();
}

int TraceCounts::Total() const {
    return std::accumulate(m_counts.begin(), m_counts.end(), 0);
}

RecordTable<Trace> TraceRows(RecordPage page, TraceWalk walk, std::shared_ptr<TraceCounts> counts) {
    return {.page = std::move(page),
            .columns = {{RecordPanel::tr("Type"), 50, &Trace::LevelCell},
                        {RecordPanel::tr("Time"), 140, &Trace::TimeCell},
                        {RecordPanel::tr("Trace"), 400, &Trace::MessageCell}},
            .id = {&Trace::time, &Trace::message},
            .read = [walk = std::move(walk), counts = std::move(counts)](RecordStream<Trace>& rows,
                                                                         std::stop_token stop) {
                return walk(TraceMaker(rows, counts), std::move(stop));
            }};
}

void CopyTraces(RecordView& view, std::vector<int> columns, const QString& lastEnd,
                const std::function<void()>& done) {
    const BrenListModel& rows = view.List().Rows();
    ListExcerpt excerpt{rows.AllRows(), Places(std::size_t(rows.TotalRows())), std::move(columns)};
    std::iota(excerpt.places.begin(), excerpt.places.end(), 0);
    view.Loader().Command(
        Lane::Computing,
        [excerpt, lastEnd](std::stop_token) { return JoinedWords(excerpt, u"    "_s, u"\r\n"_s) + lastEnd; },
        [&view, done](const Loaded<QString>& text) {
            done();
            if (!text)
                return;
            UserPrompts& prompts = view.TheConsole().prompts;
            prompts.SetClipboardText(*text);
            prompts.ShowMessage(&view, RecordPanel::tr("All trace items have been copied to clipboard"));
        });
}
