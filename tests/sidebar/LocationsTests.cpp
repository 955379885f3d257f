#include "sidebar/Locations.h"

#include "browsing/BrowserState.h"
#include "platform/Volumes.h"
#include "sidebar/FavoritesStore.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

struct LocationsTest : ::testing::Test {
    FakePlatform desktop;
    BrowserState state{Url::file("/media/Data2/photos/")};
};

TEST_F(LocationsTest, ListsTheVolumesMeantForTheUser) {
    auto const volume = [](char const* path, std::optional<bool> browsable) {
        return Volume{.mountPoint = Url::file(path, true), .isBrowsable = browsable};
    };
    auto named = volume("/media/stick", true);
    named.name = "Holiday photos";
    named.isRemovable = true;
    desktop.volumes.volumes = {volume("/", true), named, volume("/boot", false),
                               volume("/what", std::nullopt), volume("/mnt/disk", true)};
    std::vector<SidebarItem> const expected{
        {"/media/stick", "Holiday photos", "externaldrive", Url::file("/media/stick/")},
        {"/mnt/disk", "disk", "internaldrive", Url::file("/mnt/disk/")},
    };
    EXPECT_EQ(Locations::volumes(desktop.platform), expected);
}

TEST_F(LocationsTest, ChoosesASymbolByWhatIsKnownOfTheVolume) {
    constexpr char connected[] = "externaldrive.connected.to.line.below";
    std::optional<bool> const unknown;
    struct Case {
        std::optional<bool> local, removable, internal;
        char const* symbol;
    };
    Case const cases[]{
        {false, true, true, connected},          {false, unknown, unknown, connected},
        {true, true, true, "externaldrive"},     {unknown, true, false, "externaldrive"},
        {true, false, true, "internaldrive"},    {unknown, unknown, unknown, "internaldrive"},
        {true, unknown, false, "externaldrive"}, {unknown, false, false, "externaldrive"},
    };
    for (auto const& [local, removable, internal, symbol] : cases)
        EXPECT_EQ(
            Locations::symbol(
                {.mountPoint = Url(), .isLocal = local, .isRemovable = removable, .isInternal = internal}),
            symbol);
}

TEST_F(LocationsTest, LeavesAVolumeBeforeEjectingItEvenIfThatFails) {
    desktop.volumes.failure = "target is busy";
    Locations::eject(desktop.platform, state, Url::file("/media/Data/"));
    EXPECT_EQ(state.currentURL.get(), desktop.fileManager.homeDirectory());
    EXPECT_EQ(desktop.volumes.ejected, std::vector{Url::file("/media/Data/")});
    EXPECT_EQ(desktop.alerts.warnings, (std::vector<std::pair<std::string, std::string>>{
                                           {"Couldn't eject “Data”", "target is busy"}}));

    desktop.volumes.failure.clear();
    state.navigate(Url::file("/media/stick/"));
    Locations::eject(desktop.platform, state, Url::file("/media/Data/"));
    EXPECT_EQ(state.currentURL.get(), Url::file("/media/stick/"));
    EXPECT_EQ(desktop.alerts.warnings.size(), 1u);
}

TEST_F(LocationsTest, AsksForAccessOnlyWhereSyncLacksIt) {
    FavoritesStore favorites(desktop.platform);
    desktop.desktopPlaces.places.emplace();
    FinderSync::enable(desktop.platform, favorites);
    EXPECT_TRUE(favorites.syncWithFinder);
    EXPECT_TRUE(desktop.alerts.warnings.empty());

    desktop.desktopPlaces.places.reset();
    desktop.alerts.answer = 1;
    FinderSync::enable(desktop.platform, favorites);
    ASSERT_EQ(desktop.alerts.warnings.size(), 1u);
    EXPECT_EQ(desktop.alerts.warnings[0].first, "Full Disk Access Required");
    EXPECT_TRUE(favorites.finderAccessDenied);

    FinderSync::turnOff(favorites);
    EXPECT_FALSE(favorites.syncWithFinder || favorites.finderAccessDenied);
}

} // namespace
} // namespace taliro::testing
