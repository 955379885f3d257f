#include "app/AppSettings.h"

#include "app/LoginItem.h"
#include "browsing/BrowserState.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

struct AppSettingsTest : ::testing::Test {
    FakePlatform fake;
    BrowserState browser{Url::file("/home/mira", true)};
    AppSettings load() { return AppSettings(fake.platform, browser); }
    bool stored(char const* key) { return fake.userDefaults.boolean(key); }
};

TEST_F(AppSettingsTest, AnEmptyStoreGivesTheDefaultsAndWritesNothing) {
    AppSettings settings(fake.platform, browser);
    EXPECT_FALSE(settings.popoverMode.get());
    EXPECT_FALSE(settings.showInDock.get());
    EXPECT_FALSE(settings.showWindowAtCursorOnHotkey.get());
    EXPECT_FALSE(settings.startAtLogin.get());
    EXPECT_TRUE(settings.showMenuBarIcon.get());
    EXPECT_TRUE(settings.closePopoverOnOutsideClick.get());
    EXPECT_EQ(settings.popoverWidth.get(), 720);
    EXPECT_EQ(settings.popoverHeight.get(), 460);
    EXPECT_FALSE(settings.miniMode.get());
    EXPECT_FALSE(settings.searchHidden.get());
    EXPECT_TRUE(fake.userDefaults.writes.empty());
}

TEST_F(AppSettingsTest, StoredSizesDecideTheLayoutUnlessTheyAreNone) {
    struct Case {
        double stored, width;
        bool mini, hidden;
    };
    for (auto const& [stored, width, mini, hidden] :
         {Case{0, 720, false, false}, Case{-3, 720, false, false}, Case{600, 600, false, true},
          Case{400, 400, true, true}, Case{2000, 2000, false, false}}) {
        fake.userDefaults.setReal("popoverWidth", stored);
        AppSettings settings(fake.platform, browser);
        EXPECT_EQ(settings.popoverWidth.get(), width) << stored;
        EXPECT_EQ(settings.miniMode.get(), mini) << stored;
        EXPECT_EQ(settings.searchHidden.get(), hidden) << stored;
    }
}

TEST_F(AppSettingsTest, APopoverAndItsIconKeepInStep) {
    AppSettings settings(fake.platform, browser);
    settings.setPopoverMode(true);
    settings.setShowMenuBarIcon(false);
    EXPECT_FALSE(settings.popoverMode.get());
    EXPECT_FALSE(settings.showMenuBarIcon.get());
    EXPECT_FALSE(stored("popoverMode"));
    EXPECT_FALSE(stored("showMenuBarIcon"));

    settings.setPopoverMode(true);
    EXPECT_TRUE(settings.showMenuBarIcon.get());
    EXPECT_TRUE(stored("popoverMode"));
    EXPECT_TRUE(stored("showMenuBarIcon"));
}

TEST_F(AppSettingsTest, TheLayoutFollowsTheWidthStrictlyBelowItsThresholds) {
    AppSettings settings(fake.platform, browser);
    for (auto const& [width, mini, hidden] :
         {std::tuple{515.9, true, true}, {516.0, false, true}, {699.9, false, true}, {700.0, false, false}}) {
        settings.updateLayoutMode(width);
        EXPECT_EQ(settings.miniMode.get(), mini) << width;
        EXPECT_EQ(settings.searchHidden.get(), hidden) << width;
    }
}

TEST_F(AppSettingsTest, HidingTheSearchFieldEndsTheSearchOnce) {
    AppSettings settings(fake.platform, browser);
    browser.searchText = std::string("pdf");
    settings.updateLayoutMode(650);
    EXPECT_EQ(browser.searchText.get(), "");
    browser.searchText = std::string("kept");
    settings.updateLayoutMode(500);
    EXPECT_EQ(browser.searchText.get(), "kept");
}

TEST_F(AppSettingsTest, TheLoginServiceOutweighsTheStoredValue) {
    fake.userDefaults.setBoolean("startAtLogin", true);
    for (auto const& [status, expected] : {std::pair{LoginItemStatus::notRegistered, false},
                                           {LoginItemStatus::enabled, true},
                                           {LoginItemStatus::requiresApproval, true},
                                           {LoginItemStatus::notFound, false},
                                           {LoginItemStatus::unknown, true}}) {
        fake.loginItems.current = status;
        AppSettings settings(fake.platform, browser);
        EXPECT_EQ(settings.startAtLogin.get(), expected);
    }
}

TEST_F(AppSettingsTest, TheLoginItemIsTouchedOnlyWhereThatChangesSomething) {
    struct Case {
        LoginItemStatus status;
        bool enable;
        int calls;
    };
    for (auto const& [status, enable, calls] :
         {Case{LoginItemStatus::enabled, true, 0}, Case{LoginItemStatus::requiresApproval, true, 1},
          Case{LoginItemStatus::notRegistered, false, 0}, Case{LoginItemStatus::notFound, false, 0},
          Case{LoginItemStatus::requiresApproval, false, 1}}) {
        fake.loginItems = {};
        fake.loginItems.current = status;
        LoginItem::setEnabled(fake.platform, enable);
        EXPECT_EQ(fake.loginItems.calls, calls);
    }
    EXPECT_TRUE(fake.alerts.warnings.empty());

    fake.loginItems = {};
    fake.loginItems.failure = "The disk is full.";
    AppSettings settings(fake.platform, browser);
    settings.setStartAtLogin(true);
    ASSERT_EQ(fake.alerts.warnings.size(), 1u);
    EXPECT_EQ(fake.alerts.warnings[0],
              std::pair(std::string("Couldn't enable Start at Login"), std::string("The disk is full.")));
    EXPECT_TRUE(settings.startAtLogin.get());
}

} // namespace
} // namespace taliro::testing
