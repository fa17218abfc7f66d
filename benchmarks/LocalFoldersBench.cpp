#include "backup/LocalLevels.h"
#include "benchmarks/BenchTable.h"
#include "benchmarks/HeldReader.h"
#include "lanes/ThreadReader.h"
#include "look/Look.h"
#include "plan/BackupFigures.h"
#include "wizard/CheckTreeView.h"

#include <QApplication>
#include <QTemporaryDir>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int LongLevel = 10'000;
constexpr int CountedFolders = 1'000;
constexpr int FilesAFolder = 100;

/// Shows the level of a folder until it is painted; the time that this took, and the longest stall.
std::pair<double, double> ShowLevel(const LocalFolders& folders, const QString& hung, const QString& shown) {
    ThreadReader reader;
    QWidget page;
    CheckTreeModel model(reader, page, Lane::Apart, ListLocalFolders(folders));
    CheckTreeView view(model, &page);
    view.resize(540, 400);
    page.resize(560, 420);
    page.show();
    model.SetLevel({}, {{{hung, hung}, {shown, shown}}});
    QCoreApplication::processEvents();
    StallWatch watch;
    if (!hung.isEmpty())
        view.expand(model.index(0, 0));
    const QModelIndex level = model.index(1, 0);
    const double time = MillisecondsOf([&] {
        view.expand(level);
        watch.Handle([&] { return model.rowCount(level) == 0; });
        for (int turn = 0; turn < 3; ++turn)
            watch.Handle([once = true]() mutable { return std::exchange(once, false); });
    });
    if (model.rowCount(level) != LongLevel)
        throw std::runtime_error("the level is not whole");
    return {time, watch.longest};
}

void MeasureLevel(BenchTable& table) {
    ApplyLook(*qApp);
    const QTemporaryDir dir;
    for (int i = 0; i < LongLevel; ++i)
        QDir(dir.path()).mkdir(u"folder %1"_s.arg(i));
    const auto released = std::make_shared<std::atomic<bool>>(false);
    LocalFolders folders;
    folders.read = [released](const std::filesystem::path& folder, auto detail, const auto& each) {
        if (folder == "/hung")
            released->wait(false);
        return platform::ReadFolder(folder, detail, each);
    };
    double stall = 0;
    for (const bool hangs : {false, true}) {
        Samples times;
        for (int round = 0; round < 5; ++round) {
            const auto [time, longest] = ShowLevel(folders, hangs ? u"/hung"_s : QString(), dir.path());
            times.Add(time);
            stall = std::max(stall, longest);
        }
        table.Add({.name = hangs ? "The same beside a folder that never answers"
                                 : "A level of 10,000 local folders, listed and on screen",
                   .unit = "ms",
                   .ours = times.Median(),
                   .maxOurs = 200.0});
    }
    table.Add({.name = "Longest stall meanwhile", .unit = "ms", .ours = stall, .maxOurs = 50.0});
    *released = true;
    released->notify_all();
}

/// The plainest walk that takes the same sizes.
void WalkBare(const std::string& folder, qint64& files, qint64& octets) {
    DIR* const opened = ::opendir(folder.c_str());
    if (!opened)
        throw std::runtime_error("a folder is missing");
    while (const dirent* const found = ::readdir(opened)) {
        const std::string name = found->d_name;
        if (found->d_type == DT_DIR && name != "." && name != "..")
            WalkBare(folder + '/' + name, files, octets);
        struct stat state = {};
        if (found->d_type != DT_REG || ::fstatat(::dirfd(opened), found->d_name, &state, 0) != 0)
            continue;
        ++files;
        octets += state.st_size;
    }
    ::closedir(opened);
}

void MakeFiles(const QString& dir) {
    for (int folder = 0; folder < CountedFolders; ++folder) {
        const QString path = u"%1/%2/%3"_s.arg(dir).arg(folder / 30).arg(folder);
        QDir().mkpath(path);
        for (int file = 0; file < FilesAFolder; ++file) {
            const QByteArray name = u"%1/holiday picture %2.jpg"_s.arg(path).arg(file).toUtf8();
            const int made = ::open(name.constData(), O_CREAT | O_WRONLY, 0600);
            if (made < 0 || ::ftruncate(made, file) != 0)
                throw std::runtime_error("no file can be made");
            ::close(made);
        }
    }
}

void MeasureCount(BenchTable& table) {
    const QTemporaryDir dir;
    MakeFiles(dir.path());
    BackupDraft draft;
    draft.sources = {dir.path()};
    draft.exclusions = {dir.filePath(u"0"_s)};
    draft.filter.types = u".txt, .jpg, .png"_s;
    const auto times = MeasurePair(
        9,
        [&] {
            FiguresNote note;
            CountBackup(draft, note, {});
            if (note.Read().found.files != CountedFolders * FilesAFolder)
                throw std::runtime_error("not all was counted");
        },
        [&] {
            qint64 files = 0;
            qint64 octets = 0;
            WalkBare(dir.path().toStdString(), files, octets);
            if (files != CountedFolders * FilesAFolder)
                throw std::runtime_error("the walk missed something");
        });
    table.Add({.name = "Counting 100,000 local files by the rules",
               .unit = "ms",
               .ours = times.ours.Median(),
               .reference = times.reference.Median(),
               .maxRatio = 1.3});
}

const BenchRegistration Level("local level", MeasureLevel);
const BenchRegistration Count("backup count", MeasureCount);

} // namespace
