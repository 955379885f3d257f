#include "platform/linux/FilePreviews.h"

#include "platform/linux/ImageReading.h"
#include "platform/linux/MimeTypeCatalog.h"
#include "support/HandQueue.h"
#include "support/SampleFiles.h"
#include "support/TemporaryFolder.h"

#include <thread>

namespace taliro {
namespace {

using namespace testing;
using namespace std::chrono_literals;

struct Previews : ::testing::Test {
    TemporaryFolder folder;
    HandQueue queue;
    MimeTypeCatalog types;
    FilePreviews previews{queue, types, {.renderer = TALIRO_RENDERER, .player = TALIRO_PLAYER}};

    template <typename Condition>
    bool waitFor(Condition const& condition) {
        for (auto const end = std::chrono::steady_clock::now() + 20s;
             std::chrono::steady_clock::now() < end;) {
            queue.turn();
            if (condition())
                return true;
            std::this_thread::sleep_for(1ms);
        }
        return false;
    }
    std::optional<PagePicture> page(std::filesystem::path const& path, int number, int side) {
        std::optional<std::optional<PagePicture>> answer;
        auto const asked =
            previews.page({Url::file(path.string()), number, side, side},
                          [&](std::optional<PagePicture> const& picture) { answer = picture; });
        EXPECT_TRUE(waitFor([&] { return answer.has_value(); })) << path;
        return answer.value_or(std::nullopt);
    }
    std::optional<TextPreview> text(std::filesystem::path const& path, std::size_t limit) {
        std::optional<std::optional<TextPreview>> answer;
        auto const asked = previews.text(Url::file(path.string()), limit,
                                         [&](std::optional<TextPreview> const& text) { answer = text; });
        EXPECT_TRUE(waitFor([&] { return answer.has_value(); })) << path;
        return answer.value_or(std::nullopt);
    }
    ContentSummary summary(std::filesystem::path const& path, bool isFolder) {
        ContentSummary last;
        auto const asked = previews.summary(Url::file(path.string(), isFolder),
                                            [&](ContentSummary const& summary) { last = summary; });
        EXPECT_TRUE(waitFor([&] { return last.finished; })) << path;
        return last;
    }
};

TEST_F(Previews, GiveEachKindItsForm) {
    std::pair<char const*, PreviewKind> const cases[] = {
        {"a.jpg", PreviewKind::image},   {"a.svg", PreviewKind::image},   {"a.otf", PreviewKind::image},
        {"a.pdf", PreviewKind::pages},   {"a.txt", PreviewKind::text},    {"a.py", PreviewKind::text},
        {"a.md", PreviewKind::markdown}, {"a.zip", PreviewKind::archive}, {"a.tar.xz", PreviewKind::archive},
        {"a.tar", PreviewKind::archive}, {"a.mp3", PreviewKind::sound},   {"a.mkv", PreviewKind::film},
        {"a.odt", PreviewKind::other},   {"nothing", PreviewKind::text},  {"a.json", PreviewKind::text},
    };
    for (auto const& [name, kind] : cases)
        EXPECT_EQ(previews.previewKind(Url::file(std::string("/x/") + name), false), kind) << name;
    EXPECT_EQ(previews.previewKind(Url::file("/x/a.txt", true), true), PreviewKind::folder);
}

TEST_F(Previews, ShowPagesAndPictures) {
    auto const image = page(folder.write("a.jpg", photo(landscape(400, 200), 6)), 0, 100);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->picture.width, 50);
    EXPECT_EQ(image->fullWidth, 200);
    EXPECT_EQ(image->fullHeight, 400);

    auto const path = folder.write("a.pdf", pdf(3));
    auto const second = page(path, 1, 400);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->pages, 3);
    EXPECT_EQ(second->picture.height, 400);
    EXPECT_FALSE(page(path, 3, 400));
    EXPECT_FALSE(page(path, -1, 400));
    EXPECT_TRUE(page(folder.write("a.svg", svg()), 0, 300));
    EXPECT_FALSE(page(folder.write("b.jpg", ""), 0, 300));
}

TEST_F(Previews, ReadTextUpToTheLimit) {
    auto const path = folder.write("a.txt", "0123456789");
    EXPECT_EQ(text(path, 4)->text, "0123");
    EXPECT_TRUE(text(path, 4)->truncated);
    EXPECT_FALSE(text(path, 10)->truncated);
    EXPECT_FALSE(text(folder / "missing", 10));
    EXPECT_EQ(text(folder.write("empty.txt", ""), 10)->text, "");
}

