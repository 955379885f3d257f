#include "foundation/Url.h"

#include "foundation/Published.h"
#include "foundation/Text.h"
#include "support/HandQueue.h"

namespace taliro::testing {
namespace {

TEST(Url, KeepsBytesAndTellsFoldersByTheirSlash) {
    auto const file = Url::file("/a/b\xff.txt");
    EXPECT_EQ(file.lastPathComponent(), "b\xff.txt");
    EXPECT_EQ(file.absoluteString(), "file:///a/b%FF.txt");
    EXPECT_EQ(Url::parse(file.absoluteString()), file);
    EXPECT_NE(Url::file("/a"), Url::file("/a/"));
    EXPECT_EQ(Url::file("/a").standardized(), Url::file("/a/").standardized());
    EXPECT_EQ(Url::file("//").path(), "/");
}

TEST(Url, TakesPathsApart) {
    struct Case {
        char const *path, *name, *extension, *parent, *standardized;
    };
    for (auto const& [path, name, extension, parent, standardized] :
         {Case{"/", "/", "", "/", "/"}, Case{"/a", "a", "", "/", "/a"},
          Case{"/a/b.tar.gz", "b.tar.gz", "gz", "/a", "/a/b.tar.gz"},
          Case{"/a/.hidden", ".hidden", "", "/a", "/a/.hidden"},
          Case{"/a/./b/../c//d/", "d", "", "/a/./b/../c/", "/a/c/d"},
          Case{"/../x.", "x.", "", "/..", "/x."}}) {
        auto const url = Url::file(path);
        EXPECT_EQ(url.lastPathComponent(), name) << path;
        EXPECT_EQ(url.pathExtension(), extension) << path;
        EXPECT_EQ(url.deletingLastPathComponent().standardized(), Url::file(parent).standardized()) << path;
        EXPECT_EQ(url.standardized().path(), standardized) << path;
    }
}

TEST(Url, ReadsWhatOtherProgramsWrite) {
    EXPECT_EQ(Url::parse("file://localhost/a%20b/")->path(), "/a b");
    EXPECT_EQ(Url::parse("/plain path")->path(), "/plain path");
    EXPECT_EQ(Url::parse("file:///100%")->path(), "/100%");
    EXPECT_EQ(Url::parse("taliro:///recents")->scheme(), "taliro");
    EXPECT_FALSE(Url::parse("taliro:///recents")->isFile());
    for (auto const* text : {"", "relative", "file:relative", "file://other.example/a", "1x:/a"})
        EXPECT_FALSE(Url::parse(text)) << text;
}

TEST(Url, LiesWithinByWholeNames) {
    auto const folder = Url::file("/a/b/");
    EXPECT_TRUE(Url::file("/a/b/c").isWithin(folder));
    EXPECT_TRUE(Url::file("/a/b").isWithin(folder));
    EXPECT_FALSE(Url::file("/a/bc").isWithin(folder));
    EXPECT_TRUE(Url::file("/x").isWithin(Url()));
}

TEST(Text, SizesReadAsPeopleExpect) {
    for (auto const& [bytes, text] : {std::pair<std::int64_t, char const*>{0, "Zero KB"},
                                      {1, "1 byte"},
                                      {999, "999 bytes"},
                                      {1000, "1 KB"},
                                      {1499, "1 KB"},
                                      {999'499, "999 KB"},
                                      {999'500, "1 MB"},
                                      {2'400'000, "2.4 MB"},
                                      {1'000'000'000, "1 GB"},
                                      {1'234'000'000, "1.23 GB"},
                                      {9'223'372'036'854'775'807, "9.22 EB"}})
        EXPECT_EQ(byteCountText(bytes), text) << bytes;
}

TEST(Text, ComparesNamesWithoutCaseAndShowsAnyBytes) {
    EXPECT_TRUE(localizedCaseInsensitiveCompare("readme", "README") == 0);
    EXPECT_TRUE(localizedCaseInsensitiveCompare("a", "B") < 0);
    EXPECT_TRUE(localizedCaseInsensitiveCompare("e", "é") < 0);
    EXPECT_EQ(legible("a\nb"), "a␊b");
    EXPECT_EQ(legible("x\xff"), "x\xef\xbf\xbd");
    EXPECT_EQ(legible("photo\xe2\x80\xaegpj.exe"), "photo\xef\xbf\xbdgpj.exe");
    EXPECT_TRUE(containsLowercased("Überblick.PDF", "über"));
    EXPECT_TRUE(containsLowercased("Report.PDF", "pdf"));
    EXPECT_FALSE(containsLowercased("pd", "pdf"));

    std::string a = "kept", b = "kept";
    appendSortKey("README", a);
    appendSortKey("readme", b);
    EXPECT_EQ(a, b);
    EXPECT_TRUE(a.starts_with("kept"));
}

TEST(Published, TellsTheNewValueBeforeItIsAssignedAndOnEveryAssignment) {
    Published<int> property{1};
    std::vector<std::pair<int, int>> heard;
    auto subscription =
        property.observe([&](int const& value) { heard.emplace_back(property.get(), value); });
    property = 2;
    property = 2;
    subscription.cancel();
    property = 3;
    EXPECT_EQ(heard, (std::vector<std::pair<int, int>>{{1, 2}, {2, 2}}));
}

TEST(WorkItem, IsCancelledByBeingDestroyedOrReplaced) {
    using namespace std::chrono_literals;
    HandQueue queue;
    std::string done;
    {
        auto gone = queue.after(10ms, [&] { done += "gone"; });
    }
    auto item = queue.after(10ms, [&] { done += "replaced"; });
    item = queue.after(20ms, [&] { done += "kept"; });
    queue.advance(19ms);
    EXPECT_TRUE(item.isPending());
    queue.advance(1ms);
    EXPECT_EQ(done, "kept");
    EXPECT_FALSE(item.isPending());
}

} // namespace
} // namespace taliro::testing
