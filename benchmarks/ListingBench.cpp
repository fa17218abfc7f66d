#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "benchmarks/HeldReader.h"
#include "clouddrive/BrowseDlg.h"
#include "look/Look.h"
#include "service/DavListing.h"
#include "wizard/CheckTreeView.h"
#include "zep/Text.h"

#include <QApplication>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <stdexcept>
#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Shape {
    const char* name;
    bool marked; ///< with "mesffolder" and "displayname"
};

/// An answer as the service gives it: some 530 octets an entry.
QByteArray MakeAnswer(int entries, bool marked) {
    QByteArray answer = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<D:multistatus xmlns:D=\"DAV:\" "
                        "xmlns:a=\"urn:service\">\n";
    for (int number = 0; number < entries; ++number) {
        const QByteArray name = "Photographs of " + QByteArray::number(number);
        answer += "<D:response>\n <D:href>/resources/home/Pictures/" + QByteArray(name).replace(" ", "%20") +
                  "</D:href>\n <D:propstat>\n  <D:status>HTTP/1.1 200 OK</D:status>\n  <D:prop>\n";
        if (marked)
            answer += "   <D:displayname>" + name + "</D:displayname>\n   <a:mesffolder>0</a:mesffolder>\n";
        answer += "   <D:iscollection>1</D:iscollection>\n   <D:resourcetype/>\n   <D:supportedlock/>\n   "
                  "<D:getcontentlength>4096</D:getcontentlength>\n   "
                  "<D:creationdate>2026-03-01T12:00:00Z</D:creationdate>\n   "
                  "<D:getlastmodified>Sun, 01 Mar 2026 12:00:00 GMT</D:getlastmodified>\n  </D:prop>\n "
                  "</D:propstat>\n</D:response>\n";
    }
    return answer + "</D:multistatus>\n";
}

/// The same structs by a reader of XML.
DavListing ReadWithXml(const QByteArray& answer) {
    DavListing listing{u"/home/Pictures"_s, {}};
    pugi::xml_document document;
    document.load_buffer(answer.constData(), std::size_t(answer.size()), pugi::parse_default,
                         pugi::encoding_utf8);
    for (const pugi::xml_node& response : document.child("D:multistatus").children("D:response")) {
        const pugi::xml_node properties = response.child("D:propstat").child("D:prop");
        if (std::string_view(properties.child_value("a:mesffolder")) == "1")
            continue;
        DavEntry entry;
        entry.href = ZEPURLDecodeUTF8(QByteArrayView(response.child_value("D:href")));
        const pugi::xml_node name = properties.child("D:displayname");
        entry.name = name ? QString::fromUtf8(name.child_value())
                          : QString::fromUtf8(entry.href.mid(entry.href.lastIndexOf('/') + 1));
        entry.isFolder = properties.child("D:iscollection").text().as_int() != 0;
        entry.lastModified = properties.child_value("D:getlastmodified");
        if (entry.name.compare("Pictures"_L1, Qt::CaseInsensitive) != 0)
            listing.entries.push_back(std::move(entry));
    }
    return listing;
}

double MeasureShape(BenchTable& table, int entries, const Shape& shape) {
    const QByteArray answer = MakeAnswer(entries, shape.marked);
    const auto scan = [&answer] { return ParseMultistatus(answer, u"/home/Pictures"_s); };
    if (scan() != ReadWithXml(answer) || int(scan().entries.size()) != entries)
        throw std::runtime_error("scanner and XML reader differ");
    const PairSamples samples = MeasurePair(
        entries > 10'000 ? 9 : 31, [&] { benchmark::DoNotOptimize(scan().entries.data()); },
        [&] { benchmark::DoNotOptimize(ReadWithXml(answer).entries.data()); });
    table.Add(
        {.name = "ParseMultistatus, " + std::to_string(entries) + " entries " + shape.name + ", pugixml",
         .unit = "ms",
         .ours = samples.ours.Median(),
         .reference = samples.reference.Median(),
         .maxRatio = 0.5});
    return samples.ours.Median();
}

void MeasureListings(BenchTable& table) {
    for (const Shape& shape : {Shape{"with names and marks", true}, Shape{"without", false}}) {
        const double few = MeasureShape(table, 10'000, shape);
        const double many = MeasureShape(table, 100'000, shape);
        table.Add({.name = std::string("ParseMultistatus ") + shape.name + ", 100,000 beside 10,000",
                   .unit = "ms",
                   .ours = many,
                   .reference = few,
                   .maxRatio = 11.0});
    }
}

void MeasurePicker(BenchTable& table) {
    ApplyLook(*qApp);
    ConsoleParts parts("empty");
    parts.home.Service().SetVirtualDirectories({{"V", "{C}", 3, {}}});
    parts.home.Service().SetAnswer("/resources/V",
                                   devservice::Answer{207, MakeAnswer(10'000, true).toStdString()});
    Samples shown;
    double longest = 0;
    for (int round = 0; round < 5; ++round) {
        HeldReader reader;
        const Console console = parts.On(reader);
        RemoteFolderRequest request;
        request.start = u"/V"_s;
        CBrowseDlg dialog(console, request);
        dialog.show();
        reader.Work();
        reader.Answer();
        QCoreApplication::processEvents();
        auto& view = *dialog.findChild<CheckTreeView*>();
        view.expand(view.currentIndex());
        StallWatch watch;
        shown.Add(MillisecondsOf([&] {
            reader.Work(); // the exchange as well
            longest = std::max(longest, MillisecondsOf([&] { reader.Answer(); }));
            for (int turn = 0; turn < 3; ++turn)
                watch.Handle([once = true]() mutable { return std::exchange(once, false); });
        }));
        longest = std::max(longest, watch.longest);
        if (view.indexAt(QPoint(60, 200)).row() < 5)
            throw std::runtime_error("the folder is not on screen");
    }
    table.Add({.name = "A folder of 10,000 in the picker, from its request to the screen",
               .unit = "ms",
               .ours = shown.Median(),
               .maxOurs = 200.0});
    table.Add(
        {.name = "Longest stall of the picker meanwhile", .unit = "ms", .ours = longest, .maxOurs = 50.0});
}

const BenchRegistration Picker("folder picker", MeasurePicker);
const BenchRegistration Listings("listings", MeasureListings);

} // namespace
