#include "Posix/KTX_TIM_YearlyZoneRecord.h"

#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Posix/KTX_TIM_CivilDate.h"

namespace KTX::TIM::TEST {
namespace {

// "bias+standard+daylight standard date, daylight date", a date as month.week.weekday/time.
std::string textOf(SystemTimeRecordC const& date) {
  char text[64];
  EXPECT_EQ(0, date.year);
  EXPECT_EQ(0, date.milliseconds);
  snprintf(text, sizeof(text), "%d.%d.%d/%02d:%02d:%02d", date.month, date.day, date.dayOfWeek,
           date.hour, date.minute, date.second);
  return text;
}

std::string textOf(ZoneRecordC const& record) {
  return std::to_string(record.bias) + " " + std::to_string(record.standardBias) + " " +
         std::to_string(record.daylightBias) + " " + textOf(record.standardDate) + " " +
         textOf(record.daylightDate);
}

std::string recordOf(char const* rules, std::int64_t year) {
  PosixZoneRuleC rule;
  EXPECT_TRUE(PosixZoneRuleC::parse(rules, rule));
  return textOf(yearlyZoneRecord(ZoneDataC(rule), year));
}

TEST(YearlyZoneRecord, IsAllZeroWithoutDaylightTime) {
  EXPECT_EQ("0 0 0 0.0.0/00:00:00 0.0.0/00:00:00", recordOf("UTC0", 2026));
  EXPECT_EQ("-345 0 0 0.0.0/00:00:00 0.0.0/00:00:00", recordOf("<+0545>-5:45", 2026));
  EXPECT_EQ("720 0 0 0.0.0/00:00:00 0.0.0/00:00:00", recordOf("<-12>12", 2026));
}

TEST(YearlyZoneRecord, HasTheRulesOfBothHemispheres) {
  EXPECT_EQ("-60 0 -60 10.5.0/03:00:00 3.5.0/02:00:00",
            recordOf("CET-1CEST,M3.5.0,M10.5.0/3", 2026));
  EXPECT_EQ("300 0 -60 11.1.0/02:00:00 3.2.0/02:00:00", recordOf("EST5EDT,M3.2.0,M11.1.0", 2026));
  EXPECT_EQ("-600 0 -60 4.1.0/03:00:00 10.1.0/02:00:00",
            recordOf("AEST-10AEDT,M10.1.0,M4.1.0/3", 2026));
  EXPECT_EQ("-630 0 -30 4.1.0/02:00:00 10.1.0/02:00:00",
            recordOf("<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", 2026));
}

TEST(YearlyZoneRecord, TheOffsetFurtherEastIsDaylightTime) {
  EXPECT_EQ("0 0 -60 10.5.0/02:00:00 3.5.0/01:00:00", recordOf("IST-1GMT0,M10.5.0,M3.5.0/1", 2026));
}

TEST(YearlyZoneRecord, KeepsTheFourthWeekWhereTheRuleSaysSoAndTheLastElsewhere) {
  // The fourth Sunday of February 2026 is the last one too.
  EXPECT_EQ("0 0 -60 10.1.0/02:00:00 2.4.0/02:00:00", recordOf("AAA0BBB,M2.4.0,M10.1.0", 2026));
  EXPECT_EQ("0 0 -60 10.1.0/02:00:00 2.5.0/02:00:00", recordOf("AAA0BBB,M2.5.0,M10.1.0", 2026));
  EXPECT_EQ("0 0 -60 10.1.0/02:00:00 2.5.0/02:00:00", recordOf("AAA0BBB,J53,M10.1.0", 2026));
  // So are those of September, and of its Wednesdays the fifth.
  EXPECT_EQ("0 0 -60 9.4.0/02:00:00 2.4.0/02:00:00", recordOf("AAA0BBB,M2.4.0,M9.4.0", 2026));
  EXPECT_EQ("0 0 -60 9.5.3/02:00:00 2.4.0/02:00:00", recordOf("AAA0BBB,M2.4.0,M9.5.3", 2026));
}

TEST(YearlyZoneRecord, SaysTheDayOfItsYearWhereTheFormCannotSayTheRule) {
  // Before midnight: the last Sunday of March 2026 is the 29th, and of 2027 the 28th.
  EXPECT_EQ("120 0 -60 10.5.0/00:00:00 3.5.6/23:00:00",
            recordOf("<-02>2<-01>,M3.5.0/-1,M10.5.0/0", 2026));
  EXPECT_EQ("120 0 -60 10.5.0/00:00:00 3.5.6/23:00:00",
            recordOf("<-02>2<-01>,M3.5.0/-1,M10.5.0/0", 2027));
  // The last Sunday of March 2029 is the 25th; the Saturday before is not the last.
  EXPECT_EQ("120 0 -60 10.5.0/00:00:00 3.4.6/23:00:00",
            recordOf("<-02>2<-01>,M3.5.0/-1,M10.5.0/0", 2029));
  // At the end of the day, and days later.
  EXPECT_EQ("-120 0 -60 10.5.5/00:00:00 4.5.5/00:00:00",
            recordOf("EET-2EEST,M4.5.5/0,M10.5.4/24", 2026));
  EXPECT_EQ("-120 0 -60 10.4.6/02:00:00 3.5.6/02:00:00",
            recordOf("EET-2EEST,M3.4.4/50,M10.4.4/50", 2026));
  // A fixed day.
  EXPECT_EQ("0 0 -60 10.3.3/02:00:00 3.1.0/02:00:00", recordOf("AAA0BBB,J60,J294", 2026));
}

TEST(YearlyZoneRecord, ADayByNumberMovesWithTheYear) {
  EXPECT_EQ("0 0 -60 10.3.3/02:00:00 3.1.0/02:00:00", recordOf("AAA0BBB,59,293", 2026));
  EXPECT_EQ("0 0 -60 10.3.4/02:00:00 3.1.1/02:00:00", recordOf("AAA0BBB,J60,J294", 2027));
}

TEST(YearlyZoneRecord, RoundsToTheNearestMinute) {
  EXPECT_EQ("-53 0 0 0.0.0/00:00:00 0.0.0/00:00:00", recordOf("LMT-0:53:28", 2026));
  EXPECT_EQ("54 0 0 0.0.0/00:00:00 0.0.0/00:00:00", recordOf("LMT0:53:30", 2026));
  EXPECT_EQ(1, wholeMinutes(30));
  EXPECT_EQ(0, wholeMinutes(29));
  EXPECT_EQ(-1, wholeMinutes(-30));
  EXPECT_EQ(0, wholeMinutes(-29));
}

std::int64_t day(std::int32_t month, std::int32_t dayOfMonth) {
  return daysSinceEpoch({2026, month, dayOfMonth}) * SECONDS_PER_DAY;
}

std::string recordOf2026(std::vector<ZoneOffsetC> const& offsets,
                         std::vector<ZoneDataC::ChangeC> const& changes) {
  return textOf(yearlyZoneRecord(ZoneDataC(offsets, changes, {}), 2026));
}

TEST(YearlyZoneRecord, AnOffsetThatEndsWithinTheYearBeginsWithTheYear) {
  ZoneOffsetC const zero{0, false, "A"};
  ZoneOffsetC const one{3600, false, "B"};
  // 2026 begins on a Thursday.
  EXPECT_EQ("0 0 -60 6.1.1/01:00:00 1.1.4/00:00:00", recordOf2026({one, zero}, {{day(6, 1), 1}}));
  EXPECT_EQ("0 0 -60 1.1.4/00:00:00 6.1.1/00:00:00", recordOf2026({zero, one}, {{day(6, 1), 1}}));
}

TEST(YearlyZoneRecord, AChangeAtTheTurnOfTheYearIsNone) {
  ZoneOffsetC const zero{0, false, "A"};
  ZoneOffsetC const one{3600, false, "B"};
  EXPECT_EQ("-60 0 0 0.0.0/00:00:00 0.0.0/00:00:00", recordOf2026({zero, one}, {{day(1, 1), 1}}));
}

TEST(YearlyZoneRecord, AYearWithMoreChangesGetsTheFormThatIsRightLongest) {
  ZoneOffsetC const zero{0, false, "A"};
  ZoneOffsetC const one{3600, true, "B"};
  // A month of standard time within the summer is left out.
  EXPECT_EQ("0 0 -60 10.5.0/02:00:00 4.1.3/01:00:00",
            recordOf2026(
                {zero, one},
                {{day(4, 1) + 3600, 1}, {day(7, 1), 0}, {day(8, 1), 1}, {day(10, 25) + 3600, 0}}));
}

TEST(YearlyZoneRecord, ChangesOfNameAloneAreNone) {
  ZoneOffsetC const first{3600, false, "A"};
  ZoneOffsetC const second{3600, true, "B"};
  EXPECT_EQ("-60 0 0 0.0.0/00:00:00 0.0.0/00:00:00",
            recordOf2026({first, second}, {{day(6, 1), 1}, {day(9, 1), 0}}));
}

}  // namespace
}  // namespace KTX::TIM::TEST
