#include "benchmarks/BenchTable.h"

#include <QApplication>

#include <cstdio>
#include <exception>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Benchmark {
    QString name;
    std::function<void(BenchTable&)> run;
};

std::vector<Benchmark>& Benchmarks() {
    static std::vector<Benchmark> benchmarks;
    return benchmarks;
}

constexpr const char* Usage =
    "btask_bench [--json FILE] [--only NAME]\n"
    "Runs the benchmarks whose names contain NAME; ends with 1 where a bound does not hold.\n";

} // namespace

BenchRegistration::BenchRegistration(const char* name, std::function<void(BenchTable&)> run, Turn turn) {
    const auto place = turn == First ? Benchmarks().begin() : Benchmarks().end();
    Benchmarks().insert(place, {QString::fromUtf8(name), std::move(run)});
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments().mid(1);
    std::string json;
    QString only;
    for (qsizetype i = 0; i < words.size(); i += 2) {
        const bool isJson = words[i] == "--json"_L1;
        if ((!isJson && words[i] != "--only"_L1) || i + 1 == words.size()) {
            std::fputs(Usage, stderr);
            return 2;
        }
        if (isJson)
            json = words[i + 1].toStdString();
        else
            only = words[i + 1];
    }
    BenchTable table;
    bool failed = false;
    for (const Benchmark& benchmark : Benchmarks()) {
        if (!benchmark.name.contains(only, Qt::CaseInsensitive))
            continue;
        try {
            benchmark.run(table);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(benchmark.name), error.what());
            failed = true;
        }
    }
    if (!json.empty() && !table.WriteJson(json)) {
        std::fprintf(stderr, "Cannot write %s\n", json.c_str());
        failed = true;
    }
    return table.AllHold() && !failed ? 0 : 1;
}
