#include "dragdrop/ProgressCenter.h"

#include "support/HandQueue.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

TEST(ProgressCenter, WordsWhatIsKnown) {
    struct Case {
        ProgressCenter::Card card;
        std::string detail;
    };
    Case const cases[] = {
        {{.bytesDone = 1'000'000}, "1 MB"},
        {{.bytesDone = 1'000'000, .bytesTotal = 4'000'000}, "1 MB of 4 MB"},
        {{.bytesDone = 0, .bytesTotal = 10, .bytesPerSecond = 0}, "Zero KB of 10 bytes · Zero KB/s"},
        {{.bytesDone = 1'000'000, .bytesTotal = 4'000'000, .bytesPerSecond = 2e6},
         "1 MB of 4 MB · 2 MB/s · 2 seconds left"},
        {{.bytesDone = 0, .bytesTotal = 59'000'000, .bytesPerSecond = 1e6},
         "Zero KB of 59 MB · 1 MB/s · 59 seconds left"},
        {{.bytesDone = 0, .bytesTotal = 61'000'000, .bytesPerSecond = 1e6},
         "Zero KB of 61 MB · 1 MB/s · 2 minutes left"},
        {{.bytesDone = 0, .bytesTotal = 3'600'000'000, .bytesPerSecond = 1e6},
         "Zero KB of 3.6 GB · 1 MB/s · 1 hour left"},
        {{.bytesDone = 4, .bytesTotal = 4, .bytesPerSecond = 1e6}, "4 bytes · Finishing…"},
        {{.bytesDone = 1, .bytesTotal = 4, .isCancelled = true}, "Cancelling…"},
    };
    for (auto const& test : cases)
        EXPECT_EQ(test.card.detail(), test.detail);
}

TEST(ProgressCenter, MeasuresTheRateOverTheLastSeconds) {
    HandQueue queue;
    ProgressCenter center(queue);
    int cancelled = 0;
    auto operation = center.begin("Copying", [&] { ++cancelled; });
    for (int step = 1; step <= 10; ++step) { // 10 MB/s for a second, then 1 MB/s
        queue.advance(100ms);
        operation->update(step * 1'000'000, 100'000'000);
    }
    ASSERT_EQ(center.cards->size(), 1u);
    EXPECT_DOUBLE_EQ(center.cards->front().bytesPerSecond.value(), 1e7);
    for (int step = 1; step <= 60; ++step) {
        queue.advance(100ms);
        operation->update(10'000'000 + step * 100'000, 100'000'000);
    }
    EXPECT_DOUBLE_EQ(center.cards->front().bytesPerSecond.value(), 1e6);
    EXPECT_EQ(center.cards->front().timeLeft(), 84s);

    auto second = center.begin("Download");
    queue.advance(500ms);
    ASSERT_EQ(center.cards->size(), 2u);
    center.cancel(center.cards->front().id);
    center.cancel(center.cards->front().id);
    EXPECT_EQ(cancelled, 1);
    EXPECT_TRUE(operation->isCancelled());
    EXPECT_FALSE(second->isCancelled());
    operation.reset();
    ASSERT_EQ(center.cards->size(), 1u);
    EXPECT_EQ(center.cards->front().title, "Download");
}

} // namespace
} // namespace taliro::testing
