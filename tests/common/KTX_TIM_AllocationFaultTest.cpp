#include "common/KTX_TIM_AllocationFault.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;

int* volatile lastBlock = nullptr;

// A block that the compiler cannot leave out.
std::unique_ptr<int> takeBlock() {
  auto block = std::make_unique<int>(1);
  lastBlock = block.get();
  return block;
}

TEST(AllocationWatch, CountsAllocationsAndWhatIsNotGivenBack) {
  std::unique_ptr<int> kept;
  {
    AllocationWatchC const watch;
    kept = takeBlock();
    { auto const brief = takeBlock(); }
    EXPECT_EQ(2U, watch.allocationCount());
    EXPECT_EQ(1, watch.balance());
    kept.reset();
    EXPECT_EQ(0, watch.balance());
    EXPECT_FALSE(watch.hasFailed());
  }
}

TEST(AllocationWatch, LetsTheNthAllocationFail) {
  AllocationWatchC const watch(2);
  auto const first = takeBlock();
  EXPECT_FALSE(watch.hasFailed());
  EXPECT_THROW(takeBlock(), std::bad_alloc);
  EXPECT_TRUE(watch.hasFailed());
  EXPECT_NO_THROW(takeBlock());
}

TEST(AllocationWatch, LetsEveryAllocationFromTheNthOnFailUntilItIsToldToEnd) {
  AllocationWatchC watch(2, true);
  auto const first = takeBlock();
  EXPECT_THROW(takeBlock(), std::bad_alloc);
  EXPECT_THROW(takeBlock(), std::bad_alloc);
  EXPECT_EQ(1, watch.balance());
  watch.endFailures();
  auto const second = takeBlock();
  EXPECT_TRUE(watch.hasFailed());
  EXPECT_EQ(2, watch.balance());
  EXPECT_EQ(4U, watch.allocationCount());
}

TEST(AllocationWatch, SeesTheCallingThreadOnly) {
  std::size_t counted = 0;
  std::thread([&] {
    AllocationWatchC const watch;
    std::thread([] { takeBlock(); }).join();
    auto const own = takeBlock();
    counted = watch.allocationCount();
  }).join();
  EXPECT_EQ(2U, counted);  // the state that the inner thread starts with, and own
}

TEST(AllocationWatch, SweepsOverEachAllocation) {
  std::vector<std::ptrdiff_t> balances;
  balances.reserve(8);
  std::unique_ptr<int> kept;
  std::size_t const failed = sweepAllocationFaults(
      [&] {
        auto const first = takeBlock();
        kept.reset();
        kept = takeBlock();
        auto const third = takeBlock();
      },
      [&](std::ptrdiff_t balance) { balances.push_back(balance); });
  EXPECT_EQ(3U, failed);
  // Only the third run had taken the block that stays.
  EXPECT_THAT(balances, ElementsAre(0, 0, 1));
}

}  // namespace
}  // namespace KTX::TIM::TEST
