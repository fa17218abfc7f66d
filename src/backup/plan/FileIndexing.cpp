#include "plan/FileIndexing.h"

#include "platform/NamedObjects.h"
#include "platform/ServiceControl.h"
#include "stores/FileIndexStore.h"
#include "zep/Mui.h"
#include "zep/SysInfo.h"
#include "zep/TracePrintf.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char BeginEvent[] = "Global\\BrenviaFileMon"; // stands until the index was built once
constexpr char ForceEvent[] = "Global\\BrenviaFileForceIndex";
constexpr char IndexedEvent[] = "Global\\BrenviaFileIndexed";

void Set(const char* name) {
    if (auto event = platform::NamedEvent::Open(name))
        event->Set();
}

} // namespace

FileIndexState AskFileMonitor(const std::stop_token& stop) {
    const auto query = platform::QueryService("BrenFileMonSvc", ZEPSysInfoIsServer(), stop);
    switch (query.failedAt) {
    case platform::ServiceQueryStep::OpenManager:
        TracePrintf(TraceLevel::Info, u"OpenSCManager failed (%1)\n"_s.arg(query.errorCode));
        return FileIndexState::Unknown;
    case platform::ServiceQueryStep::OpenService:
        return FileIndexState::CannotBeOpened;
    case platform::ServiceQueryStep::QueryStatus:
        TracePrintf(TraceLevel::Info, u"QueryServiceStatusEx failed (%1)\n"_s.arg(query.errorCode));
        return FileIndexState::Unknown;
    case platform::ServiceQueryStep::Done:
        break;
    }
    return query.state == platform::ServiceState::Running ? FileIndexState::Kept : FileIndexState::NotRunning;
}

FileIndexState AskFileIndex(const std::stop_token& stop) {
    return platform::NamedEvent::Open(BeginEvent) ? FileIndexState::NeverBuilt : AskFileMonitor(stop);
}

QString FileIndexRefusal(FileIndexState state) {
    switch (state) {
    case FileIndexState::CannotBeOpened:
        return ZEPMuiGetStringW(Message::FileMonitorCannotBeOpened);
    case FileIndexState::NotRunning:
    case FileIndexState::Unknown:
        return ZEPMuiGetStringW(Message::FileMonitorNotRunning);
    case FileIndexState::Kept:
    case FileIndexState::NeverBuilt:
        break;
    }
    return {};
}

void BeginFileIndex() {
    Set(BeginEvent);
}

void ForceFileIndex() {
    ForgetFileIndexed();
    Set(BeginEvent);
    Set(ForceEvent);
}

void ForgetFileIndexed() {
    if (auto event = platform::NamedEvent::Open(IndexedEvent))
        event->Reset();
}

QString FileIndexLostText() {
    return QCoreApplication::translate("FileIndexing",
                                       "The file monitor service stopped before the index was built.");
}

FileIndexing ReadFileIndexing(const std::stop_token& stop) {
    const bool running =
        AskFileMonitor(stop) == FileIndexState::Kept; // asked first: what it did last still counts
    const auto indexed = platform::NamedEvent::Open(IndexedEvent);
    FileIndexing indexing;
    indexing.files = ReadHighestFileRow(stop).value_or(0);
    if (indexed && indexed->IsSet() && !platform::NamedEvent::Open(BeginEvent))
        indexing.end = FileIndexing::End::Built;
    else if (!running)
        indexing.end = FileIndexing::End::Gone;
    return indexing;
}
