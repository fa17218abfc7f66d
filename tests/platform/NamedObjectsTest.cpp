#include "platform/NamedObjects.h"
#include "Surroundings.h"
#include "platform/FileAccess.h"

#include <doctest/doctest.h>

using namespace platform;

TEST_CASE("a mutex is seen for as long as it is held, and asking does not take it") {
    const TemporaryHome home;
    CHECK_FALSE(IsMutexHeld("IOSGUISHELLUPMUTEX"));
    {
        std::optional<NamedMutex> mutex = NamedMutex::Hold("IOSGUISHELLUPMUTEX");
        REQUIRE(mutex);
        CHECK(IsMutexHeld("IOSGUISHELLUPMUTEX"));
        CHECK_FALSE(IsMutexHeld("ANOTHER"));
        CHECK_FALSE(NamedMutex::Hold("IOSGUISHELLUPMUTEX"));
        const NamedMutex moved = std::move(*mutex);
        mutex.reset();
        CHECK(IsMutexHeld("IOSGUISHELLUPMUTEX"));
    }
    CHECK_FALSE(IsMutexHeld("IOSGUISHELLUPMUTEX"));
    CHECK(NamedMutex::Hold("IOSGUISHELLUPMUTEX"));
    CHECK_FALSE(IsMutexHeld(""));
}

TEST_CASE("an event is opened only while it has been made, and stays set until it is reset") {
    const TemporaryHome home;
    const std::string name = "Global\\BrenviaTestEvent";
    CHECK_FALSE(NamedEvent::Open(name));
    {
        std::optional<NamedEvent> made = NamedEvent::Make(name);
        REQUIRE(made);
        CHECK_FALSE(made->IsSet());
        std::optional<NamedEvent> opened = NamedEvent::Open(name);
        REQUIRE(opened);
        CHECK(opened->Set());
        CHECK(opened->Set());
        CHECK(made->IsSet());
        CHECK(made->IsSet());

        std::optional<NamedEvent> again = NamedEvent::Make(name);
        REQUIRE(again);
        CHECK(again->IsSet());
        CHECK(again->Reset());
        CHECK_FALSE(made->IsSet());
        CHECK(again->Reset());
        again.reset();
        CHECK(NamedEvent::Open(name));
    }
    CHECK_FALSE(NamedEvent::Open(name));
    CHECK_FALSE(NamedEvent::Open(""));
}

TEST_CASE("what keeps a file from being read or written, and a folder from taking files") {
    using enum FileRight;
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "there", "x");
    for (const FileRight right : {Read, Write}) {
        CHECK(ProbeAccess(folder.Path() / "there", right) == FileAccess::Granted);
        CHECK(ProbeAccess(folder.Path() / "missing", right) == FileAccess::Missing);
        CHECK(ProbeAccess(folder.Path() / "no folder" / "missing", right) == FileAccess::Missing);
        CHECK(ProbeAccess(folder.Path(), right) == FileAccess::Broken);
    }
    CHECK(ReadFile(folder.Path() / "there") == "x");
    CHECK(ProbeAccess(folder.Path(), MakeFilesIn) == FileAccess::Granted);
    CHECK(ProbeAccess(folder.Path() / "there", MakeFilesIn) == FileAccess::Broken);
    CHECK(ProbeAccess(folder.Path() / "missing", MakeFilesIn) == FileAccess::Missing);
}
