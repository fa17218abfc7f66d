#include "devservice/DevService.h"

#include "devservice/CloudScenarios.h"
#include "devservice/DatabaseFaults.h"
#include "devservice/LiveTraceWriter.h"
#include "devservice/LiveView.h"
#include "devservice/Scenarios.h"
#include "devservice/ServiceLocks.h"
#include "devservice/ServiceRequests.h"
#include "devservice/WireText.h"
#include "platform/Sleep.h"

#include <deque>
#include <mutex>
#include <thread>

namespace devservice {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

constexpr size_t MostRequests = 10'000;
constexpr milliseconds Tick = 250ms;
constexpr int HugeEntries = 10'000;

struct NamedDatabase {
    const char* name;
    Database database;
};

constexpr NamedDatabase DatabaseNames[] = {
    {"", Database::Scheduler},      {"scheduler", Database::Scheduler}, {"processlog", Database::ProcessLog},
    {"history", Database::History}, {"audit", Database::AuditTrace},    {"fileindex", Database::FileIndex},
};

fs::path FilesOf(const Options& options) {
    return options.files.empty() ? options.home / "files" : options.files;
}

} // namespace

struct DevService::State {
    explicit State(Options given)
        : options(std::move(given)), databases(options.home, options.journal),
          fileMonitor(options.home, FilesOf(options), databases.FileOf(Database::FileIndex)),
          settings(options.home / "settings" / "settings.txt"), engine(options.seed),
          databaseFaults(databases), profile(options.home / "settings" / "profile.txt", settings),
          tree(options.home / "drive", options.home / "storage", options.davPrefix),
          snapshots(tree, options.home), syncFolders(engine, settings, tree),
          requests(engine, settings, profile, tree, snapshots, syncFolders) {
        engine.SetEffect([this](const Task& task, const SubTask& subTask) {
            return snapshots.CarryOut(task, subTask, engine.Now());
        });
    }

    const Options options;

    std::mutex lifecycle; ///< held by Start and Stop; before `mutex`
    std::atomic<bool> running = false;
    std::unique_ptr<HttpServer> server; ///< from the first Start on, so that the port stays the same
    std::jthread ticker;
    ServiceLocks locks;
    mutable std::mutex mutex; ///< guards what follows
    Databases databases;
    FileMonitor fileMonitor; ///< has a lock of its own
    Settings settings;
    TaskEngine engine;
    DatabaseFaults databaseFaults;
    Profile profile;
    DavTree tree;
    SnapshotSets snapshots;
    SyncFolders syncFolders;
    ServiceRequests requests;
    char16_t driveLetter = u'Z';
    std::unique_ptr<LiveTraceWriter> live;
    std::deque<ReceivedRequest> received;
    std::map<std::string, Answer> answers; ///< by the beginning of a target

    SimTime FirstMoment() const;
    void OpenHome();
    void Publish();
    void Advance(milliseconds time);
    void RunClock(std::stop_token stop);
    Answer Handle(const ReceivedRequest& request, bool acts);
    Answer Steer(const std::string& command);
    bool SetFileMonitor(const std::string& text);
    void SetFault(const HttpFaultSwitch& fault);
    bool SetFault(const std::string& text);
    bool SetLogin(const std::string& text);

    /// Does a change under the lock and brings its result to files and counters.
    template <typename Change>
    auto Do(Change change) {
        const std::scoped_lock lock(mutex);
        struct AfterChange {
            State& state;
            ~AfterChange() { state.Publish(); }
        } afterwards{*this};
        return change();
    }
};

SimTime DevService::State::FirstMoment() const {
    const SimTime aDay = MakeTime(2025, 3, 4, 9, 0, 0);
    return options.now.value_or(options.ticking > 0 ? LocalNow() : aDay);
}

