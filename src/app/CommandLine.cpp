#include "app/CommandLine.h"

#include "platform/Environment.h"
#include "platform/Folders.h"
#include "service/ServiceClient.h"
#include "window/BTaskMMCDlg.h"
#include "zep/Text.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char HomeVariable[] = "BREN_HOME";
constexpr char PortVariable[] = "BREN_SERVICE_PORT";
constexpr QLatin1String HomeOption("--dev-home=");
constexpr QLatin1String PortOption("--dev-port=");

const QString HelpText = uR"(BTaskMMC: the management console of the storage agent

  BTaskMMC [SWITCH]...

  /server      the console of a server; asks for raised rights where it may
  /runas       this copy has raised rights: it asks for none, and may start the service
  /bwiz        with /server: set the server up again first
  /view:N      open section N
  /edithome    edit the login card of the virtual directory "Home" in place of the window
  /cloud       show the cloud service page in place of the window
  --help       print this, and end
  --version    print the version, and end

Environment
  BREN_HOME          the data folder of the service, where it is not the usual one
  BREN_SERVICE_PORT  the service's port, where it is not 9678 (desktop) or 9898 (server)

Exit codes
  0  the window has been closed, or the user was told why there is none
  1  the desktop's program does not run
  2  the environment cannot be used
)"_s;

} // namespace

CommandLine::CommandLine(const QStringList& arguments) {
    for (const QString& argument : arguments.mid(1)) {
        if (!TakeDevelopmentOption(argument))
            m_switches.append(argument);
    }
    m_text = m_switches.join(u' ');
}

int CommandLine::InitialView() const {
    const QString name = u"/view:"_s;
    const qsizetype at = m_text.indexOf(name);
    return at < 0 ? 0 : LeadingNumber(m_text.mid(at + name.size()).toUtf8());
}

QString CommandLine::TextToPrint() const {
    return m_help      ? HelpText
           : m_version ? u"BTaskMMC %1"_s.arg(ReadConsoleVersion()).trimmed() + u'\n'
                       : QString();
}

QStringList CommandLine::ElevatedArguments() const {
    if (m_switches.isEmpty())
        return {u"/server"_s, u"/runas"_s};
    return RunAs() ? m_switches : m_switches + QStringList{u"/runas"_s};
}

void CommandLine::ApplySurroundings() const {
    // A folder may have octets that no text can hold; where the environment names it, it does so exactly.
    const auto home = platform::GivenHome();
    if (!m_home.isEmpty() && (!home || FromPath(*home) != m_home))
        platform::PutEnvironmentVariable(HomeVariable, m_home.toStdString());
    if (!m_port.isEmpty())
        platform::PutEnvironmentVariable(PortVariable, m_port.toStdString());
}

QStringList WithSurroundings(const QStringList& arguments) {
    QStringList all = arguments;
    if (const auto home = platform::GivenHome())
        all += HomeOption + FromPath(*home);
    if (const auto port = platform::EnvironmentVariable(PortVariable))
        all += PortOption + QString::fromStdString(*port);
    return all;
}

bool CommandLine::TakeDevelopmentOption(const QString& argument) {
    const std::pair<QLatin1String, QString&> texts[] = {{"--dev-tour="_L1, m_tourFolder},
                                                        {"--dev-section="_L1, m_firstSection},
                                                        {"--dev-check="_L1, m_check},
                                                        {"--dev-size="_L1, m_size},
                                                        {"--dev-fault="_L1, m_fault},
                                                        {HomeOption, m_home},
                                                        {PortOption, m_port}};
    for (const auto& [name, text] : texts) {
        if (argument.startsWith(name)) {
            text = argument.mid(name.size());
            return true;
        }
    }
    const std::pair<QLatin1String, bool&> flags[] = {{"--dev-gallery"_L1, m_gallery},
                                                     {"--dev-report-start"_L1, m_reportStart},
                                                     {"--help"_L1, m_help},
                                                     {"--version"_L1, m_version}};
    for (const auto& [name, flag] : flags) {
        if (argument == name) {
            flag = true;
            return true;
        }
    }
    return false;
}
