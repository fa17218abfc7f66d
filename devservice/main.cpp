#include "devservice/DevService.h"
#include "devservice/MailServer.h"
#include "devservice/WireText.h"
#include "platform/Folders.h"
#include "platform/ServiceControl.h"

#include <QByteArray>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <thread>

namespace {

using devservice::DevService;

constexpr char Usage[] = R"(Usage: brengroupsvc-dev [OPTION]...
A stand-in for the background service, for development and tests.

  --server            the server's service (port 9898 in place of 9678)
  --home DIR          the data folder; by default the one that the console uses
  --port N            the port, 0 for a free one; by default BREN_SERVICE_PORT or that of the mode
  --scenario NAME     fills an empty home: desktop (default), server, empty, huge
  --speed X           simulated seconds a second; 1 by default, 0 stands still
  --wal               write-ahead logs in place of rollback journals
  --start-delay MS    open the port that late
  --fault SWITCH      may be given often; also at run time: PUT /dev/fault?SWITCH
                      refuse[:MS] hang delay:MS drip:MS fin rst status:N deny:N garbage none, with @TARGET for
                      some requests only (status acts and answers N, deny answers N and does not act);
                      db-locked[:MS] db-truncated db-garbage db-missing db-schema
                      db-writer:MS db-none, with @scheduler, @processlog, @history, @audit, @fileindex or @TASK
  --login SWITCH      how logins go, may be given often; also at run time: PUT /dev/login?SWITCH
                      in after:SECONDS refused:TEXT no-plugin never, with @NAME for one virtual directory only
  --file-monitor SWITCH  of the service that indexes files; also at run time: PUT /dev/filemonitor?SWITCH
                      running (default) absent slow:MS failing
  --writers SWITCH    the list of applications that back up; also at run time: PUT /dev/writers?SWITCH
                      usual (default) malformed empty large
  --files DIR         the folder that it indexes; "files" in the data folder by default
  --no-drive          show no virtual directories; at run time: PUT /dev/drive? and PUT /dev/drive?Z
  --dav-prefix NAME   before the elements of folder listings, D by default; "" for none
  --entries N         so many folders in the folder "Many" of an empty home's first virtual directory
  --mail              a mail server as well, on a free port that is told first; mails are kept in the
                      home's folder "mail"
  --refuse-start      only leave the command that starts this service, and fail whenever it is used
  --until-stdin-closes  end when standard input ends
)";

constexpr char UntilStdinCloses[] = "--until-stdin-closes";

std::atomic<bool> ended = false; // set by signals

struct Arguments {
    devservice::Options options;
    std::vector<std::string> faults;
    std::vector<std::string> logins;
    std::optional<devservice::Writers> writers;
    bool noDrive = false;
    bool mail = false;
    bool untilStdinCloses = false;
    bool refuseStart = false;
    bool help = false;
};

class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

int Number(const std::string& text, int most) {
    const auto number = devservice::NumberOf(text);
    if (!number || *number > most)
        throw UsageError("\"" + text + "\" is not a number from 0 to " + std::to_string(most));
    return *number;
}

