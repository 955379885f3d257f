#include "platform/linux/AutostartLoginItems.h"

#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace taliro::testing {
namespace {

using Status = LoginItemStatus;

/// A settings folder of the test's own, in a session of Xfce.
struct AutostartTest : ::testing::Test {
    TemporaryFolder folder;
    std::filesystem::path const entry = folder / "autostart/com.taliro.Taliro.desktop";
    std::string const program = makeProgram("it's \"here\" \\ now/$x `y`/Taliro");
    AutostartLoginItems items = (useFolder(), AutostartLoginItems(program));

    void useFolder() const {
        ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
        ::setenv("XDG_CURRENT_DESKTOP", "XFCE", 1);
    }
    ~AutostartTest() override {
        ::unsetenv("XDG_CONFIG_HOME");
        ::unsetenv("XDG_CURRENT_DESKTOP");
    }
    /// A program that leaves a file `started` beside itself.
    std::string makeProgram(std::string const& name) const {
        auto const file = folder.write(name, "#!/bin/sh\ntouch \"${0%/*}/started\"\n");
        ::chmod(file.c_str(), 0755);
        return file;
    }
    void append(std::string const& line) const { std::ofstream(entry, std::ios::app) << line << '\n'; }
    /// Whether `command` starts the program.
    static bool starts(std::string const& program, std::string const& command) {
        auto const mark = std::filesystem::path(program).parent_path() / "started";
        std::filesystem::remove(mark);
        EXPECT_EQ(std::system(command.c_str()), 0);
        return waitUntil([&] { return std::filesystem::exists(mark); });
    }
    /// As a session of the Openbox window manager does, taken for Xfce's.
    static constexpr char session[] = "for session in /usr/lib/*/openbox-xdg-autostart; do "
                                      "XDG_CONFIG_DIRS=/nowhere /usr/bin/python3 $session XFCE; done";
};

TEST_F(AutostartTest, WhatTheDesktopMadeOfTheEntryIsItsState) {
    EXPECT_EQ(items.status(), Status::notRegistered);
    struct {
        char const* line;
        Status status;
    } const cases[]{
        {"Hidden=false", Status::enabled},
        {"OnlyShowIn=GNOME;XFCE;", Status::enabled},
        {"Hidden=true", Status::requiresApproval},
        {"Hidden = true ", Status::requiresApproval},
        {"X-GNOME-Autostart-enabled=false", Status::requiresApproval},
        {"OnlyShowIn=GNOME;", Status::requiresApproval},
        {"NotShowIn=XFCE;", Status::requiresApproval},
        {"[Desktop Action x]\nHidden=true", Status::enabled},
        {"Exec=/nowhere/Taliro", Status::notFound},
        {"no entry", Status::notFound},
    };
    for (auto const& one : cases) {
        ASSERT_TRUE(items.registerItem());
        EXPECT_EQ(items.status(), Status::enabled);
        append(one.line);
        EXPECT_EQ(items.status(), one.status) << one.line;
    }
    std::filesystem::remove(entry);
    std::filesystem::create_directory(entry);
    EXPECT_EQ(items.status(), Status::unknown);
    EXPECT_FALSE(items.unregisterItem());
    auto const failed = items.registerItem();
    EXPECT_FALSE(failed || failed.error().empty());
}

TEST_F(AutostartTest, StartsTheProgramWhateverItsPath) {
    ASSERT_TRUE(items.registerItem());
    EXPECT_EQ(std::system(("desktop-file-validate '" + entry.string() + "'").c_str()), 0);
    EXPECT_TRUE(starts(program, "gio launch '" + entry.string() + "'"));
    EXPECT_TRUE(items.unregisterItem());
    EXPECT_FALSE(std::filesystem::exists(entry));
}

TEST_F(AutostartTest, FollowsTheProgramWhenItIsMoved) {
    ASSERT_TRUE(items.registerItem());
    append("X-Note=kept");
    auto const before = contentsOf(entry);
    auto const moved = makeProgram("it's moved/Taliro");
    AutostartLoginItems another(moved);
    EXPECT_EQ(contentsOf(entry), before) << "the program it starts is still there";

    std::filesystem::remove(program);
    AutostartLoginItems following(moved);
    EXPECT_EQ(following.status(), Status::enabled);
    EXPECT_NE(contentsOf(entry).find("X-Note=kept"), std::string::npos);
    EXPECT_TRUE(starts(moved, session));
}

} // namespace
} // namespace taliro::testing
