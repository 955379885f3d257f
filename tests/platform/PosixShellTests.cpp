#include "platform/linux/PosixShell.h"

#include "preferences/CLIInstaller.h"
#include "support/TemporaryFolder.h"

#include <sys/stat.h>

namespace taliro::testing {
namespace {

/// A `pkexec` of the test's own, first on the path.
struct PkexecTest : ::testing::Test {
    TemporaryFolder folder;
    std::string const path = std::getenv("PATH");
    PkexecScriptInterpreter interpreter;

    void standIn(std::string const& script) {
        auto const file = folder.write("bin/pkexec", "#!/bin/sh\n" + script);
        ::chmod(file.c_str(), 0755);
        ::setenv("PATH", ((folder / "bin").string() + ":" + path).c_str(), 1);
    }
    ~PkexecTest() override { ::setenv("PATH", path.c_str(), 1); }
    std::expected<void, std::string> run(std::string const& command) {
        return interpreter.run("do shell script \"" + command + "\" with administrator privileges");
    }
};

TEST_F(PkexecTest, TellsInWordsWhyNothingWasDone) {
    standIn("exit 126");
    EXPECT_EQ(run("true").error(), "The request for administrator rights was cancelled.");
    standIn("exit 127");
    EXPECT_EQ(run("true").error(), "You are not authorized to do this.");
    standIn("echo 'Error: no agent found.' >&2; exit 127");
    EXPECT_EQ(run("true").error(), "Error: no agent found.");
    standIn("exec \"$@\"");
    EXPECT_EQ(run("echo disk full >&2; exit 3").error(), "disk full");
    EXPECT_TRUE(run("true"));
    ::setenv("PATH", (folder / "empty").c_str(), 1);
    EXPECT_NE(run("true").error().find("pkexec"), std::string::npos);
    EXPECT_FALSE(interpreter.run("tell application \"x\" to quit"));
}

// However odd the bundle's path, the link made through either way leads to the tool.
TEST_F(PkexecTest, LinksToAnyPath) {
    standIn("exec \"$@\"");
    PosixShell shell("");
    for (auto const* name :
         {"plain", "it's", "a \"quote\"", "back\\slash", "new\nline", "$(touch x)`y`", "b\xff"}) {
        auto const tool = folder.write(std::string(name) + "/taliro", "").string();
        auto const link = (folder / "link").string();
        auto const command = "ln -sfn " + CLIInstaller::quoted(tool) + " " + CLIInstaller::quoted(link);
        EXPECT_EQ(shell.runShell(command), 0);
        EXPECT_EQ(shell.resolvingSymlinks(link), tool);
        std::filesystem::remove(link);

        std::string escaped;
        for (char letter : command)
            escaped += letter == '\\' || letter == '"' ? std::string("\\") + letter : std::string(1, letter);
        ASSERT_TRUE(run(escaped));
        EXPECT_EQ(shell.resolvingSymlinks(link), tool);
    }
}

TEST_F(PkexecTest, AShellThatTalksDoesNotBlock) {
    PosixShell shell(folder.path());
    EXPECT_EQ(
        shell.runShell("i=0; while [ $i -lt 3000 ]; do echo 'a line of text' >&2; echo x; i=$((i+1)); done"),
        0);
    EXPECT_EQ(shell.runShell("exit 9"), 9);
    EXPECT_FALSE(shell.bundledResource("taliro"));
    folder.write("taliro", "");
    EXPECT_EQ(shell.bundledResource("taliro"), (folder / "taliro").string());
    std::filesystem::create_symlink("gone", folder / "dangling");
    EXPECT_EQ(shell.resolvingSymlinks((folder / "dangling").string()), "gone");
}

} // namespace
} // namespace taliro::testing
