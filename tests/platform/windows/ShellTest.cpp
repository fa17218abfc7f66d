#include "platform/Shell.h"
#include "../Surroundings.h"
#include "platform/Environment.h"
#include "platform/FileAccess.h"
#include "platform/Folders.h"
#include "platform/ServiceControl.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WideText.h"

#include <doctest/doctest.h>

#include <shellapi.h>

namespace fs = std::filesystem;
using namespace platform;

#undef OpenService
#undef StartService

TEST_CASE("arguments come out of a command line as they went in") {
    const std::vector<std::string> arguments = {"program",      "",         "a b",    "\"quoted\"", "end\\",
                                                "with blank\\", "a\\\\\"b", "/view:3"};
    int count = 0;
    wchar_t** const split = ::CommandLineToArgvW(CommandLine(arguments).c_str(), &count);
    REQUIRE(count == static_cast<int>(arguments.size()));
    for (int index = 0; index < count; ++index)
        CHECK(Narrow(split[index]) == arguments[static_cast<size_t>(index)]);
    ::LocalFree(split);
}

TEST_CASE("a file that another keeps for itself is locked, a folder is no file") {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "kept";
    const Handle kept(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    REQUIRE(kept);
    CHECK(ProbeAccess(path, FileRight::Read) == FileAccess::Locked);
}

TEST_CASE("a file that may only be read can not be written") {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "kept";
    WriteFile(path, "x");
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    CHECK(ProbeAccess(path, FileRight::Read) == FileAccess::Granted);
    // Some users may write it all the same.
    const bool may{
        Handle(::CreateFileW(path.c_str(), GENERIC_WRITE, ShareAll, nullptr, OPEN_EXISTING, 0, nullptr))};
    CHECK(ProbeAccess(path, FileRight::Write) == (may ? FileAccess::Granted : FileAccess::Denied));
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_CASE("shortcuts are made, replaced and removed") {
    const TemporaryFolder folder;
    const fs::path links = folder.Path() / "made";
    for (const char* description : {"first", "second"})
        CHECK(MakeShortcut(links, "Cloud Sync Folder - A", folder.Path(), description));
    CHECK(fs::file_size(links / "Cloud Sync Folder - A.lnk") > 0);
    CHECK(RemoveShortcut(links, "Cloud Sync Folder - A"));
    CHECK(fs::is_empty(links));
    CHECK(RemoveShortcut(links, "Cloud Sync Folder - A"));
    CHECK_FALSE(MakeShortcut(links, "..\\A", folder.Path(), ""));
}

TEST_CASE("a program starts with its arguments; one that is missing does not") {
    const TemporaryFolder folder;
    const fs::path proof = folder.Path() / "proof";
    const fs::path shell = platform::PathFromUtf8(EnvironmentVariable("ComSpec").value_or(""));
    CHECK(StartProgram(shell, {"/c", "mkdir", Utf8FromPath(proof)}));
    CHECK(ComesTrue([&] { return fs::exists(proof); }));
    CHECK_FALSE(StartProgram(folder.Path() / "missing.exe"));
    CHECK_FALSE(OpenInShell(""));
    CHECK_FALSE(OpenInShell(Utf8FromPath(folder.Path() / "missing")));
}

TEST_CASE("the service manager tells at which step a query failed") {
    const ServiceQuery missing = QueryService("BrenviaNoSuchService");
    CHECK(missing.failedAt == ServiceQueryStep::OpenService);
    CHECK(missing.errorCode == ERROR_SERVICE_DOES_NOT_EXIST);
    CHECK_FALSE(StartService("BrenviaNoSuchService"));
}

TEST_CASE("special folders are places of the system") {
    for (const SpecialFolder folder : {SpecialFolder::Desktop, SpecialFolder::StartMenu,
                                       SpecialFolder::Documents, SpecialFolder::ProgramFilesCommon})
        CHECK(SpecialFolderPath(folder).is_absolute());
    const VariableSet home("BREN_HOME", "C:\\data");
    CHECK(DataFolder(true) == "C:\\data");
    const VariableSet none("BREN_HOME", {});
    CHECK(DataFolder(false).filename() == "brenvia");
}
