// Labels: threads
#include "../ReadingWays.h"
#include "devservice/Sqlite.h"
#include "support/TestMain.h"
#include "zep/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <future>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

/// A user whom modes bind: nobody, while it lives, where the tests run as the one whom they do not.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (m_user == 0)
            m_changed = ::seteuid(65534) == 0;
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() { static_cast<void>(::seteuid(m_user)); }

    explicit operator bool() const { return m_changed; }

private:
    const uid_t m_user = ::geteuid();
    bool m_changed = m_user != 0;
};

/// Whoever it belongs to, all of the home can be read, and all of it is put back.
void OpenToAll(const QString& home) {
    fs::permissions(home.toStdString(), fs::perms(0777));
    for (const auto& entry : fs::recursive_directory_iterator(home.toStdString()))
        fs::permissions(entry.path(), fs::perms(entry.is_directory() ? 0777 : 0666));
}

/// Leaves the file as a writer does that ends without closing it.
void LeaveLogOf(const fs::path& file) {
    const fs::path folder = file.parent_path() / "left";
    fs::create_directory(folder);
    {
        devservice::Connection writer(file);
        writer.Execute("UPDATE Scheduler SET TaskName='new'");
        for (const char* suffix : {"-wal", "-shm"})
            fs::copy_file(file.string() + suffix, folder / suffix);
    }
    for (const char* suffix : {"-wal", "-shm"})
        fs::copy_file(folder / suffix, file.string() + suffix);
}

} // namespace

/// What a reader meets on a system of users and modes.
class RightsTest : public QObject {
    Q_OBJECT

private slots:
    void theMissingRightIsNamed_data() {
        // modes: of the folder and, when it is given, of the file with this ending; %1: the file, %2: its
        // folder
        const Columns<bool, bool, int, QString, int, QString> row("wal", "deletes", "folder", "suffix",
                                                                  "file", "right");
        row("all", false, false, 0777, "", 0666, "");
        row("file not readable", false, false, 0777, "", 0222, "read %1");
        row("folder closed", false, false, 0666, "", 0666, "read %1");
        row("folder not writable", false, false, 0555, "", 0444, "");
        row("delete", false, true, 0777, "", 0666, "");
        row("delete, file not writable", false, true, 0777, "", 0444, "write %1");
        row("delete, file not readable", false, true, 0777, "", 0222, "read %1");
        row("delete, folder not writable", false, true, 0555, "", 0666, "create files in %2");
        row("log, folder not writable", true, false, 0555, "", 0666, "create files in %2");
        row("log's memory not readable", true, false, 0777, "-shm", 0222, "read %1-shm");
        row("log not readable", true, false, 0777, "-wal", 0222, "read %1-wal");
    }

    void theMissingRightIsNamed() {
        auto [wal, deletes, folder, suffix, mode, right] = Fetched<bool, bool, int, QString, int, QString>();
        devservice::Options options;
        options.journal = wal ? devservice::JournalMode::Wal : devservice::JournalMode::Rollback;
        ServiceFixture service(options);
        Fill(service);
        service->Execute(service->DatabaseFile(File::AuditTrace), "UPDATE AuditTrace SET Trace='$${KEY}$ x'");
        service->Stop();
        const fs::path file = service->DatabaseFile(deletes ? File::AuditTrace : File::Scheduler);
        if (!suffix.isEmpty())
            LeaveLogOf(file);
        const auto read = [deletes = deletes] {
            return deletes ? DeleteTaskTraces(u"{KEY}"_s) : TaskNames::Read().read;
        };
        OpenToAll(service.Home());
        fs::permissions(file.string() + suffix.toStdString(), fs::perms(mode));
        fs::permissions(file.parent_path(), fs::perms(folder));
        {
            const OrdinaryUser user;
            QVERIFY(user);
            for (int attempt = 0; attempt < 2; ++attempt) {
                const ReadResult result = read();
                QCOMPARE(result.outcome, right.isEmpty() ? ReadOutcome::Done : ReadOutcome::NoRight);
                QCOMPARE(
                    result.detail,
                    right.replace(u"%1"_s, FromPath(file)).replace(u"%2"_s, FromPath(file.parent_path())));
            }
            if (!deletes)
                QCOMPARE(ProbeSchedulerDatabase().outcome,
                         right.isEmpty() ? ReadOutcome::Done : ReadOutcome::NoRight);
        }
        OpenToAll(service.Home());
        if (!deletes) // the log stands beside the audit trace
            QCOMPARE(Traces(service.Home(), "ERROR").size(), right.isEmpty() ? 0 : 1);
        const OrdinaryUser user;
        QVERIFY(read());
    }

    void nothingWaitsForAPipe_data() {
        const Columns<QString> row("suffix");
        for (const char* suffix : {"", "-journal", "-wal", "-shm"})
            row(*suffix ? suffix : "database", suffix);
    }

    void nothingWaitsForAPipe() {
        QFETCH(const QString, suffix);
        ServiceFixture service;
        Fill(service);
        service->Stop();
        const fs::path pipe = service->DatabaseFile(File::Scheduler).string() + suffix.toStdString();
        fs::remove(pipe);
        QCOMPARE(::mkfifo(pipe.c_str(), 0666), 0);
        auto read = std::async(std::launch::async, [] { return TaskNames::Read().read; });
        const bool ended = read.wait_for(10s) == std::future_status::ready;
        ::close(::open(pipe.c_str(), O_RDWR | O_NONBLOCK)); // frees one that waits
        QVERIFY(ended);
        const ReadResult result = read.get();
        QCOMPARE(result.outcome, ReadOutcome::Damaged);
        QCOMPARE(result.detail, FromPath(pipe));
    }

    void aFolderOfAnyOctetsIsRead() {
        ServiceFixture service;
        Fill(service);
        service->Stop();
        const fs::path home = service.Home().toStdString();
        const fs::path odd = home / "caf\xE9 \xFF";
        fs::create_directory(odd);
        for (const char* name : {"scheduler", "logging", "syncfolder", "common"})
            fs::copy(home / name, odd / name, fs::copy_options::recursive);
        qputenv("BREN_HOME", odd.c_str());
        for (const ReadingWay& way : Ways) {
            const Reading good = way.readWith({}, Impatient);
            QVERIFY2(good.read, qPrintable(u"%1: "_s.arg(QLatin1String(way.name)) + good.read.Sentence()));
            QVERIFY(!good.rows.isEmpty());
        }
        fs::remove_all(odd / "scheduler");
        const ReadResult missing = TaskNames::Read().read;
        QCOMPARE(missing.outcome, ReadOutcome::Missing);
        QVERIFY(missing.Sentence().contains(u"v10_schduler.db"));
    }
};

BTASK_TEST(RightsTest);
#include "RightsTest.moc"
