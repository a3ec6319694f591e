#include <string>

#include <gtest/gtest.h>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"
#include "common/KTX_TIM_AllocationFault.h"

namespace KTX::DBG::TEST {
namespace {

using TIM::TEST::AllocationWatchC;

class DisabledLevel : public ::testing::Test {
 protected:
  std::string const name = "A channel with a name that no small string holds";
  DbgLogFileC channel{name};
};

TEST_F(DisabledLevel, AllocatesNothing) {
  AllocationWatchC const watch;
  EXPECT_FALSE(channel.isLevelEnabled(5));
  channel.printLine(5, "%s %d %f\n", "text", 1, 1.0);
  EXPECT_EQ(0U, watch.allocationCount());
}

TEST_F(DisabledLevel, AllocatesNothingForAHandleOnAKnownChannel) {
  AllocationWatchC const watch;
  { DbgLogFileC const brief(name); }
  EXPECT_EQ(0U, watch.allocationCount());
}

TEST_F(DisabledLevel, IsToldFromAnAllocation) {
  std::string const newName = "A new channel with a name that no small string holds";
  AllocationWatchC const watch;
  DbgLogFileC const fresh(newName);
  EXPECT_LT(0U, watch.allocationCount());
}

}  // namespace
}  // namespace KTX::DBG::TEST
