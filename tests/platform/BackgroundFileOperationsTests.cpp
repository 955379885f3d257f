#include "platform/linux/BackgroundFileOperations.h"

#include "platform/linux/transfer/Leftovers.h"

#include "Trees.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace taliro::testing {
namespace {

namespace fs = std::filesystem;

struct BackgroundFileOperationsTest : ::testing::Test {
    TemporaryFolder disk;
    BackgroundFileOperations operations{disk / "state"};
    Url url(std::string_view name) { return Url::file((disk / name).string()); }

    /// So large that a copy outlasts the first reports.
    void makeLarge(std::string_view name) {
        auto const file = ::open((disk / name).c_str(), O_RDWR | O_CREAT, 0600);
        std::string const bytes(1 << 20, 'b');
        for (int i = 0; i < 600; ++i)
            ASSERT_EQ(::write(file, bytes.data(), bytes.size()), 1 << 20);
        ::close(file);
    }
    bool isEmpty(std::string_view folder) {
        return !fs::exists(disk / folder) ||
               fs::directory_iterator(disk / folder) == fs::directory_iterator();
    }
};

TEST_F(BackgroundFileOperationsTest, TurnsTheEventLoopAndReports) {
    makeLarge("large");
    disk.makeFolder("to");
    QTimer ticks;
    int turned = 0;
    QObject::connect(&ticks, &QTimer::timeout, &ticks, [&] { ++turned; });
    ticks.start(5);
    std::vector<TransferProgress> reports;
    auto const copied = operations.copy(url("large"), url("to/large"), [&](TransferProgress const& progress) {
        reports.push_back(progress);
        return TransferAnswer::carryOn;
    });
    ASSERT_TRUE(copied);
    EXPECT_EQ(fs::file_size(disk / "to/large"), 600u << 20);
    EXPECT_GT(turned, 5);
    ASSERT_FALSE(reports.empty());
    EXPECT_EQ(reports[0].name, "large");
    EXPECT_GT(reports[0].bytesDone, 0);
    for (auto const& report : reports)
        EXPECT_TRUE(!report.bytesTotal || *report.bytesTotal == 600 << 20);

    // One that the user cancels, and one that the program's end cancels.
    auto const cancelled = operations.copy(url("large"), url("to/again"),
                                           [](TransferProgress const&) { return TransferAnswer::cancel; });
    EXPECT_EQ(cancelled, std::unexpected(std::errc::operation_canceled));
    QTimer::singleShot(30, QCoreApplication::instance(), [] { QCoreApplication::exit(); });
    EXPECT_EQ(operations.copy(url("large"), url("to/again"), {}),
              std::unexpected(std::errc::operation_canceled));
    EXPECT_FALSE(fs::exists(disk / "to/again"));
    EXPECT_TRUE(isEmpty("state"));
}

TEST_F(BackgroundFileOperationsTest, WhatLeavesATrashTakesItsNoteAlong) {
    for (std::string const place : {"Trash/", ".Trash-1000/", ".Trash/1000/", "project/"}) {
        disk.write(place + "files/a b.txt", "kept");
        disk.write(place + "info/a b.txt.trashinfo", "note");
        disk.write(place + "info/other.trashinfo", "note");
        ASSERT_TRUE(operations.move(url(place + "files/a b.txt"), url(place + "back.txt"), {}));
        EXPECT_EQ(contentsOf(disk / (place + "back.txt")), "kept");
        EXPECT_EQ(fs::exists(disk / (place + "info/a b.txt.trashinfo")), place == "project/") << place;
        EXPECT_TRUE(fs::exists(disk / (place + "info/other.trashinfo")));
    }
}

TEST_F(BackgroundFileOperationsTest, RemovesLeftoversAtLeisure) {
    auto const name = transfer::Leftovers::temporaryName();
    disk.write("to/" + name, "half");
    disk.write("state/" + name, (disk / "to/").string());
    operations.removeLeftovers();
    for (QElapsedTimer waited; !waited.isValid() || waited.elapsed() < 10'000;) {
        if (!waited.isValid())
            waited.start();
        if (isEmpty("to") && isEmpty("state"))
            return;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    FAIL() << "the leftover stays";
}

} // namespace
} // namespace taliro::testing
