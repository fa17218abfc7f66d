#include "app/StartUp.h"
#include "platform/Environment.h"
#include "support/TestMain.h"
#include "zep/Mui.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char HomeList[] =
    "<Response><VDirs><VDir Name=\"Home\"/><VDir Name=\"hOME\" SafeCardId=\"c2\" Status=\"3\" SPId=\"s2\"/>"
    "<VDir Name=\"Home\" SafeCardId=\"c3\"/></VDirs></Response>";

/// What the world answers in one case.
struct World {
    const char* serverModeValue = "";
    bool mayElevate = true;
    bool elevatedStarts = true;
    std::optional<bool> serviceRuns = true;
    std::optional<bool> schedulerOpens = true;
    bool shellRuns = true;
    bool yes = true;
    ConnectResult connect = ConnectResult::Answered;
    QList<std::optional<bool>> configured = {true};
    std::optional<QByteArray> vdirs = HomeList;
    ServiceOutcome without = ServiceOutcome::Unreachable; ///< what comes in place of no list
    const char* mistake = "";
};

/// Answers as told and writes down what was done, in order.
class ScriptedOperations : public StartUpOperations {
public:
    explicit ScriptedOperations(const World& world) : m_world(world) {}

    QStringList done;

    void SetServerMode(bool serverMode) override { done << (serverMode ? u"server"_s : u"desktop"_s); }
    void SetTitle(const QString& title) override { boxTitle = title; }
    QString ReadServerModeValue() override { return QString::fromLatin1(m_world.serverModeValue); }
    QString EnvironmentMistake() override { return QString::fromLatin1(m_world.mistake); }
    bool MayElevate() override { return m_world.mayElevate; }
    bool StartElevated(const QStringList& arguments) override {
        done << u"elevated "_s + arguments.join(u'|');
        return m_world.elevatedStarts;
    }
    std::optional<bool> IsServiceRunning() override { return m_world.serviceRuns; }
    std::optional<bool> ProbeSchedulerDbAccess() override { return m_world.schedulerOpens; }
    bool IsShellRunning() override { return m_world.shellRuns; }
    QString ShellPlace() override { return u"there"_s; }
    ConnectResult Connect(bool mayStartService) override {
        done << (mayStartService ? u"connect, may start"_s : u"connect"_s);
        return m_world.connect;
    }
    std::optional<bool> IsServerConfigured() override {
        return m_world.configured.size() > 1 ? m_world.configured.takeFirst() : m_world.configured.first();
    }
    void RunConfigurationWizard() override { done << u"wizard"_s; }
    ServiceAnswer RequestVdirList() override {
        return {
            m_world.vdirs ? ServiceOutcome::Answered : m_world.without, 200, m_world.vdirs.value_or(""), {}};
    }
    void EditVirtualDirectory(const VDirRecord& record) override {
        done << u"edit "_s + record.name + u' ' + record.safeCardId + u' ' + record.spId;
    }
    void ShowCloudServicePage() override { done << u"cloud"_s; }
    void ShowMainWindow(const QString& title, int initialView) override {
        done << u"window '%1' at %2"_s.arg(title).arg(initialView);
    }
    void ShowMessage(MessageKind kind, const QString& text, const QString& details) override {
        done << (kind == MessageKind::Error ? u"fails: "_s : u"says: "_s) + text + details;
    }
    bool AskToContinue(const QString& question) override {
        done << u"asks "_s + question;
        return m_world.yes;
    }
    void Trace(const QString& line) override { done << u"traces "_s + line; }

    QString boxTitle;

private:
    World m_world;
};

const QString NotPermitted = u"fails: You don't have the required permission to run this program."_s;
const QString NotElevated =
    u"fails: Application can not be started. Launch the console as Administrator may solve the problem."_s;
const QString NotStarted = u"fails: Service can not be started. Launching the console as an "
                           "Administrator may solve the problem, or you can "
                           "start the service directly from Service Control Manager."_s;
const QString NoShell =
    u"fails: Brenvia Orbitdesk is not running, please start Brenvia Orbitdesk then try this againthere"_s;
const QString NoShellTrace = u"traces [ShellFolder]GUIShell is not up, exit....\n"_s;
const QString DeniedQuestion =
    u"asks You don't have the permission to access Task scheduler DB, you may not be able to view the task "
    "information, do you want to continue?"_s;

} // namespace

