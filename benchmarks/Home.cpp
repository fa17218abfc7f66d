#include "benchmarks/Home.h"

namespace {

devservice::Options OptionsFor(const QTemporaryDir& folder, const std::string& scenario) {
    devservice::Options options;
    options.home = folder.path().toStdString();
    options.scenario = scenario;
    return options;
}

} // namespace

BenchHome::BenchHome(const std::string& scenario) : m_service(OptionsFor(m_folder, scenario)) {
    for (const char* name : {"BREN_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, m_folder.path().toUtf8());
    m_service.Start();
    qputenv("BREN_SERVICE_PORT", QByteArray::number(m_service.Port()));
}
