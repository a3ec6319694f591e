#include "KTX/TIM/KTX_TIM_TimeKind.h"

#include <iomanip>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(TimeKind, IsWrittenAsItsLabel) {
  struct {
    std::int32_t value;
    char const* label;
  } const cases[] = {{-1, "n/a"},
                     {0, "GPS"},
                     {1, "UTC"},
                     {2, "LOC"},
                     {3, "SYS"},
                     {4, "n/a"},
                     {std::numeric_limits<std::int32_t>::min(), "n/a"},
                     {std::numeric_limits<std::int32_t>::max(), "n/a"}};
  for (auto const& c : cases) {
    std::ostringstream stream;
    stream << std::setw(10) << static_cast<TimeKindE>(c.value);
    EXPECT_EQ(c.label, stream.str()) << c.value;
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
