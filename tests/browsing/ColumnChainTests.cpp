#include "browsing/ColumnChain.h"

#include "browsing/DirectoryLoader.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

/// /home/mira holds Docs (a.txt, Sub (deep.txt)), Empty and file.txt.
struct ColumnChainTest : ::testing::Test {
    FakePlatform fake;
    Url home = fake.fileManager.addFolder("/home/mira");
    Url docs = fake.fileManager.addFolder("/home/mira/Docs");
    Url sub = fake.fileManager.addFolder("/home/mira/Docs/Sub");
    Url empty = fake.fileManager.addFolder("/home/mira/Empty");
    Url file = fake.fileManager.addFile("/home/mira/file.txt");
    Url a = fake.fileManager.addFile("/home/mira/Docs/a.txt");
    Url deep = fake.fileManager.addFile("/home/mira/Docs/Sub/deep.txt");
    BrowserState state{home};
    ColumnChain chain{state, fake.mainQueue, [this](std::size_t pane) {
                          auto const filter = chain.isDeepest(pane) ? state.searchText.get() : std::string();
                          return DirectoryLoader::load(fake.platform, chain.columnRoots()[pane], filter,
                                                       SortKey::name, true);
                      }};

    void openThree() {
        chain.select(docs, 0);
        chain.select(sub, 1);
    }
    /// The panes' folders and selections, then the state's folder and primary item.
    std::string picture() {
        std::string text;
        for (std::size_t pane = 0; pane < chain.columnRoots().size(); ++pane) {
            auto const selected = chain.selectionAt(pane);
            text += chain.columnRoots()[pane].lastPathComponent() + "(" +
                    (selected ? selected->lastPathComponent() : "") + ") ";
        }
        auto const& primary = state.selection.get();
        return text + "at " + state.currentURL->lastPathComponent() + ", " +
               (primary ? primary->lastPathComponent() : "none");
    }
};

TEST_F(ColumnChainTest, SelectingAFolderOpensItAndLeavesNoHistory) {
    EXPECT_EQ(picture(), "mira() at mira, none");
    chain.select(docs, 0);
    EXPECT_EQ(picture(), "mira(Docs) Docs() at Docs, Docs");
    chain.select(sub, 1);
    EXPECT_EQ(picture(), "mira(Docs) Docs(Sub) Sub() at Sub, Sub");
    chain.select(deep, 2);
    EXPECT_EQ(picture(), "mira(Docs) Docs(Sub) Sub(deep.txt) at Sub, deep.txt");
    EXPECT_TRUE(state.backStack().empty());
    chain.select(file, 0);
    EXPECT_EQ(picture(), "mira(file.txt) at mira, file.txt") << "a file closes what was open to its right";
    chain.select(empty, 0);
    chain.select(docs, 0);
    EXPECT_EQ(picture(), "mira(Docs) Docs() at Docs, Docs") << "a folder takes the place of another";
}

TEST_F(ColumnChainTest, ClearingAPaneSelectsItsFolderInThePaneBefore) {
    openThree();
    chain.select(deep, 2);
    chain.clearSelection(2);
    EXPECT_EQ(picture(), "mira(Docs) Docs(Sub) Sub() at Sub, Sub");
    chain.clearSelection(1);
    EXPECT_EQ(picture(), "mira(Docs) Docs() at Docs, Docs");
    chain.clearSelection(0);
    EXPECT_EQ(picture(), "mira() at mira, none");
    chain.clearSelection(5);
    EXPECT_EQ(picture(), "mira() at mira, none");
}

TEST_F(ColumnChainTest, ArrowsMoveWithinAndBetweenPanes) {
    EXPECT_EQ(chain.activeColumnIndex(), 0u);
    chain.drillRight(0);
    EXPECT_EQ(picture(), "mira() at mira, none") << "nothing is selected to go into";
    chain.moveWithinColumn(0, 1);
    EXPECT_EQ(picture(), "mira(Docs) Docs() at Docs, Docs");
    chain.drillRight(0);
    EXPECT_EQ(picture(), "mira(Docs) Docs(Sub) Sub() at Sub, Sub");
    EXPECT_EQ(chain.activeColumnIndex(), 1u);
    chain.moveWithinColumn(1, 1);
    EXPECT_EQ(picture(), "mira(Docs) Docs(a.txt) at Docs, a.txt");
    chain.drillRight(1);
    chain.moveWithinColumn(9, 1);
    EXPECT_EQ(picture(), "mira(Docs) Docs(a.txt) at Docs, a.txt") << "a file leads nowhere";
    chain.moveWithinColumn(0, 1);
    chain.drillRight(0);
    EXPECT_EQ(picture(), "mira(Empty) Empty() at Empty, Empty") << "an empty folder has no first item";
}

TEST_F(ColumnChainTest, OnlyTheDeepestPaneIsSearched) {
    chain.select(docs, 0);
    state.searchText = "a.t";
    chain.drillRight(0);
    EXPECT_EQ(picture(), "mira(Docs) Docs(a.txt) at Docs, a.txt");
    chain.moveWithinColumn(0, 1);
    EXPECT_EQ(picture(), "mira(Empty) Empty() at Empty, Empty");
}

TEST_F(ColumnChainTest, MovesFromElsewhereStartANewChain) {
    openThree();
    state.navigate(docs);
    EXPECT_EQ(picture(), "Docs() at Docs, none");
    state.goBack();
    EXPECT_EQ(picture(), "Sub() at Sub, none") << "also to the folder that was deepest before";
    state.currentURL = home;
    EXPECT_EQ(picture(), "mira() at mira, none");
}

TEST_F(ColumnChainTest, FollowsSelectionsMadeElsewhere) {
    openThree();
    state.selectSingle(a);
    EXPECT_EQ(picture(), "mira(Docs) Docs(a.txt) at Sub, a.txt") << "the folder stays where it was";
    state.selectSingle(Url::file("/etc/passwd"));
    EXPECT_EQ(picture(), "mira(Docs) Docs(a.txt) at Sub, passwd");
    state.clearSelection();
    EXPECT_EQ(picture(), "mira(Docs) Docs(a.txt) at Sub, none");
    state.navigate(home);
    state.selectSingle(docs);
    EXPECT_EQ(picture(), "mira(Docs) at mira, Docs") << "no pane is opened for it";
}

TEST_F(ColumnChainTest, ADragThatRestsForASecondClosesDeeperPanes) {
    openThree();
    chain.setPaneTargeted(0, true);
    fake.mainQueue.advance(999ms);
    chain.setPaneTargeted(0, false);
    fake.mainQueue.advance(5000ms);
    EXPECT_EQ(chain.columnRoots().size(), 3u) << "it left in time";
    chain.setPaneTargeted(2, true);
    fake.mainQueue.advance(5000ms);
    EXPECT_EQ(chain.columnRoots().size(), 3u) << "the deepest pane closes nothing";
    chain.setPaneTargeted(1, true);
    fake.mainQueue.advance(1000ms);
    EXPECT_EQ(picture(), "mira(Docs) Docs(Sub) at Docs, Sub");
    chain.setPaneTargeted(0, true);
    fake.mainQueue.advance(1000ms);
    EXPECT_EQ(picture(), "mira(Docs) at mira, Docs");
}

} // namespace
} // namespace taliro::testing
