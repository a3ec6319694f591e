#include "KTX/TIM/KTX_TIM_ClockFactory.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

template <class Period>
class ClockFactory : public ::testing::Test {
 protected:
  LogCaptureC log;
};

using PeriodsT = ::testing::Types<boost::milli, boost::nano>;
TYPED_TEST_SUITE(ClockFactory, PeriodsT, );

TYPED_TEST(ClockFactory, CorrectsAReferenceThatDoesNotFit) {
  struct {
    std::uint32_t type;
    std::uint32_t asked;
    std::uint32_t reference;
    std::size_t assertions;
  } const cases[] = {
      {1, 3, 3, 0}, {1, 0xFFFFFFFF, 3, 0}, {1, 0, 3, 1},          {1, 1, 3, 1},
      {1, 2, 3, 1}, {1, 4, 3, 1},          {2, 3, 3, 0},          {2, 0xFFFFFFFF, 3, 0},
      {2, 1, 3, 1}, {2, 2, 3, 1},          {2, 0xFFFFFFFE, 3, 1}, {3, 1, 1, 0},
      {3, 2, 2, 0}, {3, 0xFFFFFFFF, 1, 0}, {3, 0, 1, 1},          {3, 3, 1, 1},
      {3, 7, 1, 1},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(std::to_string(c.type) + ", " + std::to_string(c.asked));
    this->log.clear();
    auto const clock = createClock<TypeParam>(static_cast<ClockTypeE>(c.type),
                                              static_cast<ClockReferenceE>(c.asked));
    EXPECT_EQ(c.assertions, this->log.count());
    std::string const text = c.type == CLOCKTYPE_POSIX
                                 ? "Calendar clock takes UTC or local time!"
                                 : "Steady clock takes no calendar reference!";
    EXPECT_EQ(std::vector<std::string>(c.assertions, text), this->log.assertionTexts());
    ASSERT_TRUE(clock);
    EXPECT_EQ(1, clock.use_count());
    EXPECT_EQ(c.type, clock->getType());
    EXPECT_EQ(c.reference, clock->getReference());
    EXPECT_NE(0, clock->now().count());
  }
}

TYPED_TEST(ClockFactory, AnUnknownTypeGivesNothingAndTwoAssertions) {
  for (std::uint32_t const type : {0U, 4U, 0xFFFFFFFFU}) {
    for (std::uint32_t const reference : {0U, 1U, 3U, 0xFFFFFFFFU}) {
      this->log.clear();
      EXPECT_FALSE(createClock<TypeParam>(static_cast<ClockTypeE>(type),
                                          static_cast<ClockReferenceE>(reference)));
      EXPECT_THAT(this->log.assertionTexts(),
                  ::testing::ElementsAre("Clock type is unknown!", "No clock was built!"));
    }
  }
}

TYPED_TEST(ClockFactory, OnlyACalendarHasAnEpoch) {
  boost::posix_time::ptime const epoch(boost::gregorian::date(1970, 1, 1));
  EXPECT_TRUE(createClock<TypeParam>(CLOCKTYPE_GETTICKCOUNT, CLOCKREF_NONE)
                  ->getEpoch()
                  .is_not_a_date_time());
  EXPECT_TRUE(
      createClock<TypeParam>(CLOCKTYPE_STEADY, CLOCKREF_NONE)->getEpoch().is_not_a_date_time());
  EXPECT_EQ(epoch, createClock<TypeParam>(CLOCKTYPE_POSIX, CLOCKREF_UTC)->getEpoch());
  EXPECT_EQ(epoch, createClock<TypeParam>(CLOCKTYPE_POSIX, CLOCKREF_LOCAL)->getEpoch());
}

}  // namespace
}  // namespace KTX::TIM::TEST
