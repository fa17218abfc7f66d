#include "development/CheckRun.h"

#include "development/WatchedReader.h"
#include "window/BTaskMMCDlg.h"

#include <QHash>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::milliseconds StepPeriod{10};

WatchedReader& Held(WatchedReader& reader) {
    reader.Hold();
    return reader;
}

} // namespace

QStringList ReportLines(const std::vector<ViewFind>& finds) {
    std::vector<const ViewFind*> places;
    QHash<QString, QStringList> views; // by place
    for (const ViewFind& found : finds) {
        const QString place = SweepRuleName(found.find.rule) + found.find.path + found.find.why;
        QStringList& seen = views[place];
        if (seen.isEmpty())
            places.push_back(&found);
        if (!seen.contains(found.view))
            seen.append(found.view);
    }
    QStringList lines;
    for (const ViewFind* found : places) {
        const SweepFind& find = found->find;
        const auto others = views[SweepRuleName(find.rule) + find.path + find.why].size() - 1;
        const QString view = others > 0 ? u"%1 and %2 more"_s.arg(found->view).arg(others) : found->view;
        lines.append(QStringList{SweepRuleName(find.rule), view, find.path, find.why}.join(u" | "_s));
    }
    return lines;
}

CheckRun::CheckRun(CBTaskMMCDlg& window, WatchedReader& reader, std::vector<DialogEntry> dialogs,
                   const Options& options)
    : m_reader(Held(reader)), m_options(options), m_walk(window, std::move(dialogs)) {
    connect(&m_timer, &QTimer::timeout, this, &CheckRun::Step);
    Enter();
    m_timer.start(StepPeriod);
}

void CheckRun::Enter() {
    ++m_views;
    m_since.start();
    if (m_options.rules.testFlag(SweepRule::Words))
        Note(SweepWindow(m_walk.Front(), SweepRule::Words));
    m_reader.LetGo();
}

void CheckRun::Step() {
    if (!m_reader.IsQuiet() && !m_since.hasExpired(m_options.patience.count()))
        return;
    m_reader.Hold();
    Note(SweepWindow(m_walk.Front(), m_options.rules));
    if (m_walk.Next())
        return Enter();
    m_reader.LetGo();
    m_timer.stop();
    emit Finished();
}

void CheckRun::Note(const std::vector<SweepFind>& finds) {
    for (const SweepFind& find : finds)
        m_finds.push_back({m_walk.Name(), find});
}
