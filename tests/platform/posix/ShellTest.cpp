#include "platform/Shell.h"
#include "../Surroundings.h"
#include "platform/Elevation.h"

#include <doctest/doctest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace fs = std::filesystem;
using namespace platform;

namespace {

/// Programs of the test's own, found before the system's.
class Programs {
public:
    fs::path Add(const std::string& name, const std::string& script) const {
        fs::path path = m_folder.Path() / "bin" / name;
        WriteFile(path, "#!/bin/sh\n" + script);
        fs::permissions(path, fs::perms::owner_all);
        return path;
    }
    fs::path File(const std::string& name) const { return m_folder.Path() / name; }

private:
    TemporaryFolder m_folder;
    VariableSet m_path{"PATH", m_folder.Text() + "/bin:/usr/bin:/bin"};
};

bool HasNoChildren() {
    return ComesTrue([] {
        siginfo_t child;
        return ::waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) < 0 && errno == ECHILD;
    });
}

} // namespace

TEST_CASE("elevation carries the display and home, and waits for what the user says") {
    const Programs programs;
    const std::string log = programs.File("log").string();
    const fs::path console =
        programs.Add("console", "echo \"$*|$DISPLAY|$XDG_TEST|$BREN_HOME|$OTHER\" >" + log);
    const VariableSet display("DISPLAY", ":7");
    const VariableSet folder("XDG_TEST", "with blank");
    const VariableSet home("BREN_HOME", "data");
    const VariableSet other("OTHER", "secret");

    programs.Add("pkexec", "exec env -i PATH=\"$PATH\" \"$@\"");
    CHECK(MayElevate());
    CHECK(RelaunchElevated(console, {"/server", "a b", "/runas"}));
    CHECK(ComesTrue([&] {
        return ReadFile(log) ==
               "/server a b /runas|:7|with blank|" + (fs::current_path() / "data").string() + "|\n";
    }));
    CHECK_FALSE(RelaunchElevated(programs.File("missing"), {}));

    programs.Add("pkexec", "exit 126");
    CHECK_FALSE(RelaunchElevated(console, {}));
    CHECK(HasNoChildren());

    const VariableSet nowhere("PATH", programs.File("empty").string());
    CHECK_FALSE(MayElevate());
    CHECK_FALSE(RelaunchElevated(console, {}));
}

TEST_CASE("programs start with their arguments as they stand and leave nothing behind") {
    const Programs programs;
    const std::string log = programs.File("log").string();
    const fs::path program = programs.Add("program", "printf '<%s>' \"$@\" >" + log);
    CHECK(StartProgram(program, {"a b", "", "\"c\""}));
    CHECK(ComesTrue([&] { return ReadFile(log) == "<a b><><\"c\">"; }));
    CHECK_FALSE(StartProgram(programs.File("missing")));

    CHECK_FALSE(OpenInShell(""));
    programs.Add("xdg-open", "printf '<%s>' \"$@\" >" + log);
    const std::pair<const char*, const char*> targets[] = {
        {"/a folder", "</a folder>"}, {"https://x/?a=b&c", "<https://x/?a=b&c>"}, {"--help", "<./--help>"}};
    for (const auto& [target, opened] : targets) {
        CHECK(OpenInShell(target));
        CHECK(ComesTrue([&, text = opened] { return ReadFile(log) == text; }));
    }
    CHECK(HasNoChildren());
    const VariableSet nowhere("PATH", programs.File("empty").string());
    CHECK_FALSE(OpenInShell("/a folder"));
}

TEST_CASE("a shortcut names its target whatever stands in it") {
    const TemporaryFolder folder;
    const fs::path desktop = folder.Path() / "made" / "desktop";
    CHECK(MakeShortcut(desktop, "Cloud Sync Folder - A", "/a \"b\" 50% $x\\y", "two\nlines"));
    CHECK(ReadFile(desktop / "Cloud Sync Folder - A.desktop") ==
          "[Desktop Entry]\nType=Application\nIcon=folder\nTerminal=false\n"
          "Name=Cloud Sync Folder - A\nComment=two\\nlines\n"
          "Exec=xdg-open \"/a \\\\\"b\\\\\" 50%% \\\\$x\\\\\\\\y\"\n");
    CHECK(MakeShortcut(desktop, "Cloud Sync Folder - A", "/b", ""));
    CHECK(RemoveShortcut(desktop, "Cloud Sync Folder - A"));
    CHECK(fs::is_empty(desktop));
    CHECK(RemoveShortcut(desktop, "Cloud Sync Folder - A"));
    CHECK_FALSE(MakeShortcut(desktop, "../A", "/b", ""));
    CHECK_FALSE(MakeShortcut(desktop, "", "/b", ""));
    CHECK_FALSE(RemoveShortcut(desktop, "../A"));
    WriteFile(folder.Path() / "file", "");
    CHECK_FALSE(MakeShortcut(folder.Path() / "file", "A", "/b", ""));
}
