#include "dragdrop/FileDropHandler.h"

#include "browsing/DirectoryWatcher.h"
#include "dragdrop/ToastCenter.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

using Outcome = FileDropHandler::Outcome;

struct FileDropHandlerTest : ::testing::Test {
    FakePlatform fake;
    ToastCenter toasts{fake.mainQueue};
    ProgressCenter progress{fake.mainQueue};
    FileDropHandler handler{fake.platform, toasts, progress};
    std::vector<std::string> changed;
    Subscription changes =
        NotificationCenter::standard().observe(taliroFolderDidChange, [this](Notification const& note) {
            changed.push_back(std::any_cast<Url>(note.object).path());
        });

    void SetUp() override {
        for (auto const* folder : {"/A", "/A/B", "/A/B/C", "/A/Bx", "/C", "/C/taken"})
            fake.fileManager.addFolder(folder);
        for (auto const* file : {"/A/b.txt", "/A/taken", "/A/broken", "/A/B/deep.txt"})
            fake.fileManager.addFile(file);
        fake.standardFolders.folders[StandardFolder::trash] = fake.fileManager.addFolder("/Trash/files");
        fake.fileManager.addFile("/Trash/files/taken");
        fake.fileOperations.failures["/A/broken"] = std::errc::permission_denied;
    }
    std::string toast() const {
        return toasts.current.get() ? toasts.current.get()->icon + " " + toasts.current.get()->message : "";
    }
    bool exists(std::string const& path) { return fake.fileManager.tree.contains(path); }
};

TEST_F(FileDropHandlerTest, ChecksBeforeItTouchesAndSaysWhatBecameOfIt) {
    std::string const good = "checkmark.circle.fill ";
    std::string const bad = "exclamationmark.triangle.fill ";
    struct Case {
        std::string source, into;
        bool copy;
        Outcome outcome;
        std::string toast;
        std::vector<std::string> changed;
        int beeps = 0;
    };
    Case const cases[] = {
        {"/A/b.txt", "/A", false, Outcome::nothing, "", {}},
        {"/A/b.txt", "/A", true, Outcome::nothing, "", {}},
        {"/A/./B/../b.txt", "/A/", true, Outcome::nothing, "", {}},
        {"/A/B", "/A/B/C", false, Outcome::refused, bad + "Can't place “B” inside itself", {}},
        {"/A/B", "/A/B", true, Outcome::refused, bad + "Can't place “B” inside itself", {}},
        {"/", "/A", true, Outcome::refused, bad + "Can't place “/” inside itself", {}},
        {"/A/taken", "/C", false, Outcome::refused, bad + "“taken” already exists in “C”", {}},
        {"/A/taken", "/C/", true, Outcome::refused, bad + "“taken” already exists in “C”", {}},
        {"/A/broken", "/C", false, Outcome::failed, "", {}, 1},
        {"/A/gone", "/C", true, Outcome::failed, "", {}, 1},
        {"taliro:///recents", "/C", true, Outcome::nothing, "", {}},
        {"/A/b.txt", "taliro:///recents", true, Outcome::nothing, "", {}},
        {"/A/b.txt", "/Trash/files/", true, Outcome::refused, bad + "Can't copy “b.txt” to the Trash", {}},
        {"/Trash/files/taken", "/Trash/files", false, Outcome::nothing, "", {}},
        {"/A/broken", "/Trash/files", false, Outcome::failed, "", {}, 1},
        {"/A/b.txt", "/C", true, Outcome::done, good + "Copied b.txt to C", {"/C"}},
        {"/A/b.txt", "/", false, Outcome::done, good + "Moved b.txt to /", {"/", "/A"}},
        {"/A/taken",
         "/Trash/files/",
         false,
         Outcome::done,
         good + "Moved taken to Trash",
         {"/Trash/files", "/A"}},
        {"/A/B", "/A/Bx", false, Outcome::done, good + "Moved B to Bx", {"/A/Bx", "/A"}},
    };
    for (auto const& test : cases) {
        SCOPED_TRACE(test.source + " into " + test.into + (test.copy ? ", copied" : ", moved"));
        toasts.current = std::optional<ToastCenter::Toast>();
        changed.clear();
        fake.alerts.beeps = 0;
        auto const before = fake.fileManager.tree;
        EXPECT_EQ(handler.perform(*Url::parse(test.source), *Url::parse(test.into), test.copy), test.outcome);
        EXPECT_EQ(toast(), test.toast);
        EXPECT_EQ(changed, test.changed);
        EXPECT_EQ(fake.alerts.beeps, test.beeps);
        EXPECT_EQ(fake.fileManager.tree == before, test.outcome != Outcome::done);
    }
    EXPECT_TRUE(exists("/C/b.txt") && exists("/b.txt") && exists("/A/Bx/B/deep.txt"));
    EXPECT_FALSE(exists("/A/b.txt") || exists("/A/B") || exists("/A/taken"));
    EXPECT_EQ(fake.fileOperations.trashed, (std::vector<std::string>{"/A/broken", "/A/taken"}));
}

TEST_F(FileDropHandlerTest, TriesTheItemsAfterAFailedOne) {
    auto const url = [](char const* path) { return Url::file(path); };
    handler.performAll({url("/A/broken"), url("/A/taken"), url("/A/b.txt")}, url("/C"), false);
    EXPECT_EQ(fake.alerts.beeps, 1);
    EXPECT_TRUE(exists("/C/b.txt"));
    EXPECT_EQ(toast(), "checkmark.circle.fill Moved b.txt to C");
}

TEST_F(FileDropHandlerTest, ShowsACardAfterHalfASecondWhoseCancelEndsTheWholeDrop) {
    std::vector<std::string> titles;
    fake.fileOperations.meanwhile = [&](FileOperations::Report const& report) {
        using namespace std::chrono_literals;
        fake.mainQueue.advance(499ms);
        EXPECT_EQ(report({"b.txt", 400, 1000}), TransferAnswer::carryOn);
        EXPECT_TRUE(progress.cards->empty());
        fake.mainQueue.advance(1ms);
        if (progress.cards->empty()) {
            ADD_FAILURE() << "no card";
            return TransferAnswer::cancel;
        }
        auto const card = progress.cards->front();
        titles.push_back(card.title);
        EXPECT_EQ(card.fraction(), 0.4);
        progress.cancel(card.id);
        return report({"b.txt", 500, 1000});
    };
    handler.performAll({Url::file("/A/b.txt"), Url::file("/A/B")}, Url::file("/C"), true);
    EXPECT_EQ(titles, std::vector<std::string>{"Copying “b.txt” (1 of 2)"});
    EXPECT_TRUE(progress.cards->empty());
    EXPECT_EQ(fake.alerts.beeps, 0);
    EXPECT_EQ(fake.fileOperations.copies.size(), 1u);
    EXPECT_EQ(toast(), "");
    EXPECT_TRUE(changed.empty());
}

} // namespace
} // namespace taliro::testing
