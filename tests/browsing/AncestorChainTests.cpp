#include "browsing/AncestorChain.h"

namespace taliro {
namespace {

TEST(AncestorChain, RunsFromTheFolderToTheRoot) {
    std::pair<char const*, std::vector<std::string>> const cases[] = {
        {"/", {"/"}},
        {"/a", {"a", "/"}},
        {"/a/b c/d", {"d", "b c", "a", "/"}},
    };
    for (auto const& [path, names] : cases) {
        std::vector<std::string> found;
        for (auto const& folder : ancestorChain(Url::file(path, true))) {
            EXPECT_TRUE(folder.hasDirectoryPath());
            found.push_back(displayName(folder));
        }
        EXPECT_EQ(found, names) << path;
    }
    std::string deep;
    for (int i = 0; i < 100; ++i)
        deep += "/x";
    EXPECT_EQ(ancestorChain(Url::file(deep, true)).size(), 64u);
}

} // namespace
} // namespace taliro