double Speed(const std::string& text) {
    char* end = nullptr;
    const double speed = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(speed >= 0 && speed <= 10'000))
        throw UsageError("\"" + text + "\" is not a speed from 0 to 10000");
    return speed;
}

int DefaultPort(bool serverMode) {
    const char* given = std::getenv("BREN_SERVICE_PORT");
    return given && *given ? Number(given, 65535) : serverMode ? 9898 : 9678;
}

Arguments Parse(const std::vector<std::string>& words) {
    Arguments result;
    result.options.scenario = "";
    result.options.ticking = 1;
    result.options.fileMonitor.kind = devservice::FileMonitorSwitch::Kind::Running;
    std::optional<int> port;
    for (auto word = words.begin(); word != words.end(); ++word) {
        const auto value = [&]() -> const std::string& {
            if (std::next(word) == words.end())
                throw UsageError(*word + " needs a value");
            return *++word;
        };
        if (*word == "--help")
            result.help = true;
        else if (*word == "--server")
            result.options.serverMode = true;
        else if (*word == "--home")
            result.options.home = platform::PathFromUtf8(value());
        else if (*word == "--port")
            port = Number(value(), 65535);
        else if (*word == "--scenario")
            result.options.scenario = value();
        else if (*word == "--speed")
            result.options.ticking = Speed(value());
        else if (*word == "--wal")
            result.options.journal = devservice::JournalMode::Wal;
        else if (*word == "--start-delay")
            result.options.startDelay = std::chrono::milliseconds(Number(value(), 3'600'000));
        else if (*word == "--fault")
            result.faults.push_back(value());
        else if (*word == "--login")
            result.logins.push_back(value());
        else if (*word == "--file-monitor") {
            const auto how = devservice::ParseFileMonitor(value());
            if (!how)
                throw UsageError("\"" + *word + "\" is no switch of the file monitor");
            result.options.fileMonitor = *how;
        } else if (*word == "--writers") {
            result.writers = devservice::ParseWriters(value());
            if (!result.writers)
                throw UsageError("\"" + *word + "\" is no switch of the writers");
        } else if (*word == "--files")
            result.options.files = platform::PathFromUtf8(value());
        else if (*word == "--no-drive")
            result.noDrive = true;
        else if (*word == "--dav-prefix")
            result.options.davPrefix = value();
        else if (*word == "--entries")
            result.options.entries = Number(value(), 1'000'000);
        else if (*word == "--mail")
            result.mail = true;
        else if (*word == "--refuse-start")
            result.refuseStart = true;
        else if (*word == UntilStdinCloses)
            result.untilStdinCloses = true;
        else
            throw UsageError("unknown option " + *word);
    }
    devservice::Options& options = result.options;
    const bool homeGiven = !options.home.empty();
    options.home =
        std::filesystem::absolute(homeGiven ? options.home : platform::DataFolder(options.serverMode));
    if (homeGiven) // locks and events are those of this folder then, and nobody else's
        qputenv("BREN_HOME", QByteArray::fromStdString(platform::Utf8FromPath(options.home)));
    if (options.scenario.empty())
        options.scenario = options.serverMode ? "server" : "desktop";
    options.port = static_cast<uint16_t>(port ? *port : DefaultPort(options.serverMode));
    return result;
}

void EndWithStdin() {
    std::thread([] {
        while (std::cin.get() != std::char_traits<char>::eof()) {
        }
        ended = true;
    }).detach(); // a read of standard input cannot be called off
}

/// Leaves beside the service's lock the command by which a console starts it again.
void LeaveStartCommand(const Arguments& arguments, std::vector<std::string> command, uint16_t port) {
    // Whoever starts it again gives it no input.
    command.erase(std::remove(command.begin(), command.end(), UntilStdinCloses), command.end());
    command.insert(command.begin(), platform::Utf8FromPath(platform::ExecutableFile()));
    const std::filesystem::path& home = arguments.options.home;
    command.insert(command.end(), {"--home", platform::Utf8FromPath(home), "--port", std::to_string(port)});
    std::filesystem::create_directories(home);
    if (!platform::WriteStartCommand(home, "brengroupsvc", command))
        throw std::runtime_error("the start command cannot be written");
}

void Run(const Arguments& arguments, const std::vector<std::string>& words) {
    if (arguments.refuseStart) {
        LeaveStartCommand(arguments, words, arguments.options.port);
        throw std::runtime_error("the service refuses to start, as it was told to");
    }
    DevService service(arguments.options);
    service.Start();
    LeaveStartCommand(arguments, words, service.Port());
    for (const std::string& fault : arguments.faults)
        if (!service.SetFault(fault))
            throw UsageError("unknown fault " + fault);
    for (const std::string& login : arguments.logins)
        if (!service.SetLogin(login))
            throw UsageError("unknown outcome of logins " + login);
    if (arguments.writers)
        service.SetWriters(*arguments.writers);
    if (arguments.noDrive)
        service.SetDriveLetter(0);
    std::optional<devservice::MailServer> mail;
    if (arguments.mail)
        std::cout << "mail on port " << mail.emplace(service.Home() / "mail").Port() << '\n';
    std::cout << "ready on port " << service.Port() << ", home " << platform::Utf8FromPath(service.Home())
              << std::endl; // NOLINT(performance-avoid-endl): whoever started us waits for this line
    while (!ended)
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // a signal's handler can wake nobody
}

} // namespace

int main(int argc, char** argv) {
    for (const int signal : {SIGINT, SIGTERM})
        std::signal(signal, [](int) { ended = true; });
    try {
        const std::vector<std::string> words(argv + 1, argv + argc);
        const Arguments arguments = Parse(words);
        if (arguments.help) {
            std::cout << Usage;
            return 0;
        }
        if (arguments.untilStdinCloses)
            EndWithStdin();
        Run(arguments, words);
        return 0;
    } catch (const UsageError& error) {
        std::cerr << "brengroupsvc-dev: " << error.what() << " (see --help)\n";
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "brengroupsvc-dev: " << error.what() << '\n';
        return 1;
    }
}
