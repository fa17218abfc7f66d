#include "plan/Writers.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Writers)
};

/// Of the system's own writers, which hold nothing that could be put back.
constexpr QLatin1String Excluded[] = {
    "{d61d61c8-d73a-4eee-8cdd-f6f9786b7124}"_L1, "{75dfb225-e2e4-4d39-9ac9-ffaff65ddf06}"_L1,
    "{0bada1de-01a9-4625-8278-69e735f39dd2}"_L1, "{be000cbe-11fe-4426-9c58-531aa6355fc4}"_L1,
    "{4dc3bdd4-ab48-4d07-adb0-3bee2926fd7f}"_L1, "{4969d978-be47-48b0-b100-f328f07ac1e0}"_L1,
    "{542da469-d3e1-473c-9f4f-7847f01fc64f}"_L1,
};

struct DisplayName {
    QLatin1String writer;
    const char* shown;
    bool beginning = false; ///< of the writer's name
};

// The first that fits is shown.
constexpr DisplayName DisplayNames[] = {
    {"sqlserverwriter"_L1, QT_TRANSLATE_NOOP("Writers", "SQL Server")},
    {"msdewriter"_L1, QT_TRANSLATE_NOOP("Writers", "Microsoft Data Engine")},
    {"FRS Writer"_L1, QT_TRANSLATE_NOOP("Writers", "File Replication service")},
    {"event log writer"_L1, QT_TRANSLATE_NOOP("Writers", "Event Log")},
    {"System Writer"_L1, QT_TRANSLATE_NOOP("Writers", "Operating System and Driver Binaries")},
    {"Registry Writer"_L1, QT_TRANSLATE_NOOP("Writers", "Local Registry")},
    {"NTDS"_L1, QT_TRANSLATE_NOOP("Writers", "Active Directory")},
    {"COM+ REGDB Writer"_L1, QT_TRANSLATE_NOOP("Writers", "COM+ Registry")},
    {"WMI Writer"_L1, QT_TRANSLATE_NOOP("Writers", "WMI State and Data")},
    {"ADAM"_L1, QT_TRANSLATE_NOOP("Writers", "Active Directory Lightweight Directory Services (LDS)"), true},
    {"Dhcp Jet Writer"_L1, QT_TRANSLATE_NOOP("Writers", "Dynamic Host Configuration")},
    {"FSRM Writer"_L1, QT_TRANSLATE_NOOP("Writers", "File Server Resource Manager")},
    {"WINS Jet Writer"_L1, QT_TRANSLATE_NOOP("Writers", "Windows Internet Name Service")},
    {"Certificate Server Writer"_L1, QT_TRANSLATE_NOOP("Writers", "Certificate Authority")},
    {"Microsoft Exchange Writer"_L1, QT_TRANSLATE_NOOP("Writers", "Microsoft Exchange Server")},
};

bool IsExcluded(const QString& id) {
    return std::any_of(std::begin(Excluded), std::end(Excluded), [&id](QLatin1String excluded) {
        return id.compare(excluded, Qt::CaseInsensitive) == 0;
    });
}

QString FailureOf(const ServiceAnswer& answer) {
    switch (answer.outcome) {
    case ServiceOutcome::OtherStatus:
        return Words::tr("The service does not list the applications (status %1).").arg(answer.status);
    case ServiceOutcome::TimedOut:
        return Words::tr("The service did not list the applications in time.");
    case ServiceOutcome::Unreachable:
    case ServiceOutcome::Cancelled:
        return Words::tr("The service does not answer.");
    case ServiceOutcome::Answered:
        break;
    }
    if (!answer.length)
        return Words::tr("The service's answer broke off in the middle.");
    return answer.body.isEmpty() ? Words::tr("The service lists no applications.") : QString();
}

} // namespace

std::vector<Writer> ParseWriters(const QByteArray& list) {
    const qsizetype zero = list.indexOf('\0'); // a text of the service may end in one
    std::vector<Writer> writers;
    for (const QByteArray& line : list.left(zero < 0 ? list.size() : zero).split('\n')) {
        QStringList fields = QString::fromUtf8(line).split(u'\t');
        if (fields.size() >= 3 && !IsExcluded(fields[1]))
            writers.push_back({fields[0], fields[1], fields.mid(3)});
    }
    return writers;
}

QString WriterDisplayName(const QString& name) {
    const auto fits = [&name](const DisplayName& each) {
        return each.beginning ? name.startsWith(each.writer, Qt::CaseInsensitive)
                              : name.compare(each.writer, Qt::CaseInsensitive) == 0;
    };
    const auto* found = std::find_if(std::begin(DisplayNames), std::end(DisplayNames), fits);
    return found == std::end(DisplayNames) ? name : Words::tr(found->shown);
}

QString WriterKey(const Writer& writer) {
    return writer.name + u'(' + writer.id + u')';
}

QString ComponentKey(const QString& writerKey, const QString& component) {
    return writerKey + u'/' + component;
}

WriterReading ReadWriters(const ServiceClient& service, std::stop_token stop) {
    constexpr int Ok = 200;
    WriterReading reading;
    reading.answer = service.SendRequest(u"/backupsvr/writers"_s, u"GET"_s, Ok, {}, std::move(stop));
    reading.failure = FailureOf(reading.answer);
    if (reading.failure.isEmpty())
        reading.writers = ParseWriters(std::exchange(reading.answer.body, {}));
    return reading;
}
