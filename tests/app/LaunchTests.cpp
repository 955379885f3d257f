// What happens at start and when places are asked for.

#include "app/CommandLine.h"
#include "app/FactoryReset.h"
#include "app/OpenRequest.h"
#include "browsing/BrowserState.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace taliro {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr char shortcutKey[] = "KeyboardShortcuts_togglePicker";

TEST(FactoryReset, RunsEachStepOnce) {
    testing::FakeUserDefaults defaults;
    int shortcuts = 0;
    auto const reset = [&] {
        resetToFactoryDefaultsIfNeeded(defaults, [&] {
            ++shortcuts;
            defaults.setString(shortcutKey, "default");
        });
    };
    defaults.setBoolean("userFavoritesSeeded", true);
    reset();
    EXPECT_TRUE(defaults.boolean("factoryResetMarker_v1"));
    EXPECT_TRUE(defaults.boolean("factoryResetMarker_v3"));
    EXPECT_FALSE(defaults.object("userFavoritesSeeded"));
    EXPECT_EQ(defaults.string(shortcutKey), "default");

    defaults.setBoolean("userFavoritesSeeded", true);
    defaults.setString(shortcutKey, "chosen");
    defaults.writes.clear();
    reset();
    EXPECT_EQ(shortcuts, 1);
    EXPECT_TRUE(defaults.writes.empty());
}

TEST(FactoryReset, KeepsFavoritesThatWereResetBefore) {
    testing::FakeUserDefaults defaults;
    defaults.setBoolean("factoryResetMarker_v1", true);
    defaults.setBoolean("syncFavoritesWithFinder", true);
    defaults.setString(shortcutKey, "chosen");
    resetToFactoryDefaultsIfNeeded(defaults, [&] { EXPECT_FALSE(defaults.object(shortcutKey)); });
    EXPECT_TRUE(defaults.boolean("syncFavoritesWithFinder"));
    EXPECT_TRUE(defaults.boolean("factoryResetMarker_v3"));
}

class OpenRequest : public ::testing::Test {
protected:
    OpenRequest() : home(platform.fileManager.addFolder("/home/mira")), browser(home) {}
    void open(std::vector<Url> const& urls) { showRequested(urls, browser, platform.fileManager); }

    testing::FakePlatform platform;
    Url home;
    BrowserState browser;
};

TEST_F(OpenRequest, ShowsAFileSelectedInItsFolder) {
    auto const folder = platform.fileManager.addFolder("/home/mira/Reports");
    auto const file = platform.fileManager.addFile("/home/mira/Reports/may.odt");
    open({file});
    EXPECT_EQ(browser.currentURL.get(), folder);
    EXPECT_EQ(browser.selection.get(), file);
    EXPECT_EQ(browser.selectedURLs.get(), std::unordered_set<Url>{file});
    EXPECT_THAT(browser.backStack(), ElementsAre(home));
}

TEST_F(OpenRequest, ShowsAFolderWithNothingSelected) {
    auto const folder = platform.fileManager.addFolder("/home/mira/Reports");
    browser.selectSingle(folder);
    open({Url::file("/home/mira/Reports", false)});
    EXPECT_EQ(browser.currentURL.get(), folder);
    EXPECT_FALSE(browser.selection.get());
}

TEST_F(OpenRequest, LeavesHistoryAloneInTheFolderShown) {
    open({home});
    EXPECT_THAT(browser.backStack(), ElementsAre());
}

TEST_F(OpenRequest, GoesThroughSeveralInTurn) {
    auto const first = platform.fileManager.addFolder("/a");
    auto const second = platform.fileManager.addFolder("/b");
    open({first, Url::file("/gone"), second});
    EXPECT_EQ(browser.currentURL.get(), second);
    EXPECT_THAT(browser.backStack(), ElementsAre(home, first));
}

TEST_F(OpenRequest, LooksOnlyAtAnAddressesPath) {
    auto const folder = platform.fileManager.addFolder("/a b");
    open({*Url::parse("taliro:///recents"), *Url::parse("https://example.org/a%20b")});
    EXPECT_EQ(browser.currentURL.get(), folder);
}

TEST(CommandLine, TakesPathsFromTheCallersFolder) {
    struct {
        std::vector<char const*> arguments;
        std::vector<Url> urls;
    } const cases[]{
        {{}, {}},
        {{"notes.md"}, {Url::file("/home/mira/notes.md")}},
        {{"./a/../b/"}, {Url::file("/home/mira/b/")}},
        {{".", ".."}, {Url::file("/home/mira"), Url::file("/home")}},
        {{"/etc", "--", "-dash"}, {Url::file("/etc"), Url::file("/home/mira/-dash")}},
        {{"file:///a%20b"}, {Url::file("/a b")}},
        {{"taliro:///recents"}, {*Url::parse("taliro:///recents")}},
    };
    for (auto const& c : cases) {
        auto const line = CommandLine::parse(c.arguments, "/home/mira");
        ASSERT_TRUE(line) << line.error();
        EXPECT_EQ(line->task, CommandLine::Task::run);
        EXPECT_EQ(line->urls, c.urls);
    }
}

TEST(CommandLine, KnowsItsOptions) {
    auto const parse = [](char const* argument) { return CommandLine::parse(std::array{argument}, "/"); };
    EXPECT_EQ(parse("--help")->task, CommandLine::Task::help);
    EXPECT_EQ(parse("--version")->task, CommandLine::Task::version);
    EXPECT_THAT(parse("--frobnicate").error(), HasSubstr("--frobnicate"));
    EXPECT_FALSE(parse(""));
}

} // namespace
} // namespace taliro