void DevService::State::OpenHome() {
    const std::scoped_lock lock(mutex);
    databaseFaults.PutBackKept();
    const bool fresh = !fs::exists(databases.FileOf(Database::Scheduler));
    databases.Create();
    settings.Load();
    const bool goesOn = engine.Now() > SimTime();
    engine.Restore(databases.Load(), goesOn && options.ticking == 0 ? engine.Now() : FirstMoment());
    if (fresh)
        Populate(options.scenario, engine, databases, settings, FilesOf(options));
    fs::create_directories(options.home / "drive");
    if (!profile.Load(engine.Now())) {
        PopulateCloud(options.scenario, options.scenario == "huge" ? HugeEntries : options.entries, profile,
                      tree, settings);
        if (options.scenario == "desktop" || options.scenario == "server")
            PopulateSnapshots(engine.Tasks(), snapshots, tree, engine.Now());
        if (fresh && options.scenario == "desktop")
            syncFolders.Populate(options.home / "sync");
    }
    if (!settings.Get("ConsoleRecords")) // the forms that consoles have of their own are understood
        settings.Set("ConsoleRecords", "1", "1");
    live = std::make_unique<LiveTraceWriter>(options.home / "trace" / "livetrace.map");
    running = true;
    Publish();
}

void DevService::State::Publish() {
    if (!running)
        return;
    databaseFaults.ReleaseExpired();
    databases.Write(engine.Tasks(), engine.Unwritten());
    live->Publish(LiveView(engine, driveLetter));
}

void DevService::State::Advance(milliseconds time) {
    const SimTime since = engine.Now();
    engine.Advance(time);
    syncFolders.Advance(since);
}

void DevService::State::RunClock(std::stop_token stop) {
    while (platform::SleepUnlessStopped(stop, Tick))
        Do([&] {
            if (options.ticking > 0)
                Advance(milliseconds(static_cast<int64_t>(Tick.count() * options.ticking)));
        });
}

Answer DevService::State::Handle(const ReceivedRequest& request, bool acts) {
    if (request.target.rfind(ControlPrefix, 0) == 0)
        return Steer(request.target.substr(sizeof ControlPrefix - 1));
    return Do([&]() -> Answer {
        received.push_back(request);
        if (received.size() > MostRequests)
            received.pop_front();
        if (!acts)
            return {};
        for (const auto& [target, answer] : answers)
            if (request.target.rfind(target, 0) == 0)
                return answer;
        return requests.Handle(request);
    });
}

/// "fault?SWITCH", "login?SWITCH", "filemonitor?SWITCH", "writers?SWITCH", "drive?LETTER" and
/// "advance?MILLISECONDS".
Answer DevService::State::Steer(const std::string& command) {
    const size_t mark = command.find('?');
    const std::string argument =
        mark == std::string::npos ? std::string() : PercentDecode(command.substr(mark + 1));
    try {
        if (command.substr(0, mark) == "fault" && SetFault(argument))
            return {};
        if (command.substr(0, mark) == "login" && SetLogin(argument))
            return {};
        if (command.substr(0, mark) == "filemonitor" && SetFileMonitor(argument))
            return {};
        if (command.substr(0, mark) == "writers")
            if (const auto writers = ParseWriters(argument)) {
                Do([&] { requests.SetWriters(*writers); });
                return {};
            }
        if (command.substr(0, mark) == "drive" && argument.size() < 2) {
            Do([&] { driveLetter = argument.empty() ? u'\0' : static_cast<unsigned char>(argument[0]); });
            return {};
        }
        if (command.substr(0, mark) == "advance") {
            Do([&] { Advance(milliseconds(std::stoll(argument))); });
            return {};
        }
    } catch (const std::exception& error) {
        return {400, std::string(error.what()) + '\n'};
    }
    return {400, "Use /dev/fault?SWITCH, /dev/login?SWITCH, /dev/filemonitor?SWITCH, /dev/writers?SWITCH, "
                 "/dev/drive?LETTER or /dev/advance?MILLISECONDS.\n"};
}

void DevService::State::SetFault(const HttpFaultSwitch& fault) {
    if (!server)
        throw std::logic_error("a service that was never started has no port");
    server->SetFault(fault);
}

