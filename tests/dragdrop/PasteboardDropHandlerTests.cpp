#include "dragdrop/PasteboardDropHandler.h"

#include "browsing/DirectoryWatcher.h"
#include "dragdrop/FileDrag.h"
#include "dragdrop/FileDropHandler.h"
#include "dragdrop/InAppDropLatch.h"
#include "dragdrop/ProgressCenter.h"
#include "dragdrop/ToastCenter.h"
#include "support/FakePasteboard.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

struct PasteboardDropHandlerTest : ::testing::Test {
    FakePlatform fake;
    ToastCenter toasts{fake.mainQueue};
    ProgressCenter progress{fake.mainQueue};
    FileDropHandler files{fake.platform, toasts, progress};
    PasteboardDropHandler handler{fake.platform, files, toasts, progress,
                                  [] { return Date(std::chrono::seconds(1794836929)); }};
    Url folder = fake.fileManager.addFolder("/home/mira/In");
    int changes = 0;
    Subscription observed =
        NotificationCenter::standard().observe(taliroFolderDidChange, [this](Notification const& n) {
            changes += std::any_cast<Url>(n.object) == folder;
        });

    bool drop(FakePasteboard const& carried, bool copy = false) {
        auto const taken = handler.routeDrop(carried.pasteboard(), folder, copy);
        fake.mainQueue.turn();
        return taken;
    }
    bool exists(std::string const& path) { return fake.fileManager.tree.contains(path); }
    /// "name: bytes" of what lies in the folder.
    std::vector<std::string> saved() {
        std::vector<std::string> found;
        for (auto const& [path, bytes] : fake.fileManager.contentsOf)
            if (path.starts_with("/home/mira/In/"))
                found.push_back(path.substr(14) + ": " + bytes);
        return found;
    }
    std::string toast() { return toasts.current.get() ? toasts.current.get()->message : ""; }
};

TEST_F(PasteboardDropHandlerTest, TheFirstUsableKindIsTaken) {
    std::string const stamp = "-2026-11-16T13-48-49Z";
    struct Case {
        FakePasteboard carried;
        std::string saved;
        std::optional<std::string> png = std::nullopt; ///< what pictures are converted to
    };
    Case const cases[] = {
        {{{"text/html", "<img>"}, {"text/uri-list", "https://x.org/a.png"}, {"image/png", "P"}},
         "image" + stamp + ".png: P"},
        {{{"image/tiff", "T"}, {"image/jpeg", "J"}}, "image" + stamp + ".jpg: J"},
        {{{"image/heic", "H"}, {"image/tiff", "T"}}, "image" + stamp + ".png: P", "P"},
        {{{"image/heic", "H"}, {"image/tiff", "T"}}, "image" + stamp + ".tiff: T"},
        {{{"image/bmp", "B"}}, "image" + stamp + ".png: P", "P"},
        {{{"image/heic", "H"}, {"text/plain", "t"}}, "image" + stamp + ".heic: H"},
        {{{"image/gif", "G"}, {"text/uri-list", "https://x.org/a.gif"}}, "image" + stamp + ".gif: G"},
        {{{"text/html", "<img>"}, {"image/webp", "W"}}, "image" + stamp + ".webp: W"},
        {{{"text/plain", "t"}, {"text/html", "<b>"}, {"text/rtf", "{\\rtf}"}},
         "Snippet" + stamp + ".rtf: {\\rtf}"},
        {{{"text/plain", "t"}, {"text/html", "<b>"}}, "Snippet" + stamp + ".html: <b>"},
        {{{"text/plain", "caf\xE9"}}, "Clipping" + stamp + ".txt: café"},
        {{{"image/png", ""}, {"text/plain", "t"}}, "Clipping" + stamp + ".txt: t"},
    };
    for (auto const& [carried, expected, png] : cases) {
        fake.fileManager.contentsOf.clear();
        std::erase_if(fake.fileManager.tree,
                      [](auto const& item) { return item.first.starts_with("/home/mira/In/"); });
        fake.imageCodec.result = png;
        changes = 0;
        EXPECT_TRUE(drop(carried));
        EXPECT_THAT(saved(), ::testing::ElementsAre(expected));
        EXPECT_EQ(toast(), "Saved " + expected.substr(0, expected.find(':')) + " to In");
        EXPECT_EQ(changes, 1);
    }
    InAppDropLatch::armed = false;
    EXPECT_FALSE(drop({{"application/x-unknown", "?"}}));
    EXPECT_TRUE(InAppDropLatch::armed);
    fake.standardFolders.folders[StandardFolder::trash] = folder;
    EXPECT_FALSE(drop({{"text/plain", "t"}})) << "text is no matter for the trash";
}

