#include "leapseconds/KTX_TIM_LeapSecondLine.h"

#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "leapseconds/KTX_TIM_LeapSecondModel.h"

namespace KTX::TIM::TEST {
namespace {

std::optional<UtcLeapSecondRecord> parsed(std::string const& text) {
  UtcLeapSecondRecord const untouched{LEAPSECOND_GPS, 1, 2, 3, 4, false};
  LeapSecondLineC line;
  for (char const character : text) {
    line.add(character);
  }
  UtcLeapSecondRecord record = untouched;
  if (line.finish(record)) {
    return record;
  }
  EXPECT_EQ(untouched, record) << "changed by an unusable line";
  return std::nullopt;
}

TEST(LeapSecondLine, HoldsCurrentFutureWeekAndDayOrTheFirstDayWithTheNewCount) {
  struct {
    std::string text;
    UtcLeapSecondRecord record;
  } const cases[] = {
      {"18,18,1929,7", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {"17,18,1929,7", {LEAPSECOND_FORCED, 17, 18, 1929, 7, true}},
      {"18,18,2017-01-01", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {"18,18,2017,01,02", {LEAPSECOND_FORCED, 18, 18, 1930, 1, true}},
      {"18-18-2017-1-1", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {"18,18,1980-01-06", {LEAPSECOND_FORCED, 18, 18, 65535, 7, true}},
      {"18,18,1980-01-07", {LEAPSECOND_FORCED, 18, 18, 0, 1, true}},
      {"18,18,2024-03-01", {LEAPSECOND_FORCED, 18, 18, 2303, 5, true}},
      {"18,18,2024-02-30", {LEAPSECOND_FORCED, 18, 18, 2303, 5, true}},  // the day after the 29th
      {"0,0,0,1", withdrawForcedRecord()},
      {"18,18,1929,0", {LEAPSECOND_FORCED, 18, 18, 1929, 0, true}},
      {"18,,18,1929,7", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {"18,-,18-,1929--7", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {"18,-17,1929,7", {LEAPSECOND_FORCED, 18, 17, 1929, 7, true}},
      {"18 , 18,1929,7\r", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {" \t18 \v,\f18\t,1929 ,\t7 \r", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {"+18,+18,+1929,+7", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {"0018,018,01929,00000000000000000000007", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}},
      {"32767,32767,65535,255", {LEAPSECOND_FORCED, 32767, 32767, 65535, 255, true}},
      {"0,0,0,0", {LEAPSECOND_FORCED, 0, 0, 0, 0, true}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    std::optional<UtcLeapSecondRecord> const record = parsed(c.text);
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(c.record, *record);
  }
}

TEST(LeapSecondLine, IsNotUsableOtherwise) {
  using namespace std::string_literals;
  std::string const cases[] = {"",
                               " ",
                               ",",
                               ",,,",
                               ",,,,",
                               "18",
                               "18,18,1929",
                               "18,18,1929,7,1,1",
                               "18,18,2017,1,1,",
                               "18,18,2017,1,1,1,1",
                               ",18,18,1929,7",
                               "18,18,1929,7,",
                               "18,18,1929,7-",
                               "-18,18,1929,7",
                               "18, -18,1929,7",
                               "18,18, ,7",
                               "18,18,1929, ",
                               "18a,18,1929,7",
                               "18,18,1929,7x",
                               "18,18,1929,7 x",
                               "18,18,1929,7;",
                               "18,18,1 929,7",
                               "18,18,1929.0,7",
                               "1e1,18,1929,7",
                               "0x12,18,1929,7",
                               "++18,18,1929,7",
                               "+ 18,18,1929,7",
                               "+,18,1929,7",
                               "18+,18,1929,7",
                               "18 +,18,1929,7",
                               ";18,18,1929,7",
                               "; 18,18,1929,7",
                               " ;18,18,1929,7",
                               "32768,18,1929,7",
                               "18,32768,1929,7",
                               "18,18,65536,7",
                               "18,18,1929,256",
                               "18,18,65536,1,1",
                               "18,18,2017,256,1",
                               "18,18,2017,1,256",
                               "18,18,1929,99999999999",
                               "4294967314,18,1929,7",
                               "18446744073709551634,18,1929,7",
                               "18,18,1929,7\0"s,
                               "18,18\0,1929,7"s,
                               "\xEF\xBB\xBF"
                               "18,18,1929,7",
                               "18,18,1929,7\xC2\xA0",
                               "18,18,1929,\xEF\xBC\x97"};
  for (auto const& text : cases) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(parsed(text).has_value());
  }
}

TEST(LeapSecondLine, TakesALineOfAnyLength) {
  std::string const blanks(1000000, ' ');
  std::string const separators(1000000, ',');
  std::string const zeros(1000000, '0');
  UtcLeapSecondRecord const expected{LEAPSECOND_FORCED, 18, 18, 1929, 7, true};
  for (std::string const& text : {blanks + "18,18,1929,7" + blanks, "18" + separators + "18,1929,7",
                                  zeros + "18," + zeros + "18," + zeros + "1929,7"}) {
    std::optional<UtcLeapSecondRecord> const record = parsed(text);
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(expected, *record);
  }
  EXPECT_FALSE(parsed(std::string(1000000, '9') + ",18,1929,7").has_value());
  EXPECT_FALSE(parsed("18,18,1929,7" + separators).has_value());
}

TEST(LeapSecondLine, ReadsWhatAPlainParserReads) {
  constexpr std::uint32_t SEED = 20161231;
  SCOPED_TRACE(::testing::Message() << "seed " << SEED);
  std::mt19937 random(SEED);
  using namespace std::string_literals;
  std::string const pieces[] = {
      "18",    "17", "0", "7",  "1929", "2017", "12", "31",     "1",      "65536",
      "32768", "+",  " ", "\t", "\r",   "x",    ";",  "\0"s,    ",",      "-",
      ",",     "-",  ",", ", ", "255",  "256",  "00", "18,18,", "1929,7", "2017-01-01"};
  std::size_t usable = 0;
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (auto count = random() % 10; count > 0; --count) {
      text += pieces[random() % std::size(pieces)];
    }
    std::optional<UtcLeapSecondRecord> const expected = modelFile(text);
    ASSERT_EQ(expected, parsed(text)) << ::testing::PrintToString(text);
    usable += expected.has_value() ? 1U : 0U;
  }
  EXPECT_GT(usable, 300U);
}

}  // namespace
}  // namespace KTX::TIM::TEST
