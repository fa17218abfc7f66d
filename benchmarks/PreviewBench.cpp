#include "backup/IndexedFiles.h"
#include "backup/PreviewPage.h"
#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "development/WatchedReader.h"
#include "lanes/ThreadReader.h"
#include "list/BrenListCtrl.h"
#include "list/RecordView.h"
#include "plan/FileTypes.h"
#include "wizard/BrenPropertySheet.h"

#include <QApplication>
#include <QElapsedTimer>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Files = 1'000'000;
constexpr int Rounds = 5;
constexpr char Statement[] = "SELECT * FROM FileDB WHERE Ext=? ORDER BY FullPath ASC";

QStringList Types() {
    return FileTypesOf(FileCategory::Videos); // fourteen of them
}

/// A machine with an index of so many files, of each type alike.
struct IndexHome {
    IndexHome() : parts("empty") {
        devservice::DevService& service = parts.home.Service();
        const auto file = service.DatabaseFile(devservice::Database::FileIndex);
        std::string cases;
        for (int i = 0; i < Types().size(); ++i)
            cases += " WHEN " + std::to_string(i) + " THEN '" + Types().at(i).mid(1).toStdString() + '\'';
        const std::string type = "CASE i % " + std::to_string(Types().size()) + cases + " END";
        service.Execute(
            file, "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                      std::to_string(Files) +
                      ") INSERT INTO FileDB SELECT 'C:\\Users\\mara\\Films\\year ' || (i * 7919 % 1000) || "
                      "'\\take ' || i || '.' || " +
                      type + ", " + type + ", i, NULL FROM n");
        index = file.string();
    }

    ConsoleParts parts;
    std::string index;
};

/// The plainest loop over the same statements that keeps the paths.
void WalkBare(const std::string& file, std::vector<QString>& paths) {
    sqlite3* connection = nullptr;
    sqlite3_stmt* rows = nullptr;
    if (sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(connection, Statement, -1, &rows, nullptr) != SQLITE_OK)
        throw std::runtime_error("the bare loop cannot read the index");
    for (const QString& type : Types())
        for (const QString& form : IndexedForms(type)) {
            const QByteArray utf8 = form.toUtf8();
            sqlite3_reset(rows);
            sqlite3_bind_text(rows, 1, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
            while (sqlite3_step(rows) == SQLITE_ROW)
                paths.push_back(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(rows, 0)),
                                                  sqlite3_column_bytes(rows, 0)));
        }
    sqlite3_finalize(rows);
    sqlite3_close(connection);
    if (paths.size() != Files)
        throw std::runtime_error("the bare loop lost files");
}

/// A wizard that begins with the preview.
struct PreviewWizard {
    explicit PreviewWizard(IndexHome& home)
        : reader(threads), console(home.parts.On(reader)), sheet(reader, home.parts.prompts, u"Backup"_s) {
        const auto draft = std::make_shared<BackupDraft>();
        draft->filter = FilterOfTypes(JoinFileTypes(Types()));
        sheet.AddPage(new CPreviewPage(console, draft));
        files = sheet.findChild<RecordView*>();
    }

    int Rows() const { return files->List().Rows().rowCount(); }

    ThreadReader threads;
    WatchedReader reader;
    Console console;
    CBrenPropertySheet sheet;
    RecordView* files;
};

template <typename Condition>
double Until(const QElapsedTimer& since, Condition holds) {
    while (!holds()) {
        if (since.hasExpired(60'000))
            throw std::runtime_error("the files were never found");
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return double(since.nsecsElapsed()) / 1e6;
}

void MeasurePreview(BenchTable& table) {
    IndexHome home;
    Samples first;
    Samples all;
    Samples bare;
    Samples cancel;
    for (int round = 0; round < Rounds; ++round) {
        bare.Add(MillisecondsOf([&home] {
            std::vector<QString> paths;
            WalkBare(home.index, paths);
        }));
        PreviewWizard wizard(home);
        QElapsedTimer clock;
        clock.start();
        wizard.sheet.open();
        Until(clock, [&wizard] { return wizard.Rows() > 0; });
        wizard.sheet.grab();
        first.Add(double(clock.nsecsElapsed()) / 1e6);
        all.Add(Until(clock, [&wizard] { return wizard.Rows() == Files && !wizard.files->IsReading(); }));
        Until(clock, [&wizard] { return wizard.reader.IsIdle(); });
        wizard.files->Read();
        clock.restart();
        Until(clock, [&clock] { return clock.hasExpired(200); });
        clock.restart();
        wizard.files->CancelRead();
        cancel.Add(Until(clock, [&wizard] { return wizard.reader.IsIdle(); }));
    }
    table.Add({.name = "1,000,000 indexed files of 14 types, first screen",
               .unit = "ms",
               .ours = first.Median(),
               .maxOurs = 100.0});
    table.Add(
        {.name =
             "1,000,000 indexed files of 14 types, all and their count, beside a loop that copies the paths",
         .unit = "ms",
         .ours = all.Median(),
         .reference = bare.Median(),
         .maxRatio = 1.3});
    table.Add({.name = "1,000,000 indexed files of 14 types, end of a count that was given up",
               .unit = "ms",
               .ours = cancel.Percentile(100),
               .maxOurs = 50.0});
}

const BenchRegistration Preview("preview", MeasurePreview);

} // namespace
