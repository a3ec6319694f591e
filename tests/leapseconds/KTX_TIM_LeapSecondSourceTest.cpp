#include "KTX/TIM/KTX_TIM_LeapSecondSource.h"

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(LeapSecondSource, HasTheNameThatLogLinesPrint) {
  struct {
    std::uint32_t source;
    char const* name;
  } const cases[] = {{0, "Default"},          {1, "Forced"},  {2, "Site"},      {3, "GPS"},
                     {4, "GLONASS"},          {5, "GALILEO"}, {6, "SBAS"},      {7, "QZSS"},
                     {8, "BEIDOU"},           {9, "Unknown"}, {255, "Unknown"}, {256, "Unknown"},
                     {0xFFFFFFFFU, "Unknown"}};
  for (auto const& c : cases) {
    EXPECT_STREQ(c.name, leapSecondSourceName(static_cast<LeapSecondSource>(c.source)));
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
