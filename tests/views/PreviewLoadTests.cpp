// Whoever leafs through a folder of photos leaves no work behind: what was passed by is taken back.

#include "browsing/BrowserState.h"
#include "support/FakePlatform.h"
#include "views/InspectorPane.h"
#include "views/QuickLookWindow.h"
#include "views/Theme.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

constexpr int photos = 200;

Url photo(int number) {
    return Url::file("/photos/" + std::to_string(number) + ".jpg");
}

/// The shared objects keep the platform that was there first.
FakePlatform& desktop() {
    static auto* const fake = [] {
        auto* const made = new FakePlatform;
        for (int i = 0; i < photos; ++i)
            made->fileManager.addFile(photo(i).path());
        Platform::install(made->platform);
        Theme::current().install(*qApp);
        return made;
    }();
    return *fake;
}

TEST(Inspector, AsksForTheLastOfManyQuickSelectionsAlone) {
    auto& fake = desktop();
    BrowserState state{Url::file("/photos", true)};
    InspectorPane pane(fake.platform, state);
    pane.show();
    auto const before = fake.thumbnailer.requests;
    for (int i = 0; i < photos; ++i)
        state.selectSingle(photo(i));
    fake.mainQueue.turn();
    EXPECT_EQ(fake.thumbnailer.requests - before, 1) << "within one turn";
    for (int i = 0; i < photos; ++i) {
        state.selectSingle(photo(i));
        fake.mainQueue.turn();
        EXPECT_LE(fake.thumbnailer.pending.size(), 1u);
    }
    ASSERT_EQ(fake.thumbnailer.pending.size(), 1u);
    EXPECT_EQ(fake.thumbnailer.pending.begin()->second.request.file, photo(photos - 1));
}

TEST(QuickLook, TakesBackWhatTheNextItemHasNoUseFor) {
    auto& fake = desktop();
    fake.previews.fileKind = PreviewKind::image;
    QuickLookWindow window(fake.platform);
    for (int i = 0; i < photos; ++i) {
        window.reloadData(QLItem{photo(i)});
        EXPECT_LE(fake.thumbnailer.pending.size(), 1u);
        EXPECT_LE(fake.previews.pagesUnderWay, 1);
    }
    EXPECT_EQ(fake.previews.pagesAsked, photos);
    fake.previews.fileKind = PreviewKind::film;
    window.reloadData(QLItem{photo(0)});
    EXPECT_EQ(fake.previews.pagesUnderWay, 0);
    window.reloadData(std::nullopt);
    EXPECT_TRUE(fake.thumbnailer.pending.empty());
}

} // namespace
} // namespace taliro::testing
