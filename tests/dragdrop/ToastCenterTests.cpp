#include "dragdrop/ToastCenter.h"

#include "support/HandQueue.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

TEST(ToastCenter, GoesTwoSecondsAfterTheLastOneCame) {
    HandQueue queue;
    ToastCenter center(queue);
    std::vector<std::string> seen;
    auto const subscription = center.current.observe([&](std::optional<ToastCenter::Toast> const& toast) {
        seen.push_back(toast ? toast->message : "-");
    });

    center.show("one", ToastCenter::success);
    auto const first = *center.current.get();
    queue.advance(1500ms);
    center.show("one", ToastCenter::success);
    EXPECT_NE(*center.current.get(), first); // the same words are news all the same
    queue.advance(1999ms);
    EXPECT_TRUE(center.current.get());
    queue.advance(1ms);
    EXPECT_FALSE(center.current.get());
    EXPECT_EQ(seen, (std::vector<std::string>{"one", "one", "-"}));

    {
        ToastCenter brief(queue);
        brief.show("two", ToastCenter::failure);
    }
    queue.advance(3s); // the dismissal of a center that is gone does nothing
}

} // namespace
} // namespace taliro::testing
