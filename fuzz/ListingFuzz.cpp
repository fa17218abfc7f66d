#include "../tests/support/NaiveListing.h"
#include "Require.h"
#include "service/DavListing.h"

using namespace Qt::Literals::StringLiterals;

namespace {

void Compare(const QByteArray& answer) {
    const QString path = answer.size() % 2 ? u"/home/Docs"_s : QString();
    for (const HiddenEntries hidden : {HiddenEntries::LeaveOut, HiddenEntries::Show})
        Require(ParseMultistatus(answer, path, hidden) == NaiveListing(answer, path, hidden));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray octets(reinterpret_cast<const char*>(data), qsizetype(size));
    Compare(octets);
    Compare(ComposeListing(octets));
    return 0;
}
