#include "browsing/GoToPath.h"

#include "browsing/BrowserState.h"
#include "browsing/PathCompletion.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

struct GoToPathTest : ::testing::Test {
    FakePlatform fake;
    BrowserState browser{Url::file("/home/mira", true)};
    GoToPath bar{fake.platform, browser};

    GoToPathTest() {
        for (auto const* folder :
             {"Documents", "documents old", "Downloads", ".Doc-hidden", "Documents/Taxes"})
            fake.fileManager.addFolder(std::string("/home/mira/") + folder);
        fake.fileManager.addFile("/home/mira/Docs");
    }
    std::vector<std::string> offered(std::string_view typed) {
        std::vector<std::string> names;
        for (auto const& url : PathCompletion::suggestions(fake.platform, typed))
            names.push_back(url.lastPathComponent());
        return names;
    }
    std::vector<std::string> stored() { return *fake.userDefaults.strings("goToPathHistory"); }
};

TEST_F(GoToPathTest, OffersWhatAPathMayGoOnTo) {
    using Names = std::vector<std::string>;
    for (auto const& [typed, names] :
         std::vector<std::pair<std::string, Names>>{{"~/Doc", {"Documents", "documents old"}},
                                                    {"  ~/doC\t", {"Documents", "documents old"}},
                                                    {"~/.", {".Doc-hidden"}},
                                                    {"~/Documents", {"Taxes"}},
                                                    {"~/Documents/", {"Taxes"}},
                                                    {"~/Docs/", {}},
                                                    {"/nowhere/x", {}},
                                                    {"relative", {}},
                                                    {"~", {"Documents", "documents old", "Downloads"}},
                                                    {"/ho", {"home"}}})
        EXPECT_EQ(offered(typed), names) << typed;
}

TEST_F(GoToPathTest, OffersTheFirstEightInNameOrder) {
    for (int i = 0; i < 30; ++i)
        fake.fileManager.addFolder("/home/mira/Documents/" + std::string(1, static_cast<char>('z' - i % 26)) +
                                   std::to_string(i));
    auto const names = offered("~/Documents/");
    ASSERT_EQ(names.size(), 8u);
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_EQ(names.front(), "a25");
}

TEST_F(GoToPathTest, ArrowsMoveTheHighlightAndReturnDescends) {
    bar.open();
    EXPECT_EQ(bar.text.get(), "/home/mira/");
    EXPECT_FALSE(bar.pressUp());
    EXPECT_FALSE(bar.pressReturn());
    EXPECT_TRUE(bar.pressDown());
    EXPECT_TRUE(bar.pressDown());
    EXPECT_TRUE(bar.pressUp());
    EXPECT_EQ(bar.highlighted.get(), std::optional<std::size_t>(0));
    EXPECT_TRUE(bar.pressUp());
    EXPECT_EQ(bar.highlighted.get(), std::nullopt);
    EXPECT_FALSE(bar.pressUp());
    for (int i = 0; i < 9; ++i)
        bar.pressDown();
    EXPECT_EQ(bar.highlighted.get(), std::optional<std::size_t>(2));
    bar.pressUp();
    bar.pressUp();
    EXPECT_TRUE(bar.pressReturn());
    EXPECT_EQ(bar.text.get(), "/home/mira/Documents/");
    EXPECT_EQ(bar.suggestions->size(), 1u);
    EXPECT_EQ(bar.highlighted.get(), std::nullopt);
}

TEST_F(GoToPathTest, CommitGoesRecordsAndCloses) {
    bar.open();
    bar.setText(" ~/Documents \n");
    bar.commit();
    EXPECT_EQ(browser.currentURL.get(), Url::file("/home/mira/Documents", true));
    EXPECT_FALSE(bar.isOpen.get());
    EXPECT_EQ(stored(), std::vector<std::string>{"~/Documents"});

    bar.open();
    for (auto const* wrong : {"~/Docs", "/nowhere", "relative"}) {
        bar.setText(wrong);
        bar.commit();
        EXPECT_TRUE(bar.isOpen.get()) << wrong;
        EXPECT_EQ(bar.text.get(), wrong);
    }
    EXPECT_EQ(fake.alerts.beeps, 3);
    bar.setText("  ");
    bar.commit();
    EXPECT_FALSE(bar.isOpen.get());
    EXPECT_EQ(stored().size(), 1u);
}

TEST_F(GoToPathTest, TheHistoryKeepsTheLatestFiftyOnce) {
    PathHistoryStore history(fake.userDefaults);
    for (int i = 0; i < 51; ++i)
        history.record("/p" + std::to_string(i));
    history.record("/p30");
    auto const paths = stored();
    EXPECT_EQ(paths.size(), 50u);
    EXPECT_EQ(paths.front(), "/p30");
    EXPECT_EQ(std::ranges::count(paths, "/p30"), 1);
    EXPECT_EQ(paths.back(), "/p1");
    EXPECT_EQ(bar.recentPaths().size(), 20u);
    fake.userDefaults.set("goToPathHistory", {std::string("not a list")});
    EXPECT_TRUE(history.combined().empty());
}

} // namespace
} // namespace taliro::testing
