#include "platform/linux/PosixFileManager.h"

#include "support/TemporaryFolder.h"

#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace taliro::testing {
namespace {

struct PosixFileManagerTest : ::testing::Test {
    TemporaryFolder folder;
    PosixFileManager files;
    Url url(std::string_view name = "") { return Url::file((folder / name).string(), name.empty()); }
    std::map<std::string, FileAttributes> list(Hidden hidden = Hidden::skip) {
        std::map<std::string, FileAttributes> found;
        auto const items = files.contents(url(), hidden).value();
        for (auto const& item : items)
            found[item.name] = item.attributes.value();
        return found;
    }
};

TEST_F(PosixFileManagerTest, ListsEveryKindOfItemAndOpensNone) {
    folder.write("file", "12345");
    folder.makeFolder("folder");
    ::mkfifo((folder / "pipe").c_str(), 0600);
    std::filesystem::create_symlink("folder", folder / "toFolder");
    std::filesystem::create_symlink("nowhere", folder / "dangling");
    std::filesystem::create_symlink("loop", folder / "loop");
    folder.write("bad\xff\nname", "");
    folder.write(std::string(255, 'n'), "");

    auto const items = list();
    EXPECT_EQ(items.size(), 8u);
    EXPECT_EQ(items.at("file").size, 5);
    EXPECT_TRUE(items.at("file").isRegular);
    EXPECT_TRUE(items.at("file").modified && items.at("file").added);
    EXPECT_TRUE(items.at("folder").isDirectory);
    EXPECT_EQ(items.at("folder").size, 0);
    EXPECT_TRUE(items.at("toFolder").isDirectory && items.at("toFolder").isSymlink);
    EXPECT_FALSE(items.at("dangling").isDirectory || items.at("dangling").isRegular);
    EXPECT_FALSE(items.at("loop").isDirectory);
    EXPECT_FALSE(items.at("pipe").isRegular);
    EXPECT_TRUE(items.contains("bad\xff\nname") && items.contains(std::string(255, 'n')));
    EXPECT_TRUE(files.exists(url("dangling")));
    EXPECT_FALSE(files.readFile(url("pipe"), 10)); // Would wait for a writer if it were opened for reading.
}

TEST_F(PosixFileManagerTest, HidesDotNamesAndListedOnes) {
    for (auto const* name : {".dot", "seen", "listed", "seen too"})
        folder.write(name, "");
    folder.write(".hidden", "listed\nabsent\n");
    auto const visible = list();
    EXPECT_EQ(visible.size(), 2u);
    EXPECT_TRUE(visible.contains("seen") && visible.contains("seen too"));
    EXPECT_EQ(list(Hidden::include).size(), 5u);
}

TEST_F(PosixFileManagerTest, SaysWhyAFolderCantBeRead) {
    folder.write("file", "");
    EXPECT_EQ(files.contents(url("file"), Hidden::skip).error(), std::errc::not_a_directory);
    EXPECT_EQ(files.contents(url("gone"), Hidden::skip).error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(files.createDirectory(url("file")).error(), std::errc::file_exists);
}

TEST_F(PosixFileManagerTest, ReadsALargeFolderWhole) {
    for (int i = 0; i < 9000; ++i)
        folder.write("n" + std::to_string(i), "x");
    auto const items = list();
    EXPECT_EQ(items.size(), 9000u);
    for (auto const& [name, known] : items)
        ASSERT_EQ(known.size, 1) << name;
}

} // namespace
} // namespace taliro::testing