class StartUpTest : public QObject {
    Q_OBJECT

private slots:
    void everyPath_data() {
        const Columns<QString, World, QStringList> row("line", "world", "done");

        const QString desktopTitle = ZEPMuiGetBrandingStringW(Branding::DesktopConsole);
        const auto window = [](const QString& title, int view = 0) {
            return u"window '%1' at %2"_s.arg(title).arg(view);
        };
        const QString desktopWindow = window(desktopTitle);
        const QString serverWindow = window(u"Brenvia Mesafile Console"_s);
        const QString mayStart = u"connect, may start"_s;

        row("desktop", "", {}, {u"desktop"_s, desktopWindow});
        row("desktop, on a section", "/view:3", {}, {u"desktop"_s, window(desktopTitle, 3)});
        row("desktop without its shell", "", {.shellRuns = false}, {u"desktop"_s, NoShellTrace, NoShell});
        row("server hands over before anything else", "/server", {.connect = ConnectResult::TimedOut},
            {u"server"_s, u"elevated /server|/runas"_s});
        row("server whose elevation is declined", "/server /view:2", {.elevatedStarts = false},
            {u"server"_s, u"elevated /server|/view:2|/runas"_s, NotElevated});
        row("server, elevated", "/server /runas", {}, {u"server"_s, mayStart, serverWindow});
        row("a switch counts wherever it stands", "x/server-y/runas", {},
            {u"server"_s, mayStart, serverWindow});
        row("a switch in another case is none", "/SERVER", {}, {u"desktop"_s, desktopWindow});
        row("backup server", "/server /runas", {.serverModeValue = "qbs"},
            {u"server"_s, mayStart, window(ZEPMuiGetBrandingStringW(Branding::BackupServerConsole))});
        row("another server mode", "/server /runas", {.serverModeValue = "QBS2"},
            {u"server"_s, mayStart, serverWindow});
        row("a system without elevation", "/server", {.mayElevate = false},
            {u"server"_s, u"connect"_s, serverWindow});
        row("busy service", "/server /runas", {.connect = ConnectResult::TimedOut}, {u"server"_s, mayStart});
        row("stopped service, elevated", "/server /runas",
            {.serviceRuns = false, .connect = ConnectResult::TimedOut}, {u"server"_s, mayStart});
        row("stopped service, given up", "/server",
            {.mayElevate = false, .serviceRuns = {}, .connect = ConnectResult::TimedOut},
            {u"server"_s, u"connect"_s});
        row("database, given up", "/server /runas", {.schedulerOpens = {}}, {u"server"_s, mayStart});
        row("configuration, given up", "/server /runas", {.configured = {std::nullopt}},
            {u"server"_s, mayStart});
        row("stopped service, no elevation", "/server",
            {.mayElevate = false, .serviceRuns = false, .connect = ConnectResult::TimedOut},
            {u"server"_s, u"connect"_s, NotPermitted});
        row("service that does not start", "/server /runas", {.connect = ConnectResult::StartRefused},
            {u"server"_s, mayStart, NotStarted});
        row("connect dialog closed", "/server /runas", {.connect = ConnectResult::ClosedByUser},
            {u"server"_s, mayStart});
        row("denied database, Yes", "/server /runas", {.schedulerOpens = false},
            {u"server"_s, mayStart, DeniedQuestion, serverWindow});
        row("denied database, No", "/server /runas", {.schedulerOpens = false, .yes = false},
            {u"server"_s, mayStart, DeniedQuestion});
        row("denied database, not elevated", "/server", {.mayElevate = false, .schedulerOpens = false},
            {u"server"_s, u"connect"_s, NotPermitted});
        row("wizard finished", "/server /runas", {.configured = {false, true}},
            {u"server"_s, mayStart, u"wizard"_s, serverWindow});
        row("wizard given up", "/server /runas", {.configured = {false, false}},
            {u"server"_s, mayStart, u"wizard"_s});
        row("wizard wanted again", "/server /runas /bwiz", {},
            {u"server"_s, mayStart, u"wizard"_s, serverWindow});
        row("wizard wanted on a desktop", "/bwiz", {}, {u"desktop"_s, desktopWindow});
        row("home, in another case", "/edithome", {}, {u"desktop"_s, u"edit hOME c2 s2"_s});
        row("home, no answer", "/edithome", {.vdirs = std::nullopt},
            {u"desktop"_s, u"fails: "_s + ZEPMuiGetStringW(Message::VirtualDirectoriesUnavailable)});
        row("home, given up", "/edithome", {.vdirs = std::nullopt, .without = ServiceOutcome::Cancelled},
            {u"desktop"_s});
        row("an environment of no use", "/server", {.mistake = "no port"},
            {u"server"_s, u"fails: no port"_s});
        row("home, no list", "/edithome", {.vdirs = QByteArray("<Response/>")}, {u"desktop"_s});
        row("home, not in the list", "/edithome", {.vdirs = QByteArray("<Response><VDirs/></Response>")},
            {u"desktop"_s, u"says: "_s + ZEPMuiGetStringW(Message::HomeDirectoryMissing)});
        row("home goes before cloud", "/cloud /edithome", {}, {u"desktop"_s, u"edit hOME c2 s2"_s});
        row("cloud", "/cloud", {}, {u"desktop"_s, u"cloud"_s});
    }

