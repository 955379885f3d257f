#include "dragdrop/NewFolderCoordinator.h"

#include "browsing/BrowserState.h"
#include "browsing/DirectoryWatcher.h"
#include "dragdrop/ProgressCenter.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

struct NewFolderCoordinatorTest : ::testing::Test {
    FakePlatform fake;
    BrowserState browser{Url::file("/A/")};
    ProgressCenter progress{fake.mainQueue};
    NewFolderCoordinator coordinator{fake.platform, browser, progress};
    Url folder = fake.fileManager.addFolder("/A");
    std::vector<std::string> changed;
    Subscription changes =
        NotificationCenter::standard().observe(taliroFolderDidChange, [this](Notification const& note) {
            changed.push_back(std::any_cast<Url>(note.object).path());
        });

    bool exists(std::string const& path) { return fake.fileManager.tree.contains(path); }
};

TEST_F(NewFolderCoordinatorTest, ProposesTheFirstFreeName) {
    struct Case {
        std::vector<std::string> taken;
        std::string proposed;
    };
    Case const cases[] = {
        {{}, "untitled folder"},
        {{"untitled folder 3"}, "untitled folder"},
        {{"untitled folder", "untitled folder 3"}, "untitled folder 2"},
        {{"untitled folder", "untitled folder 2"}, "untitled folder 3"},
    };
    for (auto const& test : cases) {
        fake.fileManager.tree = {{"/A", {.isDirectory = true}}};
        for (auto const& name : test.taken)
            fake.fileManager.addFile("/A/" + name);
        coordinator.menuItem(folder).action();
        EXPECT_EQ(coordinator.proposedName.get(), test.proposed);
        EXPECT_EQ(coordinator.promptingIn.get(), folder);
    }
    coordinator.selectionMenuItem(folder, {Url::file("/A/x"), Url::file("/A/y")}).action();
    EXPECT_EQ(coordinator.proposedName.get(), "New Folder With Items");
    EXPECT_EQ(coordinator.pendingMove().size(), 2u);
    coordinator.prompt(folder);
    EXPECT_TRUE(coordinator.pendingMove().empty());
}

TEST_F(NewFolderCoordinatorTest, TitlesItsMenuItems) {
    EXPECT_EQ(coordinator.menuItem(folder).title, "New Folder");
    EXPECT_EQ(coordinator.menuItem(folder, "A").title, "New Folder in A");
    EXPECT_EQ(coordinator.selectionMenuItem(folder, std::vector(3, folder)).title,
              "New Folder with Selection (3 Items)");
}

TEST_F(NewFolderCoordinatorTest, MakesTheFolderOrSaysWhyNot) {
    fake.fileManager.addFile("/A/taken");
    fake.fileManager.addFolder("/A/sub");
    struct Case {
        std::string name;
        std::string made;    ///< empty where nothing is
        std::string warning; ///< the informative text
    };
    Case const cases[] = {
        {" \t\n ", "", ""},
        {"  Reports \n", "/A/Reports", ""},
        {"taken", "", "File exists"},
        {"sub/inner", "", "A name can't contain “/”."},
    };
    for (auto const& test : cases) {
        SCOPED_TRACE(test.name);
        changed.clear();
        fake.alerts.warnings.clear();
        coordinator.prompt(folder);
        auto const made = coordinator.commit(test.name);
        EXPECT_EQ(made ? made->path() : "", test.made);
        std::vector<std::pair<std::string, std::string>> warnings;
        if (!test.warning.empty())
            warnings.emplace_back("Couldn't create folder", test.warning);
        EXPECT_EQ(fake.alerts.warnings, warnings);
        EXPECT_FALSE(coordinator.promptingIn.get());
        EXPECT_EQ(changed, test.made.empty() ? std::vector<std::string>() : std::vector<std::string>{"/A"});
    }
    EXPECT_FALSE(exists("/A/sub/inner"));
    EXPECT_FALSE(coordinator.commit("without a request"));
    EXPECT_FALSE(browser.selection.get());
    fake.mainQueue.turn();
    EXPECT_EQ(browser.selection.get(), Url::file("/A/Reports/"));
}

TEST_F(NewFolderCoordinatorTest, MovesTheSelectionAndRefreshesEachFolderOnce) {
    fake.fileManager.addFolder("/other");
    std::vector<Url> items;
    for (auto const* path : {"/A/one", "/other/two", "/A/broken", "/A/three"})
        items.push_back(fake.fileManager.addFile(path));
    fake.fileOperations.failures["/A/broken"] = std::errc::permission_denied;
    items.push_back(Url::file("/A/New/inside")); // the same place: nothing to move

    coordinator.promptWithSelection(folder, items);
    ::testing::internal::CaptureStderr();
    auto const made = coordinator.commit("New");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "[Taliro] move /A/broken → /A/New/broken failed: Permission denied\n");
    EXPECT_EQ(made, Url::file("/A/New/"));
    EXPECT_TRUE(exists("/A/New/one") && exists("/A/New/two") && exists("/A/New/three") &&
                exists("/A/broken"));
    EXPECT_EQ(changed, (std::vector<std::string>{"/A", "/other"}));
    EXPECT_EQ(fake.fileOperations.moves.size(), 4u);
    EXPECT_TRUE(coordinator.pendingMove().empty());
}

// The event loop turns while items move between volumes: what is pressed meanwhile must not start anything.
TEST_F(NewFolderCoordinatorTest, TakesNoOtherRequestWhileItMoves) {
    auto const item = fake.fileManager.addFile("/A/one");
    bool asked = false;
    fake.fileOperations.meanwhile = [&](FileOperations::Report const&) {
        asked = true;
        EXPECT_FALSE(coordinator.commit("Another"));
        coordinator.cancel();
        coordinator.prompt(folder);
        return TransferAnswer::carryOn;
    };
    coordinator.promptWithSelection(folder, {item});
    EXPECT_TRUE(coordinator.commit("New"));
    EXPECT_TRUE(asked && exists("/A/New/one"));
    EXPECT_FALSE(exists("/A/Another") || coordinator.promptingIn.get());
}

} // namespace
} // namespace taliro::testing
