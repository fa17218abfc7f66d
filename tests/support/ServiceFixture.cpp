#include "support/ServiceFixture.h"

namespace {

devservice::Options OptionsOf(devservice::Options options, const QTemporaryDir& home) {
    options.home = home.path().toStdU16String();
    options.port = 0;
    return options;
}

void Restore(const char* name, const QByteArray& value) {
    if (value.isNull())
        qunsetenv(name);
    else
        qputenv(name, value);
}

} // namespace

ServiceFixture::ServiceFixture(const char* scenario)
    : ServiceFixture([scenario] {
          devservice::Options options;
          options.scenario = scenario;
          return options;
      }()) {}

ServiceFixture::ServiceFixture(devservice::Options options)
    : m_oldHome(qgetenv("BREN_HOME")), m_oldPort(qgetenv("BREN_SERVICE_PORT")),
      m_service(OptionsOf(std::move(options), m_home)) {
    qputenv("BREN_HOME", m_home.path().toUtf8());
    m_service.Start();
    qputenv("BREN_SERVICE_PORT", QByteArray::number(m_service.Port()));
    // What a console keeps of its user stays in the home too.
    for (const auto& [name, before] : m_oldFolders)
        qputenv(name, m_home.path().toUtf8());
}

ServiceFixture::~ServiceFixture() {
    m_service.Stop();
    Restore("BREN_HOME", m_oldHome);
    Restore("BREN_SERVICE_PORT", m_oldPort);
    for (const auto& [name, before] : m_oldFolders)
        Restore(name, before);
}

QStringList ServiceFixture::RequestLines() const {
    QStringList lines;
    for (const devservice::ReceivedRequest& request : m_service.Requests())
        lines.append(QString::fromStdString(request.verb + ' ' + request.target));
    return lines;
}
