#include "platform/linux/PlistUserDefaults.h"

#include "platform/linux/PropertyListFile.h"
#include "support/TemporaryFolder.h"

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace taliro::testing {
namespace {

struct PlistUserDefaultsTest : ::testing::Test {
    TemporaryFolder folder;
    std::string path = folder / "config/defaults.plist";
};

TEST_F(PlistUserDefaultsTest, KeepsTypedValuesAndTellsAbsentFromFalse) {
    {
        PlistUserDefaults defaults(path);
        defaults.setBoolean("flag", false);
        defaults.setReal("width", 720.5);
        defaults.setString("text", "a <b> & “c”");
        defaults.setStrings("list", {"~/x", "/y"});
        defaults.set("data", {PropertyValue::Data{0, 255, 7}});
        defaults.setBoolean("gone", true);
        defaults.remove("gone");
    }
    PlistUserDefaults const again(path);
    EXPECT_EQ(again.object("flag"), PropertyValue{false});
    EXPECT_TRUE(again.boolean("absent", true));
    EXPECT_EQ(again.real("width"), 720.5);
    EXPECT_EQ(again.string("text"), "a <b> & “c”");
    EXPECT_EQ(again.strings("list"), (std::vector<std::string>{"~/x", "/y"}));
    EXPECT_EQ(again.object("data"), (PropertyValue{PropertyValue::Data{0, 255, 7}}));
    EXPECT_FALSE(again.object("gone"));
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(PlistUserDefaultsTest, SetsADamagedFileAsideAndNeverOverwritesIt) {
    for (std::string_view const bytes : {"not a list", "<plist><dict><key>a</key>", "bplist00\xff", ""}) {
        folder.write("config/defaults.plist", bytes);
        PlistUserDefaults defaults(path);
        EXPECT_FALSE(defaults.object("a"));
        defaults.setBoolean("b", true);
        EXPECT_TRUE(PlistUserDefaults(path).boolean("b"));
    }
    EXPECT_EQ(contentsOf(path + ".damaged"), "not a list");
    EXPECT_EQ(contentsOf(path + ".damaged-2"), "<plist><dict><key>a</key>");
}

TEST_F(PlistUserDefaultsTest, AnUnwritablePlaceLeavesTheValueForThisRun) {
    folder.write("config", "a file where the folder should be");
    PlistUserDefaults defaults(path);
    defaults.setBoolean("flag", true);
    EXPECT_TRUE(defaults.boolean("flag"));
    EXPECT_EQ(contentsOf(folder / "config"), "a file where the folder should be");
}

// Writers are killed at any moment; whoever reads next must find a whole list with one of the values written.
TEST_F(PlistUserDefaultsTest, SurvivesBeingKilledWhileWriting) {
    PlistUserDefaults(path).setString("value", "start");
    for (int round = 0; round < 25; ++round) {
        auto const child = ::fork();
        if (child == 0) {
            PlistUserDefaults defaults(path);
            for (int i = 0;; ++i)
                defaults.setString("value", std::string(static_cast<std::size_t>(i % 9) * 1000, 'x') + "end");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2 + round * 3 % 17));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        auto const value = PlistUserDefaults(path).string("value");
        ASSERT_TRUE(value);
        EXPECT_TRUE(*value == "start" || value->ends_with("end"));
    }
    EXPECT_FALSE(std::filesystem::exists(path + ".damaged"));
}

TEST(PropertyList, RefusesWhatWouldHurtTheReader) {
    std::string deep = "<plist>";
    for (int i = 0; i < 100000; ++i)
        deep += "<array>";
    EXPECT_FALSE(parsePropertyList(deep));

    // An array that holds itself: one object at 8, its offset table at 10.
    std::string cycle("bplist00\xa1\x00\x08", 11);
    cycle += std::string("\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x0a", 32);
    EXPECT_FALSE(parsePropertyList(cycle));
    // Data that claims eight gigabytes.
    std::string huge("bplist00\x4f\x13\0\0\0\2\0\0\0\0\x08", 19);
    huge += std::string("\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x12", 32);
    EXPECT_FALSE(parsePropertyList(huge));
}

} // namespace
} // namespace taliro::testing
