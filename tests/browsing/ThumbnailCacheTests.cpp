#include "browsing/ThumbnailCache.h"

#include "support/FakePlatform.h"

namespace taliro {
namespace {

using namespace testing;

Picture pictureOf(int width, int height) {
    return {width, height, std::shared_ptr<std::uint32_t const[]>(new std::uint32_t[1])};
}

struct Thumbnails : ::testing::Test {
    FakePlatform desktop;
    ThumbnailCache cache{desktop.platform};
    Url const file = Url::file("/tmp/a.png");
    int shown = 0;
    void load(double size = 64) {
        cache.load(file, size, [this](Picture const&) { ++shown; });
    }
};

TEST_F(Thumbnails, KeysAreAddressAndWholeSize) {
    EXPECT_EQ(ThumbnailCache::key(file, 64), "file:///tmp/a.png|64");
    EXPECT_EQ(ThumbnailCache::key(Url::file("/a b"), 63.9), "file:///a%20b|63");
}

TEST_F(Thumbnails, AreAskedForOnceAtTheScreensScaleAndKept) {
    desktop.screens.screens.front().scale = 1.5;
    load();
    load(); // dropped: the first one gets the picture
    ASSERT_EQ(desktop.thumbnailer.requests, 1);
    EXPECT_EQ(desktop.thumbnailer.pending.begin()->second.request.width, 96);
    EXPECT_FALSE(cache.cached(file, 64));
    desktop.thumbnailer.answerAll(pictureOf(96, 40));
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(cache.cached(file, 64)->height, 40);
    EXPECT_FALSE(cache.cached(file, 65));
    load();
    EXPECT_EQ(shown, 2);
    EXPECT_EQ(desktop.thumbnailer.requests, 1);
    cache.noteModified(file, Date{});
    EXPECT_FALSE(cache.cached(file, 64)) << "of an unknown time";
    load();
    desktop.thumbnailer.answerAll(pictureOf(96, 40));
    cache.noteModified(file, Date{});
    EXPECT_TRUE(cache.cached(file, 64));
    cache.noteModified(file, Date{std::chrono::seconds(1)});
    EXPECT_FALSE(cache.cached(file, 64));

    desktop.screens.screens.clear();
    load(10);
    ASSERT_FALSE(desktop.thumbnailer.pending.empty());
    EXPECT_EQ(desktop.thumbnailer.pending.begin()->second.request.width, 20);
}

TEST_F(Thumbnails, ThatFailOrAreTakenBackCanBeAskedForAgain) {
    load();
    desktop.thumbnailer.answerAll(std::nullopt);
    EXPECT_EQ(shown, 0);
    load();
    EXPECT_EQ(desktop.thumbnailer.requests, 2);
    cache.cancelExcept({file});
    EXPECT_EQ(desktop.thumbnailer.pending.size(), 1u);
    cache.cancelExcept({});
    EXPECT_TRUE(desktop.thumbnailer.pending.empty());
    load();
    desktop.thumbnailer.answerAll(pictureOf(1, 1));
    EXPECT_EQ(shown, 1);
}

TEST(FittedImage, FillsTheBoxButForItsMargin) {
    struct {
        Size image, box, expected;
    } const cases[] = {
        {{100, 50}, {212, 212}, {200, 100}}, // grows
        {{400, 800}, {112, 112}, {50, 100}}, // shrinks
        {{0, 0}, {112, 112}, {0, 0}},        {{0, 30}, {112, 112}, {0, 30}}, {{10, 10}, {8, 100}, {0, 0}},
    };
    for (auto const& [image, box, expected] : cases)
        EXPECT_EQ(fittedImage(image, box), expected) << image.width << " in " << box.width;
}

} // namespace
} // namespace taliro
