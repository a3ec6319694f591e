#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

#include <gtest/gtest.h>

#include "leapseconds/KTX_TIM_LeapSecondModel.h"

namespace KTX::TIM::TEST {
namespace {

TEST(UtcLeapSecondRecord, IsEqualOnlyInAllSixFields) {
  UtcLeapSecondRecord const record{LEAPSECOND_GPS, 17, 18, 1929, 7, true};
  EXPECT_TRUE(record == UtcLeapSecondRecord(record));
  EXPECT_FALSE(record != UtcLeapSecondRecord(record));
  UtcLeapSecondRecord const others[] = {
      {LEAPSECOND_FORCED, 17, 18, 1929, 7, true}, {LEAPSECOND_GPS, 16, 18, 1929, 7, true},
      {LEAPSECOND_GPS, 17, 17, 1929, 7, true},    {LEAPSECOND_GPS, 17, 18, 1930, 7, true},
      {LEAPSECOND_GPS, 17, 18, 1929, 6, true},    {LEAPSECOND_GPS, 17, 18, 1929, 7, false}};
  for (auto const& other : others) {
    EXPECT_FALSE(record == other);
    EXPECT_TRUE(record != other);
  }
}

TEST(UtcLeapSecondRecord, DefaultIsTheLeapSecondAtTheEndOf2016) {
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 18, 18, 1929, 7, true}),
            defaultLeapSecondRecord());
}

TEST(UtcLeapSecondRecord, WithdrawalDiffersFromForcedZerosInDayAndKnown) {
  UtcLeapSecondRecord zeros{LEAPSECOND_FORCED, 0, 0, 0, 0, false};
  EXPECT_NE(zeros, withdrawForcedRecord());
  zeros.day = 1;
  EXPECT_NE(zeros, withdrawForcedRecord());
  zeros.effectivityKnown = true;
  EXPECT_EQ(zeros, withdrawForcedRecord());
}

}  // namespace
}  // namespace KTX::TIM::TEST
