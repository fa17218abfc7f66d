#include "benchmarks/BenchTable.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonValue JsonNumber(const std::optional<double>& number) {
    return number ? QJsonValue(*number) : QJsonValue();
}

QJsonObject JsonObjectOf(const BenchFigure& figure) {
    return {{u"name"_s, QString::fromStdString(figure.name)},
            {u"unit"_s, QString::fromStdString(figure.unit)},
            {u"ours"_s, figure.ours},
            {u"reference"_s, JsonNumber(figure.reference)},
            {u"ratio"_s, JsonNumber(figure.Ratio())},
            {u"maxRatio"_s, JsonNumber(figure.maxRatio)},
            {u"maxOurs"_s, JsonNumber(figure.maxOurs)},
            {u"holds"_s, figure.Holds()}};
}

std::string Number(double number, const std::string& unit) {
    char text[64];
    std::snprintf(text, sizeof text, number < 10 ? "%.3f %s" : "%.1f %s", number, unit.c_str());
    return text;
}

std::string Times(const std::optional<double>& factor) {
    return factor ? Number(*factor, "x") : "-";
}

std::string BoundText(const BenchFigure& figure) {
    std::string text;
    if (figure.maxRatio)
        text = Times(figure.maxRatio);
    if (figure.maxOurs)
        text += (text.empty() ? "" : ", ") + Number(*figure.maxOurs, figure.unit);
    return text.empty() ? "reported" : "<= " + text;
}

void PrintLine(const std::string& name, const std::string& ours, const std::string& reference,
               const std::string& ratio, const std::string& bound, const char* verdict) {
    std::printf("%-52s %14s %14s %10s  %-22s %s\n", name.c_str(), ours.c_str(), reference.c_str(),
                ratio.c_str(), bound.c_str(), verdict);
    std::fflush(stdout);
}

} // namespace

std::optional<double> BenchFigure::Ratio() const {
    return reference && *reference > 0 ? std::optional(ours / *reference) : std::nullopt;
}

bool BenchFigure::Holds() const {
    if (maxRatio && (!Ratio() || *Ratio() > *maxRatio))
        return false;
    return !maxOurs || ours <= *maxOurs;
}

void BenchTable::Add(BenchFigure figure) {
    if (m_figures.empty())
        PrintLine("figure", "ours", "reference", "ratio", "bound", "");
    PrintLine(figure.name, Number(figure.ours, figure.unit),
              figure.reference ? Number(*figure.reference, figure.unit) : "-", Times(figure.Ratio()),
              BoundText(figure), figure.Holds() ? "" : "DOES NOT HOLD");
    m_figures.push_back(std::move(figure));
}

bool BenchTable::WriteJson(const std::string& file) const {
    QJsonArray figures;
    for (const BenchFigure& figure : m_figures)
        figures += JsonObjectOf(figure);
    QFile out(QString::fromStdString(file));
    return out.open(QIODevice::WriteOnly) && out.write(QJsonDocument(figures).toJson()) > 0 && out.flush();
}

bool BenchTable::AllHold() const {
    return std::all_of(m_figures.begin(), m_figures.end(),
                       [](const BenchFigure& figure) { return figure.Holds(); });
}

double Samples::Percentile(double percent) const {
    if (m_times.empty())
        return 0;
    std::vector<double> sorted = m_times;
    std::sort(sorted.begin(), sorted.end());
    const double at = percent / 100 * static_cast<double>(sorted.size() - 1);
    return sorted[static_cast<size_t>(at + 0.5)];
}

double MillisecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

PairSamples MeasurePair(int rounds, const std::function<void()>& ours,
                        const std::function<void()>& reference) {
    ours();
    reference();
    PairSamples samples;
    for (int round = 0; round < rounds; ++round) {
        if (round % 2 == 0)
            samples.ours.Add(MillisecondsOf(ours));
        samples.reference.Add(MillisecondsOf(reference));
        if (round % 2 != 0)
            samples.ours.Add(MillisecondsOf(ours));
    }
    return samples;
}
