#include "KTX/TIM/KTX_TIM_TimeBase.h"

#include <limits>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(TimeBase, HasAName) {
  struct {
    std::int32_t value;
    char const* name;
  } const cases[] = {{-2, "UNKNOWN"},
                     {-1, "TIMEBASE_INV"},
                     {0, "TIMEBASE_GPS"},
                     {1, "TIMEBASE_UTC"},
                     {2, "TIMEBASE_LOCAL"},
                     {3, "UNKNOWN"},
                     {std::numeric_limits<std::int32_t>::min(), "UNKNOWN"},
                     {std::numeric_limits<std::int32_t>::max(), "UNKNOWN"}};
  for (auto const& c : cases) {
    EXPECT_STREQ(c.name, timeBaseToString(static_cast<TimeBaseE>(c.value))) << c.value;
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
