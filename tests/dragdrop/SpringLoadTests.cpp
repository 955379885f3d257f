#include "dragdrop/SpringLoad.h"

#include "support/HandQueue.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

/// A folder row in a listing of /shown.
struct SpringLoadTest : ::testing::Test {
    HandQueue clock;
    SpringLoad spring{clock};
    Url shown = Url::file("/shown/");
    Url folder = Url::file("/shown/inner/");
    bool parentTargeted = false;
    int opened = 0;

    void enter(bool singleStage = false) { enter(folder, singleStage); }
    void enter(Url const& into, bool singleStage) {
        spring.enter({.folder = into,
                      .singleStage = singleStage,
                      .parentTargeting = [this](bool targeted) { parentTargeted = targeted; },
                      .onOpen = [this] { ++opened; },
                      .onLookChanged = {}});
    }
    std::pair<double, double> look() const { return {spring.fillOpacity(), spring.strokeOpacity()}; }
};

TEST_F(SpringLoadTest, StagesComeToTheMillisecond) {
    struct Moment {
        std::chrono::milliseconds at;
        double fill, stroke;
        int opened;
    };
    Moment const twoStages[] = {{0ms, 0, 0, 0},       {749ms, 0, 0, 0},       {750ms, 0.15, 1, 0},
                                {1249ms, 0.15, 1, 0}, {1250ms, 0.15, 0.2, 0}, {1349ms, 0.15, 0.2, 0},
                                {1350ms, 0.15, 1, 0}, {1449ms, 0.15, 1, 0},   {1450ms, 0, 0, 1},
                                {10000ms, 0, 0, 1}};
    Moment const singleStage[] = {{0ms, 0, 0, 0},      {749ms, 0, 0, 0},    {750ms, 0.02, 0, 0},
                                  {849ms, 0.02, 0, 0}, {850ms, 0.08, 0, 0}, {949ms, 0.08, 0, 0},
                                  {950ms, 0, 0, 1},    {10000ms, 0, 0, 1}};
    auto const check = [&](auto const& moments, bool single) {
        opened = 0;
        enter(single);
        auto now = 0ms;
        for (auto const& moment : moments) {
            clock.advance(moment.at - now);
            now = moment.at;
            EXPECT_EQ(look(), std::pair(moment.fill, moment.stroke)) << single << " at " << now.count();
            EXPECT_EQ(opened, moment.opened) << single << " at " << now.count();
        }
        EXPECT_TRUE(parentTargeted) << "the drag is still over the listing";
        spring.exit();
        EXPECT_FALSE(parentTargeted);
    };
    check(twoStages, false);
    check(singleStage, true);
}

TEST_F(SpringLoadTest, LeavingAtAnyMomentCancelsEverything) {
    for (auto const moment : {0ms, 300ms, 750ms, 1000ms, 1300ms, 1400ms}) {
        enter();
        clock.advance(moment);
        spring.exit();
        EXPECT_EQ(look(), std::pair(0.0, 0.0));
        clock.advance(5s);
        EXPECT_EQ(opened, 0) << moment.count();
        EXPECT_FALSE(spring.drop(shown)) << "the drag is elsewhere";
    }
}

TEST_F(SpringLoadTest, EnteringAnotherRowStartsAnew) {
    enter();
    clock.advance(700ms);
    enter(Url::file("/shown/other/"), false);
    clock.advance(700ms);
    EXPECT_FALSE(spring.hovering());
    EXPECT_TRUE(parentTargeted);
    clock.advance(50ms);
    EXPECT_TRUE(spring.hovering());
}

TEST_F(SpringLoadTest, ADropGoesIntoTheRowOnceItIsTheTarget) {
    struct Case {
        std::chrono::milliseconds after;
        bool singleStage;
        Url target;
    };
    Case const cases[] = {{300ms, false, shown}, {749ms, true, shown},    {800ms, false, folder},
                          {800ms, true, folder}, {1300ms, false, folder}, {2s, false, shown}};
    for (auto const& [after, singleStage, target] : cases) {
        enter(singleStage);
        clock.advance(after);
        EXPECT_EQ(spring.drop(shown), target) << after.count();
        EXPECT_FALSE(parentTargeted);
        auto const before = opened;
        clock.advance(5s);
        EXPECT_EQ(opened, before) << "a drop ends the spring";
    }
}

TEST_F(SpringLoadTest, OnlyFoldersOfTheFileSystemTakeDrops) {
    for (auto const* address : {"taliro:///recents", "taliro:///recents/", "file:///shown/file.txt"}) {
        enter(*Url::parse(address), false);
        EXPECT_FALSE(spring.isEntered()) << address;
        EXPECT_FALSE(parentTargeted) << address;
        EXPECT_FALSE(spring.drop(shown)) << address;
    }
    enter();
    EXPECT_FALSE(spring.drop(*Url::parse("taliro:///recents")))
        << "before the first stage, over a list of recents";
}

TEST_F(SpringLoadTest, OpeningMayDestroyTheRow) {
    auto doomed = std::make_unique<SpringLoad>(clock);
    doomed->enter({.folder = folder,
                   .singleStage = true,
                   .parentTargeting = {},
                   .onOpen = [&] { doomed.reset(); },
                   .onLookChanged = {}});
    clock.advance(1s);
    EXPECT_FALSE(doomed);
}

} // namespace
} // namespace taliro::testing