    void everyPath() {
        const auto [line, world, done] = Fetched<QString, World, QStringList>();
        ScriptedOperations operations(world);
        const QStringList arguments =
            QStringList{u"/server/in/the/path"_s} + line.split(u' ', Qt::SkipEmptyParts);
        CBTaskMMCApp app(CommandLine(arguments), operations);
        QVERIFY(!app.InitInstance());
        QCOMPARE(operations.done, done);
        QCOMPARE(app.ExitCode(), done.contains(NoShell) ? 1 : world.mistake[0] ? 2 : 0);
        const bool isServer = done.value(0) == u"server"_s;
        QCOMPARE(operations.boxTitle,
                 ConsoleTitle(isServer, isServer && QByteArray(world.serverModeValue) == "qbs"));
    }

    void readsTheInitialView_data() {
        const Columns<QString, int> row("argument", "view");
        row("none", "/views", 0);
        row("no digits", "/view:", 0);
        row("a letter", "/view:x3", 0);
        row("digits and a letter", "/view:3x", 3);
        row("negative", "/view:-2", -2);
        row("in the midst of others", "/cloud/view:12/bwiz", 12);
    }

    void readsTheInitialView() {
        QFETCH(QString, argument);
        QTEST(CommandLine({u"program"_s, argument}).InitialView(), "view");
    }

    void takesDevelopmentOptionsOut() {
        const CommandLine line(
            {u"program"_s, u"--dev-tour=/pictures/server"_s, u"/cloud"_s, u"--dev-gallery"_s});
        QCOMPARE(line.Text(), u"/cloud"_s);
        QCOMPARE(line.TourFolder(), u"/pictures/server"_s);
        QVERIFY(line.Gallery());
        QVERIFY(!line.Server());
    }

    void carriesArgumentsAndSurroundings() {
        QCOMPARE(CommandLine({u"program"_s}).ElevatedArguments(), QStringList({u"/server"_s, u"/runas"_s}));
        platform::PutEnvironmentVariable("BREN_HOME", "data of mine");
        platform::PutEnvironmentVariable("BREN_SERVICE_PORT", "4711");
        const QStringList words{u"program"_s, u"/server"_s, u"a \"b\" c\\"_s, QString()};
        const QStringList carried = WithSurroundings(CommandLine(words).ElevatedArguments());
        QCOMPARE(carried,
                 words.mid(1) +
                     QStringList({u"/runas"_s,
                                  u"--dev-home="_s +
                                      QDir::toNativeSeparators(QDir::current().filePath(u"data of mine"_s)),
                                  u"--dev-port=4711"_s}));
        for (const char* name : {"BREN_HOME", "BREN_SERVICE_PORT"})
            platform::PutEnvironmentVariable(name, {});

        const CommandLine elevated(QStringList{u"program"_s} + carried);
        QCOMPARE(elevated.ElevatedArguments(), words.mid(1) + QStringList{u"/runas"_s});
        elevated.ApplySurroundings();
        QCOMPARE(WithSurroundings({}), carried.mid(4));
        for (const char* name : {"BREN_HOME", "BREN_SERVICE_PORT"})
            platform::PutEnvironmentVariable(name, {});
    }
};

BTASK_TEST(StartUpTest);

#include "StartUpTest.moc"
