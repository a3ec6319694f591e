#include "Posix/KTX_TIM_PosixZoneRule.h"

#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "timezones/KTX_TIM_LibraryClock.h"

namespace KTX::TIM::TEST {
namespace {

std::int64_t utcOf(int year, int month, int day, int hour, int minute = 0, int second = 0) {
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_hour = hour;
  fields.tm_min = minute;
  fields.tm_sec = second;
  return timegm(&fields);
}

PosixZoneRuleC ruleOf(char const* text) {
  PosixZoneRuleC rule;
  EXPECT_TRUE(PosixZoneRuleC::parse(text, rule)) << text;
  return rule;
}

TEST(PosixZoneRule, ReadsEveryFormOfAFixedOffset) {
  struct {
    char const* text;
    std::int32_t secondsEast;
    char const* name;
  } const cases[] = {{"UTC0", 0, "UTC"},
                     {"EST5", -5 * 3600, "EST"},
                     {"EST+5", -5 * 3600, "EST"},
                     {"CET-1", 3600, "CET"},
                     {"<+0545>-5:45", 5 * 3600 + 45 * 60, "+0545"},
                     {"<-03>3", -3 * 3600, "-03"},
                     {"abcdefghij24:59:59", -(24 * 3600 + 59 * 60 + 59), "abcdefghij"},
                     {"LMT-0:53:28", 53 * 60 + 28, "LMT"}};
  for (auto const& c : cases) {
    PosixZoneRuleC const rule = ruleOf(c.text);
    EXPECT_FALSE(rule.hasDaylight());
    EXPECT_EQ(c.secondsEast, rule.offsetAt(0).secondsEast);
    EXPECT_EQ(c.name, rule.standard().abbreviation);
  }
}

TEST(PosixZoneRule, RefusesWhatIsNoRule) {
  for (char const* const text : {"",
                                 "E",
                                 "ES5",
                                 "EST",
                                 "<E>5",
                                 "<EST5",
                                 "<ES T>5",
                                 "5",
                                 "EST25",
                                 "EST5:60",
                                 "EST5:00:60",
                                 "EST5:",
                                 "EST5:0:",
                                 "EST+-5",
                                 "EST5x",
                                 "EST5ED",
                                 "EST5EDT,",
                                 "EST5EDT,M3.2.0",
                                 "EST5EDT,M3.2.0,",
                                 "EST5EDT,M3.2.0,M11.1.0,",
                                 "EST5EDT4 M3.2.0,M11.1.0",
                                 "EST5EDT,M3.2.0M11.1.0",
                                 "EST5EDT,M3,M11.1.0",
                                 "EST5EDT,M3.2,M11.1.0",
                                 "EST5EDT,M0.2.0,M11.1.0",
                                 "EST5EDT,M13.2.0,M11.1.0",
                                 "EST5EDT,M3.0.0,M11.1.0",
                                 "EST5EDT,M3.6.0,M11.1.0",
                                 "EST5EDT,M3.2.7,M11.1.0",
                                 "EST5EDT,J0,J365",
                                 "EST5EDT,J366,J365",
                                 "EST5EDT,366,0",
                                 "EST5EDT,M3.2.0/168,M11.1.0",
                                 "EST5EDT,M3.2.0/2:60,M11.1.0",
                                 "EST5EDT,M3.2.0/,M11.1.0",
                                 "EST5EDT M3.2.0,M11.1.0",
                                 ":EST5",
                                 " EST5",
                                 "EST5 ",
                                 "EST00005"}) {
    PosixZoneRuleC rule = ruleOf("KEPT0");
    EXPECT_FALSE(PosixZoneRuleC::parse(text, rule)) << text;
    EXPECT_EQ("KEPT", rule.standard().abbreviation);
  }
}

TEST(PosixZoneRule, ChangesAtTheSecond) {
  struct {
    char const* text;
    std::int64_t change;
    std::int32_t before;
    std::int32_t after;
  } const cases[] = {{"CET-1CEST,M3.5.0,M10.5.0/3", utcOf(2026, 3, 29, 1), 3600, 7200},
                     {"CET-1CEST,M3.5.0,M10.5.0/3", utcOf(2026, 10, 25, 1), 7200, 3600},
                     {"EST5EDT,M3.2.0,M11.1.0", utcOf(2026, 3, 8, 7), -18000, -14400},
                     {"EST5EDT,M3.2.0,M11.1.0", utcOf(2026, 11, 1, 6), -14400, -18000},
                     {"EST5EDT", utcOf(2026, 3, 8, 7), -18000, -14400},
                     {"IST-1GMT0,M10.5.0,M3.5.0/1", utcOf(2026, 3, 29, 1), 0, 3600},
                     {"IST-1GMT0,M10.5.0,M3.5.0/1", utcOf(2026, 10, 25, 1), 3600, 0},
                     {"AEST-10AEDT,M10.1.0,M4.1.0/3", utcOf(2026, 4, 4, 16), 39600, 36000},
                     {"AEST-10AEDT,M10.1.0,M4.1.0/3", utcOf(2026, 10, 3, 16), 36000, 39600},
                     {"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", utcOf(2026, 4, 4, 15), 39600, 37800},
                     {"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", utcOf(2026, 3, 29, 1), -7200, -3600},
                     {"EET-2EEST,M3.4.4/50,M10.4.4/50", utcOf(2026, 3, 28, 0), 7200, 10800},
                     {"AAA0BBB,J59/0,J60/0", utcOf(2024, 2, 28, 0), 0, 3600},
                     {"AAA0BBB,J59/0,J60/0", utcOf(2024, 2, 29, 23), 3600, 0},
                     {"AAA0BBB,58/0,59/0", utcOf(2024, 2, 28, 23), 3600, 0},
                     {"AAA0BBB,58/0,59/0", utcOf(2023, 2, 28, 23), 3600, 0}};
  for (auto const& c : cases) {
    PosixZoneRuleC const rule = ruleOf(c.text);
    SCOPED_TRACE(c.text);
    EXPECT_EQ(c.before, rule.offsetAt(c.change - 1).secondsEast);
    EXPECT_EQ(c.after, rule.offsetAt(c.change).secondsEast);
  }
}

TEST(PosixZoneRule, DaylightTimeMayLastForEver) {
  PosixZoneRuleC const rule = ruleOf("EST5EDT,0/0,J365/25");
  for (int year = 1990; year < 2050; ++year) {
    for (std::int64_t shift = -10 * 3600; shift <= 10 * 3600; shift += 1800) {
      EXPECT_EQ(-14400, rule.offsetAt(utcOf(year, 1, 1, 0) + shift).secondsEast);
    }
  }
}

TEST(PosixZoneRule, TheLatestChangeHoldsWhereOneYearReachesIntoTheNext) {
  // Starts on December 25 at 01:00 of the year before, and ends on January 6 at 23:00 of the next.
  PosixZoneRuleC const rule = ruleOf("AAA0BBB,J1/-167,J365/167");
  std::int64_t const end = utcOf(2027, 1, 6, 22);  // 23:00 of daylight time
  EXPECT_EQ(3600, rule.offsetAt(end - 1).secondsEast);
  EXPECT_EQ(0, rule.offsetAt(end).secondsEast);
  EXPECT_EQ(0, rule.offsetAt(utcOf(2027, 12, 25, 1) - 1).secondsEast);
  EXPECT_EQ(3600, rule.offsetAt(utcOf(2027, 12, 25, 1)).secondsEast);
}

TEST(PosixZoneRule, AgreesWithTheCLibrary) {
  for (char const* const text :
       {"CET-1CEST,M3.5.0,M10.5.0/3", "EST5EDT", "AEST-10AEDT,M10.1.0,M4.1.0/3",
        "<+1245>-12:45<+1345>,M9.5.0/2:45,M4.1.0/3:45", "<-04>4<-03>,M9.1.6/24,M4.1.6/24",
        "EET-2EEST,M3.4.4/50,M10.4.4/50", "<-02>2<-01>,M3.5.0/-1,M10.5.0/0",
        "IST-1GMT0,M10.5.0,M3.5.0/1", "AAA3BBB1,J60,J300/5", "AAA3BBB,60,300"}) {
    SCOPED_TRACE(text);
    PosixZoneRuleC const rule = ruleOf(text);
    EnvironmentZoneC const zone(text);
    for (std::int64_t utc = utcOf(2019, 1, 1, 0); utc < utcOf(2029, 1, 1, 0); utc += 1800 * 5) {
      ASSERT_EQ(libraryOffsetSeconds(utc), rule.offsetAt(utc).secondsEast) << utc;
    }
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