TEST_F(PasteboardDropHandlerTest, FilesComeFirstAndGoOneAfterTheOther) {
    fake.fileManager.addFile("/home/mira/a");
    fake.fileManager.addFile("/home/mira/b");
    FakePasteboard const carried{
        {"image/png", "P"}, {"text/uri-list", "https://x.org\nfile:///home/mira/a\nfile:///home/mira/b"}};
    EXPECT_TRUE(handler.routeDrop(carried.pasteboard(), folder, false));
    EXPECT_TRUE(exists("/home/mira/a")) << "the source of the drag is not kept waiting";
    fake.mainQueue.turn();
    EXPECT_FALSE(exists("/home/mira/a"));
    EXPECT_TRUE(exists("/home/mira/In/a") && exists("/home/mira/In/b"));
    EXPECT_EQ(toast(), "Moved b to In");
    EXPECT_TRUE(drop({{"text/uri-list", "file:///home/mira/In/a"}}, true))
        << "in its place already, and still taken";
    EXPECT_TRUE(fake.downloads.tasks.empty());
}

TEST_F(PasteboardDropHandlerTest, NamesTakenMeanwhileAreNotOverwritten) {
    drop({{"text/plain", "one"}});
    drop({{"text/plain", "two"}});
    EXPECT_THAT(saved(), ::testing::ElementsAre("Clipping-2026-11-16T13-48-49Z 2.txt: two",
                                                "Clipping-2026-11-16T13-48-49Z.txt: one"));
    fake.newFiles.failures = {std::errc::file_exists};
    EXPECT_TRUE(drop({{"image/png", "P"}}));
    EXPECT_EQ(fake.alerts.beeps, 0) << "a race is run again";
    toasts.current = std::optional<ToastCenter::Toast>();
    fake.newFiles.failures = {std::errc::no_space_on_device};
    EXPECT_TRUE(drop({{"image/png", "P"}}));
    EXPECT_EQ(fake.alerts.beeps, 1);
    EXPECT_EQ(toast(), "");
}

TEST_F(PasteboardDropHandlerTest, LinksAreDownloaded) {
    fake.fileManager.addFile("/home/mira/In/report.pdf");
    auto const dropLink = [&] {
        return drop({{"text/uri-list", "https://x.org/page\nhttps://x.org/other"}});
    };
    EXPECT_TRUE(dropLink());
    ASSERT_EQ(fake.downloads.tasks.size(), 1u);
    EXPECT_EQ(fake.downloads.tasks[0]->link.absoluteString(), "https://x.org/page");
    fake.mainQueue.advance(600ms);
    fake.downloads.tasks[0]->callbacks.onProgress({10, 20});
    ASSERT_EQ(progress.cards->size(), 1u);
    EXPECT_EQ(progress.cards->front().title, "Downloading “page”");
    EXPECT_EQ(progress.cards->front().fraction(), 0.5);

    fake.fileManager.contentsOf["/home/mira/In/.part"] = "PDF";
    fake.downloads.end(
        Downloads::Downloaded{Url::file("/home/mira/In/.part"), "attachment; filename=\"../report.pdf\""});
    EXPECT_EQ(fake.fileManager.contentsOf["/home/mira/In/report 2.pdf"], "PDF");
    EXPECT_EQ(toast(), "Saved report 2.pdf to In");
    EXPECT_TRUE(fake.downloads.tasks.empty() && progress.cards->empty());

    toasts.current = std::optional<ToastCenter::Toast>();
    dropLink();
    fake.downloads.end(std::nullopt);
    EXPECT_EQ(fake.alerts.beeps, 0) << "a failed download is silent";
    EXPECT_EQ(toast(), "");

    dropLink();
    fake.newFiles.failures = {std::errc::permission_denied};
    fake.downloads.end(Downloads::Downloaded{Url::file("/home/mira/In/.part"), ""});
    EXPECT_EQ(fake.alerts.beeps, 1);
    EXPECT_EQ(fake.newFiles.discarded.back(), Url::file("/home/mira/In/.part"));

    dropLink();
    fake.mainQueue.advance(600ms);
    progress.cancel(progress.cards->front().id);
    EXPECT_TRUE(fake.downloads.tasks.empty() && progress.cards->empty());
}