TEST_F(Previews, CountFoldersAndArchives) {
    folder.write("tree/one/a.txt", "12345");
    folder.write("tree/one/b.txt", "123");
    folder.write("tree/two/c.txt", "1");
    std::filesystem::create_directory_symlink(folder.path(), folder / "tree/back");
    auto const tree = summary(folder / "tree", true);
    EXPECT_EQ(tree.files, 4);
    EXPECT_EQ(tree.folders, 2);
    EXPECT_GE(tree.bytes, 9);
    EXPECT_THAT(tree.names, ::testing::ElementsAre("back", "one", "two"));

    auto const command = "cd " + (folder / "tree").string() + " && rm back && tar czf ../a.tar.gz one two";
    ASSERT_EQ(std::system(command.c_str()), 0);
    auto const archive = summary(folder / "a.tar.gz", false);
    EXPECT_EQ(archive.files, 3);
    EXPECT_EQ(archive.folders, 2);
    EXPECT_EQ(archive.bytes, 9);
    EXPECT_FALSE(archive.damaged);
    EXPECT_THAT(archive.names, ::testing::UnorderedElementsAre("one", "two"));

    auto const bytes = contentsOf(folder / "a.tar.gz");
    EXPECT_TRUE(summary(folder.write("cut.tar.gz", bytes.substr(0, bytes.size() / 2)), false).damaged);
    EXPECT_TRUE(summary(folder.write("noise.zip", std::string(4000, '\x5A')), false).damaged);
}

struct Playing : Previews {
    using Phase = PlaybackState::Phase;
    PlaybackState state;
    Picture frame;
    int reports = 0;

    std::unique_ptr<Playback> open(std::filesystem::path const& path) {
        return previews.playback(Url::file(path.string()), 32, 32,
                                 {.changed =
                                      [this](PlaybackState const& now) {
                                          state = now;
                                          ++reports;
                                      },
                                  .frame = [this](Picture const& picture) { frame = picture; }});
    }
    bool isAt(Phase phase) {
        return waitFor([&] { return state.phase == phase; });
    }
    bool shows(QRgb wanted) {
        return waitFor([&] {
            return !frame.isEmpty() && std::abs(qRed(frame.pixels[0]) - qRed(wanted)) < 10 &&
                   std::abs(qBlue(frame.pixels[0]) - qBlue(wanted)) < 10;
        });
    }
};

TEST_F(Playing, ASoundPlaysSeeksAndStartsAnew) {
    auto const sound = open(folder.write("a \xFF.wav", wav(20)));
    ASSERT_TRUE(isAt(Phase::paused));
    EXPECT_EQ(state.duration, 20s);
    sound->setMuted(true);
    EXPECT_TRUE(waitFor([&] { return state.isMuted; }));
    sound->play();
    EXPECT_TRUE(isAt(Phase::playing));
    EXPECT_TRUE(waitFor([&] { return state.position > 0ms; }));
    sound->pause();
    EXPECT_TRUE(isAt(Phase::paused));
    for (auto const position : {3s, 7s, 12s, 19s})
        sound->seek(position);
    EXPECT_TRUE(waitFor([&] { return state.position >= 19s; })) << "the last one counts";
    sound->play();
    EXPECT_TRUE(waitFor([&] { return state.position == state.duration && state.phase == Phase::paused; }));
    sound->play();
    EXPECT_TRUE(waitFor([&] { return state.phase == Phase::playing && state.position < 15s; }));
}

TEST_F(Playing, AFilmShowsWhereItIsWithinItsBox) {
    auto const film = open(folder.write("a.avi", testing::film(20)));
    ASSERT_TRUE(isAt(Phase::paused));
    EXPECT_TRUE(shows(qRgb(255, 0, 0)));
    EXPECT_EQ(frame.width, 32);
    EXPECT_EQ(frame.height, 24);
    film->seek(15s);
    EXPECT_TRUE(shows(qRgb(0, 0, 255)));
    EXPECT_EQ(state.duration, 20s);
}

TEST_F(Playing, WhatCannotBePlayedSaysSoAndWhatIsLeftStaysSilent) {
    for (auto const* name : {"noise.mp3", "noise.mkv"}) {
        state = {};
        auto const broken = open(folder.write(name, std::string(4000, '\x5A')));
        EXPECT_TRUE(isAt(Phase::failed)) << name;
    }
    FilePreviews without{queue, types, {.renderer = {}, .player = "/nonexistent/player"}};
    auto const path = folder.write("a.wav", wav(2));
    state = {};
    auto const silent =
        without.playback(Url::file(path.string()), 32, 32,
                         {.changed = [&](PlaybackState const& now) { state = now; }, .frame = {}});
    EXPECT_TRUE(isAt(Phase::failed));
    auto const before = reports;
    open(path).reset();
    queue.turn();
    EXPECT_EQ(reports, before);
}

TEST_F(Previews, TakenBackStayAway) {
    bool called = false;
    {
        auto const asked =
            previews.summary(Url::file("/usr", true), [&](ContentSummary const&) { called = true; });
    }
    EXPECT_TRUE(text(folder.write("a.txt", "later"), 10));
    queue.turn();
    EXPECT_FALSE(called);
}

} // namespace
} // namespace taliro
