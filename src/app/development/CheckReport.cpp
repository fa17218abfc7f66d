#include "development/CheckReport.h"

#include "development/Silences.h"
#include "development/WatchedReader.h"
#include "service/ServiceClient.h"
#include "window/BTaskMMCDlg.h"

#include <QCoreApplication>
#include <QScreen>
#include <QTextStream>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A view of a service that hangs is swept after this long.
constexpr std::chrono::milliseconds HangPatience{300};

void Resize(QWidget& window, const QString& size) {
    const QStringList sides = size.split(u'x');
    if (sides.size() == 2)
        window.resize(QSize(sides[0].toInt(), sides[1].toInt()).boundedTo(window.screen()->availableSize()));
}

void Report(const CheckRun& run) {
    SilenceBook silences;
    const QStringList lines = ReportLines(silences.Loud(run.Finds()));
    QTextStream out(stdout);
    for (const QString& line : lines)
        out << line << Qt::endl;
    out << lines.size() << " places in " << run.ViewCount() << " views" << Qt::endl;
    QCoreApplication::quit();
}

} // namespace

std::unique_ptr<CheckRun> StartCheck(CBTaskMMCDlg& window, WatchedReader& reader,
                                     const ServiceClient& service, std::vector<DialogEntry> dialogs,
                                     const CheckRequest& request) {
    Resize(window, request.size);
    if (!request.fault.isEmpty())
        service.SendRequest(u"/dev/fault?"_s + request.fault, u"PUT"_s, 200, {}, {});
    CheckRun::Options options;
    options.rules = request.rules == "layout"_L1 ? Sweeps::Layout : Sweeps::Everything;
    if (request.fault == "hang"_L1)
        options.patience = HangPatience;
    auto run = std::make_unique<CheckRun>(window, reader, std::move(dialogs), options);
    QObject::connect(run.get(), &CheckRun::Finished, run.get(), [check = run.get()] { Report(*check); });
    return run;
}