TEST_F(PasteboardDropHandlerTest, PromisedFilesAreWrittenByTheirSource) {
    fake.fileManager.addFile("/home/mira/In/pic.xcf");
    fake.directSave.name = "/tmp/pic.xcf";
    EXPECT_TRUE(drop({{"XdndDirectSave0", "S"}, {"text/plain", "pic"}}));
    EXPECT_EQ(fake.directSave.destination, folder.appending("pic 2.xcf"));
    EXPECT_EQ(toast(), "Saved pic 2.xcf to In");
    EXPECT_TRUE(drop({{"XdndDirectSave0", "F"}, {"application/octet-stream", "XCF"}}));
    EXPECT_THAT(saved(), ::testing::ElementsAre("pic 2.xcf: XCF"));
    EXPECT_TRUE(drop({{"XdndDirectSave0", "E"}, {"text/plain", "the next best"}}));
    EXPECT_EQ(saved().size(), 2u);
}

TEST(FileDragTest, TheItemUnderThePointerLeads) {
    auto const a = Url::file("/a"), b = Url::file("/b"), c = Url::file("/c"), d = Url::file("/d");
    EXPECT_EQ(draggedUrls(a, {}), std::vector{a});
    EXPECT_EQ(draggedUrls(b, {a, b}), (std::vector{b, a}));
    EXPECT_EQ(draggedUrls(c, {a, b, c, d}), (std::vector{c, a, b, d}));
    EXPECT_EQ(draggedUrls(d, {a, b}), (std::vector{a, b}));
}

TEST(FileDragTest, TheEndOfADragIsTold) {
    struct Case {
        DragEnd end;
        bool droppedOnUs;
        int changed, completed;
    };
    Case const cases[] = {{DragEnd::nothing, false, 0, 0}, {DragEnd::moved, false, 1, 1},
                          {DragEnd::moved, true, 1, 0},    {DragEnd::copied, false, 0, 1},
                          {DragEnd::copied, true, 0, 0},   {DragEnd::linked, false, 0, 1}};
    for (auto const& [end, droppedOnUs, changed, completed] : cases) {
        HandQueue queue;
        std::vector<Url> folders;
        int completions = 0;
        auto& center = NotificationCenter::standard();
        auto const change = center.observe(taliroFolderDidChange, [&](Notification const& n) {
            folders.push_back(std::any_cast<Url>(n.object));
        });
        auto const complete =
            center.observe(fileDragDidComplete, [&](Notification const&) { ++completions; });
        InAppDropLatch::armed = droppedOnUs;
        fileDragEnded(Url::file("/dir/x"), end, queue);
        EXPECT_EQ(completions, 0);
        queue.turn();
        EXPECT_EQ(completions, completed);
        EXPECT_EQ(folders, std::vector<Url>(static_cast<std::size_t>(changed), Url::file("/dir/")));
        EXPECT_EQ(InAppDropLatch::armed, end == DragEnd::nothing && droppedOnUs);
    }
}

} // namespace
} // namespace taliro::testing