bool DevService::State::SetFault(const std::string& text) {
    if (const auto fault = ParseHttpFault(text)) {
        SetFault(*fault);
        return true;
    }
    const auto fault = ParseDatabaseFault(text);
    if (!fault)
        return false;
    if (fault->fault == DatabaseFault::None && fault->database.empty()) {
        Do([&] { databaseFaults.ClearAll(); });
        return true;
    }
    fs::path file = databases.SubTaskFile(fault->database);
    for (const NamedDatabase& named : DatabaseNames)
        if (named.name == fault->database)
            file = databases.FileOf(named.database);
    Do([&] { databaseFaults.Set({fault->fault, file, fault->time}); });
    return true;
}

bool DevService::State::SetLogin(const std::string& text) {
    const auto how = ParseLogin(text);
    if (how)
        Do([&] { profile.SetLogin(*how, engine.Now()); });
    return how.has_value();
}

bool DevService::State::SetFileMonitor(const std::string& text) {
    const auto how = ParseFileMonitor(text);
    if (how)
        fileMonitor.Set(*how);
    return how.has_value();
}

DevService::DevService(Options options) : m_state(std::make_unique<State>(std::move(options))) {}

DevService::~DevService() {
    Stop();
}

void DevService::Start() {
    State& state = *m_state;
    const std::scoped_lock lifecycle(state.lifecycle);
    if (state.running)
        return;
    if (!IsScenario(state.options.scenario))
        throw std::runtime_error("there is no scenario \"" + state.options.scenario + '"');
    if (!state.server)
        state.server = std::make_unique<HttpServer>(
            state.options.port,
            [&state](const ReceivedRequest& request, bool acts) { return state.Handle(request, acts); });
    if (state.options.holdLocks)
        state.locks.Take(state.options.home, state.options.serverMode);
    try {
        state.OpenHome();
        std::this_thread::sleep_for(state.options.startDelay);
        state.server->Open();
    } catch (...) {
        state.running = false;
        state.locks.Release();
        throw;
    }
    state.locks.SayRunning();
    SetFileMonitor(state.options.fileMonitor);
    state.ticker = std::jthread([&state](std::stop_token stop) { state.RunClock(stop); });
}

void DevService::Stop() {
    State& state = *m_state;
    const std::scoped_lock lifecycle(state.lifecycle);
    if (!state.running)
        return;
    state.ticker = {};
    state.server->Close();
    SetFileMonitor({});
    {
        const std::scoped_lock lock(state.mutex);
        state.databaseFaults.ClearAll();
        state.Publish();
        state.running = false;
        state.live.reset();
        state.databases.Close();
    }
    state.locks.Release();
}

bool DevService::IsRunning() const {
    return m_state->running;
}

uint16_t DevService::Port() const {
    return m_state->server ? m_state->server->Port() : m_state->options.port;
}

const fs::path& DevService::Home() const {
    return m_state->options.home;
}

fs::path DevService::DatabaseFile(Database database) const {
    return m_state->databases.FileOf(database);
}

fs::path DevService::SubTaskFile(const std::string& taskId) const {
    return m_state->databases.SubTaskFile(taskId);
}

void DevService::Advance(milliseconds time) {
    m_state->Do([&] { m_state->Advance(time); });
}

SimTime DevService::Now() const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->engine.Now();
}

void DevService::SetFault(const HttpFaultSwitch& fault) {
    m_state->SetFault(fault);
}

void DevService::SetFault(const DatabaseFaultSwitch& fault) {
    m_state->Do([&] { m_state->databaseFaults.Set(fault); });
}

void DevService::SetFault(HttpFault fault, milliseconds time, const std::string& target) {
    HttpFaultSwitch given;
    given.fault = fault;
    given.time = time;
    given.target = target;
    SetFault(given);
}

void DevService::SetFault(DatabaseFault fault, Database database, milliseconds time) {
    SetFault(DatabaseFaultSwitch{fault, DatabaseFile(database), time});
}

bool DevService::SetFault(const std::string& text) {
    return m_state->SetFault(text);
}

void DevService::ClearFaults() {
    m_state->SetFault(HttpFaultSwitch());
    m_state->Do([&] { m_state->databaseFaults.ClearAll(); });
}

WriterStatistics DevService::FastWriterStatistics() const {
    return m_state->databaseFaults.Statistics();
}

