#include "foundation/Pipeline.h"

#include <gtest/gtest.h>

#include <numeric>

namespace taliro::testing {
namespace {

TEST(Pipeline, WorksOnEachItemOnceAndKeepsTheirOrder) {
    for (int batches : {0, 1, 2, 50}) {
        Pipeline<int> pipeline([](std::vector<int>& batch) {
            for (int& item : batch)
                item *= 2;
        });
        std::vector<int> expected;
        for (int batch = 0; batch < batches; ++batch) {
            std::vector<int> items(static_cast<std::size_t>(batch % 7));
            std::iota(items.begin(), items.end(), batch * 10);
            for (int item : items)
                expected.push_back(item * 2);
            pipeline.add(std::move(items));
        }
        EXPECT_EQ(pipeline.finish(), expected);
    }
}

TEST(Pipeline, EndsItsThreadsWhenItIsGivenUp) { // Else it would wait for ever.
    Pipeline<int> pipeline([](std::vector<int>&) {});
    for (int batch = 0; batch < 10; ++batch)
        pipeline.add({batch});
}

} // namespace
} // namespace taliro::testing
