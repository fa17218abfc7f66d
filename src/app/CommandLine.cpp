#include "app/CommandLine.h"

#include "service/ServiceClient.h"

CommandLine::CommandLine(const QStringList& arguments) {
    QStringList switches;
    for (const QString& argument : arguments.mid(1)) {
        if (!TakeDevelopmentOption(argument))
            switches.append(argument);
    }
    m_text = switches.join(u' ');
}

int CommandLine::InitialView() const {
    const QString name = QStringLiteral("/view:");
    const qsizetype at = m_text.indexOf(name);
    return at < 0 ? 0 : LeadingNumber(m_text.mid(at + name.size()).toUtf8());
}

QString CommandLine::ElevatedText() const {
    if (m_text.isEmpty())
        return QStringLiteral("/server /runas");
    return RunAs() ? m_text : m_text + QStringLiteral(" /runas");
}

bool CommandLine::TakeDevelopmentOption(const QString& argument) {
    const QString tour = QStringLiteral("--dev-tour=");
    const QString section = QStringLiteral("--dev-section=");
    if (argument.startsWith(tour))
        m_tourFolder = argument.mid(tour.size());
    else if (argument.startsWith(section))
        m_firstSection = argument.mid(section.size());
    else if (argument == QLatin1String("--dev-gallery"))
        m_gallery = true;
    else if (argument == QLatin1String("--dev-report-start"))
        m_reportStart = true;
    else
        return false;
    return true;
}
