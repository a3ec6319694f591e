#include "common/KTX_TIM_LockOrder.h"

#include <optional>
#include <thread>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LockOrder : public ::testing::Test {
 protected:
  LockOrder() {
    order.setName(a, "a");
    order.setName(b, "b");
    order.setName(c, "c");
  }

  Mutex a;
  Mutex b;
  Mutex c;
  LockOrderC order;
};

TEST_F(LockOrder, AcceptsTheLibraryLockFirstAndReentries) {
  Guard const library(getTimeLock());
  Guard const own(a);
  Guard const libraryAgain(getGlobalLock());
  Guard const ownAgain(a);
  EXPECT_THAT(order.violations(), IsEmpty());
  EXPECT_EQ(4U, order.lockCount());
  EXPECT_EQ(2U, LockOrderC::heldCount(a));
  EXPECT_EQ(2U, LockOrderC::heldCount(getTimeLock()));
  EXPECT_EQ(2U, LockOrderC::heldLockCount());
}

TEST_F(LockOrder, ReportsTheLibraryLockAfterAnotherOne) {
  Guard const own(a);
  Guard const library(getTimeLock());
  EXPECT_THAT(order.violations(), ElementsAre("library taken while holding a"));
}

TEST_F(LockOrder, ReportsTwoLocksTakenInBothOrders) {
  {
    Guard const first(a);
    Guard const second(b);
  }
  EXPECT_THAT(order.violations(), IsEmpty());
  {
    Guard const first(b);
    Guard const second(a);
  }
  EXPECT_THAT(order.violations(), ElementsAre("a taken while holding b, elsewhere before it"));
}

TEST_F(LockOrder, ReportsACircleOverAThirdLockAndOtherThreads) {
  std::thread([&] {
    Guard const first(a);
    Guard const second(b);
  }).join();
  std::thread([&] {
    Guard const first(b);
    Guard const second(c);
  }).join();
  Guard const first(c);
  Guard const second(a);
  EXPECT_THAT(order.violations(), ElementsAre("a taken while holding c, elsewhere before it"));
}

TEST_F(LockOrder, SeesWhatTheCallingThreadHoldsOnly) {
  Guard const own(a);
  std::size_t held = 77;
  std::thread([&] { held = LockOrderC::heldLockCount(); }).join();
  EXPECT_EQ(0U, held);
  EXPECT_EQ(1U, LockOrderC::heldLockCount());
  EXPECT_EQ(0U, LockOrderC::heldCount(b));
}

TEST_F(LockOrder, ForgetsADestroyedLock) {
  // Both in the same memory.
  std::optional<Mutex> brief(std::in_place);
  {
    Guard const first(*brief);
    Guard const second(a);
  }
  brief.emplace();
  Guard const first(a);
  Guard const second(*brief);
  EXPECT_THAT(order.violations(), IsEmpty());
}

}  // namespace
}  // namespace KTX::TIM::TEST
