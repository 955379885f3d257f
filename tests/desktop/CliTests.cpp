// The command-line tool and the program that it opens places in.

#include "desktop/Desktop.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

struct Run {
    std::optional<int> status;
    std::string output;
};

Run runTool(Desktop& desktop, std::vector<std::string> const& arguments,
            std::filesystem::path const& folder = "/", bool hasDisplay = true) {
    std::vector<std::string> command{TALIRO_TOOL};
    command.insert(command.end(), arguments.begin(), arguments.end());
    auto const log = desktop.log("tool");
    std::filesystem::remove(log);
    auto environment = desktop.environment();
    if (!hasDisplay)
        environment.erase("DISPLAY");
    Process process(command, environment, log, folder);
    auto const status = process.waitForExit();
    return {status, contentsOf(log)};
}

/// The program that the tool started, which outlives the tool.
Accessible startedProgram(Desktop& desktop) {
    uint pid = 0;
    EXPECT_TRUE(waitFor([&] {
        QDBusReply<uint> const owner =
            desktop.bus().interface()->servicePid(QStringLiteral("com.taliro.Taliro"));
        pid = owner.isValid() ? owner.value() : 0;
        return pid != 0;
    }));
    return desktop.accessibility().application(static_cast<int>(pid));
}

TEST(Tool, StartsTheProgramAndHandsItEveryKindOfPath) {
    Desktop desktop;
    struct {
        char const* folder;
        char const* inside;
    } const cases[] = {
        {"two words", "one.txt"},      {"line\nbreak", "two.txt"}, {"not \xff\xfe text", "three.txt"},
        {"100% #?&'\"$;", "four.txt"}, {"-dash", "five.txt"},
    };
    for (auto const& one : cases)
        desktop.write(std::string(one.folder) + "/" + one.inside);
    // Several at once: the last stays shown, here the same as the first.
    auto const first = runTool(desktop, {cases[0].folder, cases[1].folder, cases[2].folder, cases[0].folder},
                               desktop.home());
    EXPECT_EQ(first.status, 0) << first.output;
    auto const program = startedProgram(desktop);
    program.expect("", cases[0].inside);
    for (auto const& one : cases) {
        EXPECT_EQ(runTool(desktop, {"--", one.folder}, desktop.home()).status, 0) << one.folder;
        program.expect("", one.inside);
    }
    EXPECT_EQ(runTool(desktop, {"file://" + (desktop.home() / "two%20words/one.txt").string()}).status, 0);
    EXPECT_TRUE(waitFor([&] {
        return static_cast<bool>(program.find([](Accessible const& one) {
            return one.name() == "one.txt" && one.has(Accessible::State::selected);
        }));
    })) << "a file is selected in its folder";
}

TEST(Tool, WithoutAPathBringsTheProgramBack) {
    Desktop desktop;
    Program program(desktop);
    auto& display = desktop.display();
    display.expectWindow("panel");
    program.tree().expect("push button", "Close").act();
    EXPECT_TRUE(display.waitUntilGone("panel"));
    EXPECT_EQ(runTool(desktop, {}).status, 0);
    display.expectWindow("panel");
}

TEST(Tool, SaysInOneLineWhatItCannotOpen) {
    Desktop desktop({.windowManager = false});
    EXPECT_EQ(runTool(desktop, {"--version"}).status, 0);
    EXPECT_TRUE(runTool(desktop, {"--help"}).output.starts_with("Usage: taliro"));
    EXPECT_EQ(runTool(desktop, {}, "/", false).output,
              "taliro: no display to show anything on; is DISPLAY set?\n");
    for (auto const& arguments : std::vector<std::vector<std::string>>{{"missing"},
                                                                       {"http://example.org/"},
                                                                       {"file://elsewhere.example/x"},
                                                                       {"--frobnicate"},
                                                                       {"/", "missing"}}) {
        auto const run = runTool(desktop, arguments);
        EXPECT_EQ(run.status, 1) << arguments.back();
        EXPECT_TRUE(run.output.starts_with("taliro: ")) << run.output;
        EXPECT_EQ(std::ranges::count(run.output, '\n'), 1) << run.output;
    }
}

} // namespace
} // namespace taliro::testing
