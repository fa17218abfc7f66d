#include "backup/ListOn.h"
#include "backup/SnapshotLevels.h"
#include "backup/SnapshotsPanel.h"
#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "benchmarks/HeldReader.h"
#include "list/BrenListCtrl.h"
#include "look/Look.h"
#include "taskman/TaskList.h"
#include "wizard/CheckTreeView.h"

#include <QApplication>
#include <QLineEdit>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Rounds = 7;
constexpr int Snapshots = 1'000;
constexpr int Entries = 10'000;
constexpr int KnownNodes = 100'000;
constexpr int LevelsMore = 20; ///< that a find lists behind those

/// A listing as the service writes it, of folders or files.
devservice::Answer ListingOf(int count, bool folders, const std::function<QString(int)>& nameOf) {
    QString text = u"<D:multistatus xmlns:D=\"DAV:\">"_s;
    for (int entry = 0; entry < count; ++entry)
        text += u"<D:response><D:href>/resources/x/%1</D:href><D:propstat><D:prop><D:displayname>%1</"
                u"D:displayname>"
                "<D:iscollection>%2</D:iscollection><D:getlastmodified>Tue, 04 Mar 2025 09:05:00 GMT"
                "</D:getlastmodified><a:mesffolder>0</a:mesffolder></D:prop></D:propstat></D:response>"_s.arg(
                    nameOf(entry), folders ? u"1"_s : u"0"_s);
    return {207, (text + "</D:multistatus>"_L1).toStdString(), "text/xml"};
}

void Draw() {
    for (int turn = 0; turn < 3; ++turn)
        QCoreApplication::processEvents();
}

void MeasureSet(BenchTable& table) {
    ApplyLook(*qApp);
    ConsoleParts parts("empty");
    TaskRow task;
    task.id = u"{ABC}"_s;
    task.type = u"Snapshotbackup"_s;
    task.description = u"D:\\Work\t/V/T\t*"_s;
    const QString set = SetPlaceOf(task.id, task.type, task.description).Folder();
    parts.home.Service().SetAnswer(
        ("/resources"_L1 + set).toStdString(), ListingOf(Snapshots, true, [](int snapshot) {
            const QDateTime time = QDateTime(QDate(2020, 1, 1), QTime(1, 0)).addDays(snapshot);
            return time.toString(u"yyyy-M-d-h-m-s"_s) +
                   (snapshot % 10 > 0 ? u"_%1"_s.arg(snapshot % 10) : QString());
        }));
    Samples times;
    for (int round = 0; round < Rounds; ++round) {
        HeldReader reader;
        const Console console = parts.On(reader);
        CSnapshotsPanel panel(console, task);
        panel.resize(770, 500);
        panel.show();
        panel.Activate();
        times.Add(MillisecondsOf([&] {
            while (reader.HasJobs()) {
                reader.Work();
                reader.Answer();
            }
            Draw();
        }));
        if (panel.findChild<CBrenListCtrl*>()->Rows().TotalRows() != Snapshots)
            throw std::runtime_error("not all snapshots are shown");
    }
    table.Add({.name = "A set of 1,000 snapshots, from the request to all rows on screen",
               .unit = "ms",
               .ours = times.Median(),
               .maxOurs = 300.0});
}

void MeasureComponents(BenchTable& table) {
    ApplyLook(*qApp);
    ConsoleParts parts("empty");
    parts.home.Service().SetAnswer(
        "/resources/V/s", ListingOf(Entries, false, [](int entry) { return u"scan %1.tif"_s.arg(entry); }));
    Samples times;
    for (int round = 0; round < Rounds; ++round) {
        HeldReader reader;
        QWidget page;
        CheckTreeModel model(
            reader, page, Lane::Service,
            ListSnapshot(parts.client, u"/V/s"_s, SetType::Folder, std::make_shared<KnownLevels>()));
        CheckTreeView view(model, &page);
        view.resize(540, 400);
        page.resize(560, 420);
        page.show();
        model.List();
        times.Add(MillisecondsOf([&] {
            reader.Work();
            reader.Answer();
            Draw();
        }));
        if (model.rowCount() != Entries)
            throw std::runtime_error("not all entries are shown");
    }
    table.Add({.name = "A folder of 10,000 components, from the request to the screen",
               .unit = "ms",
               .ours = times.Median(),
               .maxOurs = 200.0});
}

TreeLevel Level(int count, bool canOpen) {
    TreeLevel level;
    for (int row = 0; row < count; ++row)
        level.entries.push_back({u"folder %1"_s.arg(row), u"folder %1"_s.arg(row), 0, canOpen});
    return level;
}

void MeasureFind(BenchTable& table) {
    ApplyLook(*qApp);
    constexpr int LevelOf = 1'000;
    HeldReader reader;
    QWidget page;
    int listed = 0;
    CheckTreeModel model(reader, page, Lane::Service, [&listed](const QStringList&, const std::stop_token&) {
        ++listed;
        return std::optional(Level(LevelOf / 10, false));
    });
    CheckTreeView view(model, &page);
    view.resize(540, 400);
    page.resize(560, 420);
    ListOn find(view, &page);
    page.show();
    model.SetLevel({}, Level(KnownNodes / LevelOf + LevelsMore, true));
    for (int folder = 0; folder < KnownNodes / LevelOf; ++folder)
        model.SetLevel({u"folder %1"_s.arg(folder)}, Level(LevelOf, false));
    QCoreApplication::processEvents();
    find.findChild<QLineEdit*>()->setText(u"folder 99"_s);
    StallWatch watch;
    watch.Handle([&] {
        if (reader.HasJobs()) {
            reader.Work();
            watch.longest = std::max(watch.longest, MillisecondsOf([&] { reader.Answer(); }));
        }
        return listed < LevelsMore;
    });
    table.Add({.name = "Longest stall of a find over 100,000 listed components that lists on",
               .unit = "ms",
               .ours = watch.longest,
               .maxOurs = 50.0});
}

const BenchRegistration Set("snapshots", MeasureSet);
const BenchRegistration Components("snapshot components", MeasureComponents);
const BenchRegistration Find("snapshot find", MeasureFind);

} // namespace