std::vector<ReceivedRequest> DevService::Requests() const {
    const std::scoped_lock lock(m_state->mutex);
    return {m_state->received.begin(), m_state->received.end()};
}

void DevService::ForgetRequests() {
    const std::scoped_lock lock(m_state->mutex);
    m_state->received.clear();
}

void DevService::SetAnswer(const std::string& target, std::optional<Answer> answer) {
    const std::scoped_lock lock(m_state->mutex);
    m_state->answers.erase(target);
    if (answer)
        m_state->answers.emplace(target, std::move(*answer));
}

std::optional<std::string> DevService::Setting(const std::string& name) const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->settings.Get(name);
}

void DevService::SetSetting(const std::string& name, const std::string& value) {
    const std::scoped_lock lock(m_state->mutex);
    m_state->settings.Set(name, "2", value);
}

std::vector<Task> DevService::Tasks() const {
    const std::scoped_lock lock(m_state->mutex);
    std::vector<Task> tasks;
    for (const auto& [id, task] : m_state->engine.Tasks()) {
        Task copy = task;
        copy.subTasks.clear();
        tasks.push_back(std::move(copy));
    }
    return tasks;
}

std::optional<Task> DevService::FindTask(const std::string& id) const {
    const std::scoped_lock lock(m_state->mutex);
    const auto found = m_state->engine.Tasks().find(id);
    return found == m_state->engine.Tasks().end() ? std::nullopt : std::optional(found->second);
}

void DevService::PutTasks(std::vector<Task> tasks) {
    m_state->Do([&] {
        for (Task& task : tasks)
            m_state->engine.Put(std::move(task));
    });
}

void DevService::PutTask(Task task) {
    m_state->Do([&] { m_state->engine.Put(std::move(task)); });
}

bool DevService::RemoveTask(const std::string& id) {
    return m_state->Do([&] { return m_state->engine.Delete(id); });
}

bool DevService::SetTaskState(const std::string& id, TaskState state) {
    return m_state->Do([&] { return m_state->engine.SetState(id, state); });
}

bool DevService::PutSubTasks(const std::string& id, std::vector<SubTask> subTasks) {
    return m_state->Do([&] { return m_state->engine.PutSubTasks(id, std::move(subTasks)); });
}

bool DevService::SetSubTaskState(const std::string& id, int number, SubTaskState state) {
    return m_state->Do([&] { return m_state->engine.SetSubTaskState(id, number, state); });
}

void DevService::AddAuditRows(const std::vector<AuditRow>& rows) {
    m_state->Do([&] {
        std::vector<AuditRow>& audit = m_state->engine.Unwritten().audit;
        audit.insert(audit.end(), rows.begin(), rows.end());
    });
}

std::vector<VirtualDirectory> DevService::VirtualDirectories() const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->profile.Directories();
}

void DevService::SetVirtualDirectories(std::vector<VirtualDirectory> directories) {
    m_state->Do([&] {
        for (const VirtualDirectory& before : m_state->profile.Directories())
            m_state->tree.Dismount(before.name);
        for (const VirtualDirectory& directory : directories)
            m_state->tree.Mount(directory.name);
        m_state->profile.SetDirectories(std::move(directories));
    });
}

void DevService::SetLogin(const LoginSwitch& how) {
    m_state->Do([&] { m_state->profile.SetLogin(how, m_state->engine.Now()); });
}

bool DevService::SetLogin(const std::string& text) {
    return m_state->SetLogin(text);
}

void DevService::SetWriters(Writers writers) {
    m_state->Do([&] { m_state->requests.SetWriters(writers); });
}

void DevService::SetFileMonitor(const FileMonitorSwitch& how) {
    m_state->fileMonitor.Set(how);
}

void DevService::SetDriveLetter(char16_t letter) {
    m_state->Do([&] { m_state->driveLetter = letter; });
}

void DevService::Execute(const fs::path& file, const std::string& sql) {
    try {
        Connection(file, 5000).Execute(sql);
    } catch (const SqliteError& error) {
        throw std::runtime_error(error.what());
    }
}

} // namespace devservice
