#include <iomanip>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <streambuf>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "values/KTX_TIM_ZoneOffset.h"

namespace KTX::TIM::TEST {
namespace {

YmdhmsC example(TimeBaseE base) {
  YmdhmsC value = YmdhmsC::zero(base);
  value.year = 2024;
  value.month = 3;
  value.day = 7;
  value.hour = 8;
  value.minute = 9;
  value.second = 5;
  value.hundredths = 42;
  value.dayOfWeek = 5;
  value.milliseconds = 420;
  return value;
}

std::string textOf(YmdhmsC const& value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

class Grouping : public std::numpunct<char> {
 protected:
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\1"; }
};

std::locale groupingLocale() {
  return std::locale(std::locale::classic(), new Grouping);
}

TEST(YmdhmsText, IsWrittenInUtc) {
  EXPECT_EQ("2024-03-07T08:09:05.42Z", textOf(example(TIMEBASE_UTC)));
  EXPECT_EQ("2024-03-07T08:08:47.42Z", textOf(example(TIMEBASE_GPS)));
  EXPECT_EQ("2024-03-07T08:09:05.42Z", textOf(example(TIMEBASE_INV)));
  ZoneOffsetC const zone(60);
  EXPECT_EQ("2024-03-07T07:09:05.42Z", textOf(example(TIMEBASE_LOCAL)));
}

TEST(YmdhmsText, WritesLocalTimeBefore1980ThroughDays) {
  ZoneOffsetC const zone(60);
  YmdhmsC value = example(TIMEBASE_LOCAL);
  value.year = 1970;
  EXPECT_EQ("1970-03-07T07:09:05.42Z", textOf(value));
}

TEST(YmdhmsText, WritesHundredthsWithoutALeadingZero) {
  YmdhmsC value = example(TIMEBASE_UTC);
  value.hundredths = 5;
  value.milliseconds = 50;
  EXPECT_EQ("2024-03-07T08:09:05.5Z", textOf(value));
  value.hundredths = 0;
  value.milliseconds = 0;
  EXPECT_EQ("2024-03-07T08:09:05.0Z", textOf(value));
}

TEST(YmdhmsText, WritesTheHundredthsAsStored) {
  YmdhmsC value = example(TIMEBASE_UTC);
  value.hundredths = 45;
  value.milliseconds = 123;
  EXPECT_EQ("2024-03-07T08:09:05.45Z", textOf(value));
}

TEST(YmdhmsText, WritesFieldsOutOfRangeAsTheyStand) {
  YmdhmsC value = YmdhmsC::zero(TIMEBASE_UTC);
  EXPECT_EQ("0000-00-00T00:00:00.0Z", textOf(value));
  value.year = 65535;
  value.month = value.day = value.hour = value.minute = value.second = value.hundredths = 255;
  EXPECT_EQ("65535-255-255T255:255:255.255Z", textOf(value));
}

TEST(YmdhmsText, KeepsTheStreamsFormattingOutAndUnchanged) {
  std::ostringstream stream;
  stream.imbue(groupingLocale());
  stream << std::hex << std::showpos << std::setfill('*') << std::setw(60);
  auto const flags = stream.flags();
  stream << example(TIMEBASE_UTC);
  EXPECT_EQ("2024-03-07T08:09:05.42Z", stream.str());
  EXPECT_EQ(flags, stream.flags());
  EXPECT_EQ('*', stream.fill());
  EXPECT_EQ(60, stream.width());
}

TEST(YmdhmsText, IsReadBack) {
  std::istringstream stream("2024-03-07T08:09:05.42Z");
  YmdhmsC value = YmdhmsC::zero(TIMEBASE_LOCAL, 1);
  value.dayOfWeek = 6;
  ASSERT_TRUE(stream >> value);
  EXPECT_EQ(2024, value.year);
  EXPECT_EQ(3, value.month);
  EXPECT_EQ(7, value.day);
  EXPECT_EQ(8, value.hour);
  EXPECT_EQ(9, value.minute);
  EXPECT_EQ(5, value.second);
  EXPECT_EQ(42, value.hundredths);
  EXPECT_EQ(420, value.milliseconds);
  EXPECT_EQ(6, value.dayOfWeek);
  EXPECT_EQ(1U, value.precision);
  EXPECT_EQ(TIMEBASE_UTC, value.timeBase);
}

TEST(YmdhmsText, TakesAnySeparatorAndAnyLastCharacter) {
  std::istringstream stream("1999x12x31x23x59x60x5z");
  YmdhmsC value = YmdhmsC::zero(TIMEBASE_GPS);
  ASSERT_TRUE(stream >> value);
  EXPECT_EQ("1999-12-31T23:59:60.5Z", textOf([&] {
              YmdhmsC utc = value;
              utc.timeBase = TIMEBASE_UTC;
              return utc;
            }()));
  EXPECT_EQ(60, value.second);
  EXPECT_EQ(5, value.hundredths);
  EXPECT_EQ(50, value.milliseconds);
  EXPECT_EQ(TIMEBASE_GPS, value.timeBase);
}

TEST(YmdhmsText, TakesABlankAsASeparator) {
  std::istringstream stream("2024-03-07 18:09:05.42Z");
  YmdhmsC value = YmdhmsC::zero();
  ASSERT_TRUE(stream >> value);
  EXPECT_EQ(18, value.hour);
}

TEST(YmdhmsText, ReadsDecimalNumbersWhateverTheStreamsFormatting) {
  for (auto const base : {std::ios_base::oct, std::ios_base::hex, std::ios_base::fmtflags{}}) {
    std::istringstream stream("2024-08-09T08:09:09.09Z");
    stream.imbue(groupingLocale());
    stream.setf(base, std::ios_base::basefield);
    YmdhmsC value = YmdhmsC::zero();
    ASSERT_TRUE(stream >> value);
    EXPECT_EQ(8, value.month);
    EXPECT_EQ(9, value.day);
    EXPECT_EQ(9, value.hundredths);
    EXPECT_EQ(base, stream.flags() & std::ios_base::basefield);
  }
}

TEST(YmdhmsText, LeavesTheRestOfTheTextInTheStream) {
  std::istringstream stream("2024-03-07T08:09:05.42Z2025-03-07T08:09:05.5Z rest");
  YmdhmsC first = YmdhmsC::zero();
  YmdhmsC second = YmdhmsC::zero();
  std::string rest;
  ASSERT_TRUE(stream >> first >> second >> rest);
  EXPECT_EQ(2024, first.year);
  EXPECT_EQ(2025, second.year);
  EXPECT_EQ("rest", rest);
}

TEST(YmdhmsText, CutsNumbersToTheWidthOfTheirFields) {
  std::istringstream stream("65536-256-257T-1:+2:300.-5Z");
  YmdhmsC value = YmdhmsC::zero();
  ASSERT_TRUE(stream >> value);
  EXPECT_EQ(0, value.year);
  EXPECT_EQ(0, value.month);
  EXPECT_EQ(1, value.day);
  EXPECT_EQ(255, value.hour);
  EXPECT_EQ(2, value.minute);
  EXPECT_EQ(44, value.second);
  EXPECT_EQ(251, value.hundredths);
  EXPECT_EQ(2510, value.milliseconds);
}

TEST(YmdhmsText, CountsTheFractionInHundredthsHoweverManyDigitsItHas) {
  struct {
    char const* text;
    int hundredths;
    std::int64_t milliseconds;
  } const cases[] = {{"2024-03-07T08:09:05.42Z", 42, 420},
                     {"2024-03-07T08:09:05.042Z", 42, 420},
                     {"2024-03-07T08:09:05.4Z", 4, 40},
                     {"2024-03-07T08:09:05.420Z", 164, 1640}};  // 420 cut to 8 bits
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    std::istringstream stream(c.text);
    YmdhmsC value = YmdhmsC::zero();
    ASSERT_TRUE(stream >> value);
    EXPECT_EQ(5, value.second);
    EXPECT_EQ(c.hundredths, value.hundredths);
    EXPECT_EQ(c.milliseconds, value.effectiveMilliseconds());
  }
}

TEST(YmdhmsText, ReadsNoOffset) {
  std::istringstream stream("2024-03-07T08:09:05.42+01:00");
  YmdhmsC value = YmdhmsC::zero(TIMEBASE_GPS);
  std::string rest;
  ASSERT_TRUE(stream >> value >> rest);
  EXPECT_EQ(8, value.hour);
  EXPECT_EQ(TIMEBASE_GPS, value.timeBase);
  EXPECT_EQ("01:00", rest);
}

TEST(YmdhmsText, ChecksNoRanges) {
  std::istringstream stream("2024-13-45T25:61:62.99Z");
  YmdhmsC value = YmdhmsC::zero();
  ASSERT_TRUE(stream >> value);
  EXPECT_EQ(13, value.month);
  EXPECT_EQ(45, value.day);
  EXPECT_EQ(25, value.hour);
  EXPECT_EQ(61, value.minute);
  EXPECT_EQ(62, value.second);
}

TEST(YmdhmsText, LeavesDayOfWeekAndPrecisionAsTheyWere) {
  YmdhmsC const written(MjdTimeC(60376.25, TIMEBASE_UTC));  // a Thursday
  std::stringstream stream;
  stream << written << written;
  YmdhmsC other = YmdhmsC::zero(TIMEBASE_GPS, 1);
  ASSERT_TRUE(stream >> other);
  EXPECT_EQ(0, other.dayOfWeek);
  EXPECT_EQ(1U, other.precision);
  EXPECT_FALSE(written == other);
  YmdhmsC sameDay = YmdhmsC::zero();
  sameDay.dayOfWeek = written.dayOfWeek;
  ASSERT_TRUE(stream >> sameDay);
  EXPECT_TRUE(written == sameDay);
}

TEST(YmdhmsText, KeepsTheBaseWithoutALastCharacter) {
  std::istringstream stream("2024-03-07T08:09:05.42");
  YmdhmsC value = YmdhmsC::zero(TIMEBASE_GPS);
  stream >> value;
  EXPECT_TRUE(stream.eof());
  EXPECT_TRUE(stream.fail());
  EXPECT_FALSE(stream.bad());
  EXPECT_EQ(2024, value.year);
  EXPECT_EQ(42, value.hundredths);
  EXPECT_EQ(TIMEBASE_GPS, value.timeBase);
}

TEST(YmdhmsText, StaysAsItWasWhenANumberCannotBeRead) {
  char const* const texts[] = {"",
                               " ",
                               "x",
                               "2024",
                               "2024-",
                               "2024-03-07T08:09:05",
                               "2024-03-07T08:09:05Z",
                               "2024-03-07T08:09:05.",
                               "2024-03-07T08:09:05.Z",
                               "2024-03-07Txx:09:05.42Z",
                               "2147483648-03-07T08:09:05.42Z",
                               "-2147483649-03-07T08:09:05.42Z",
                               "99999999999999999999999999-03-07T08:09:05.42Z",
                               "2024-+-07T08:09:05.42Z"};
  for (char const* const text : texts) {
    SCOPED_TRACE(text);
    std::istringstream stream(text);
    YmdhmsC value = example(TIMEBASE_GPS);
    EXPECT_FALSE(stream >> value);
    EXPECT_EQ(2024, value.year);
    EXPECT_EQ(42, value.hundredths);
    EXPECT_EQ(420, value.milliseconds);
    EXPECT_EQ(TIMEBASE_GPS, value.timeBase);
  }
}

TEST(YmdhmsText, ReadsTheLimitsOfANumber) {
  std::istringstream stream("2147483647--2147483648-07T08:09:05.42Z");
  YmdhmsC value = YmdhmsC::zero();
  ASSERT_TRUE(stream >> value);
  EXPECT_EQ(65535, value.year);
  EXPECT_EQ(0, value.month);
}

TEST(YmdhmsText, SkipsBlanksOnlyWhereTheStreamDoes) {
  std::istringstream skipping("\t2024- 3-\t7T\r8:\n9:\v5.\f42Z");
  YmdhmsC value = YmdhmsC::zero();
  ASSERT_TRUE(skipping >> value);
  EXPECT_EQ(42, value.hundredths);
  std::istringstream strict("2024- 3-07T08:09:05.42Z");
  strict >> std::noskipws;
  YmdhmsC kept = YmdhmsC::zero();
  EXPECT_FALSE(strict >> kept);
  EXPECT_EQ(0, kept.year);
}

class FaultyBufferC : public std::streambuf {
 protected:
  int_type underflow() override { throw std::runtime_error("no data"); }
};

TEST(YmdhmsText, TurnsAnExceptionOfTheBufferIntoBadbit) {
  FaultyBufferC buffer;
  std::istream stream(&buffer);
  stream >> std::noskipws;
  YmdhmsC value = example(TIMEBASE_GPS);
  EXPECT_NO_THROW(stream >> value);
  EXPECT_TRUE(stream.bad());
  EXPECT_EQ(2024, value.year);
}

TEST(YmdhmsText, PassesAnExceptionOfTheBufferOnWhereTheStreamAsks) {
  FaultyBufferC buffer;
  std::istream stream(&buffer);
  stream >> std::noskipws;
  stream.exceptions(std::ios_base::badbit);
  YmdhmsC value = example(TIMEBASE_GPS);
  EXPECT_THROW(stream >> value, std::runtime_error);
  EXPECT_TRUE(stream.bad());
}

TEST(YmdhmsText, ThrowsForAFailureWhereTheStreamAsks) {
  std::istringstream stream("2024-03-07T08:09:05");
  stream.exceptions(std::ios_base::failbit);
  YmdhmsC value = example(TIMEBASE_GPS);
  EXPECT_THROW(stream >> value, std::ios_base::failure);
  EXPECT_EQ(42, value.hundredths);
}

// The plain form: what the stream's own operators read.
bool readPlainly(std::istream& stream, int (&numbers)[7], char& last) {
  for (int i = 0; i < 7; ++i) {
    if (i > 0) {
      stream.get();
    }
    stream >> std::dec >> numbers[i];
  }
  return static_cast<bool>(stream) && static_cast<bool>(stream.get(last));
}

TEST(YmdhmsText, ReadsWhatTheStreamsOwnOperatorsRead) {
  char const* const texts[] = {"2024-03-07T08:09:05.42Z",
                               "  2024 3 7 8 9 5 42 Z",
                               "+1-+2-+3-+4-+5-+6-+7+",
                               "-1--2--3--4--5--6--7-",
                               "007-0000-1-2-3-4-5q",
                               "2024-03-07T08:09:05.42",
                               "1 2 3 4 5 6",
                               "1,2,3,4,5,6,7,8",
                               "2147483648 1 1 1 1 1 1Z",
                               "-2147483648 1 1 1 1 1 1Z",
                               "1..2..3",
                               "1- -2-3-4-5-6-7Z",
                               "+-1-1-1-1-1-1-1Z",
                               "08-09-010-011-012-013-014Z"};
  for (char const* const text : texts) {
    SCOPED_TRACE(text);
    std::istringstream plain(text);
    int numbers[7] = {};
    char last = 0;
    bool const isRead = readPlainly(plain, numbers, last);
    std::istringstream stream(text);
    YmdhmsC value = YmdhmsC::zero();
    EXPECT_EQ(isRead, static_cast<bool>(stream >> value));
    EXPECT_EQ(plain.rdstate(), stream.rdstate());
    if (isRead) {
      EXPECT_EQ(static_cast<std::uint16_t>(numbers[0]), value.year);
      EXPECT_EQ(static_cast<std::uint8_t>(numbers[1]), value.month);
      EXPECT_EQ(static_cast<std::uint8_t>(numbers[6]), value.hundredths);
      EXPECT_EQ(last == 'Z' ? TIMEBASE_UTC : TIMEBASE_LOCAL, value.timeBase);
      EXPECT_EQ(plain.tellg(), stream.tellg());
    }
  }
}

// The plain form: a stream of its own, formatted number by number.
std::string writePlainly(YmdhmsC const& value) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream << std::setfill('0') << std::setw(4) << value.year << '-' << std::setw(2)
         << int{value.month} << '-' << std::setw(2) << int{value.day} << 'T' << std::setw(2)
         << int{value.hour} << ':' << std::setw(2) << int{value.minute} << ':' << std::setw(2)
         << int{value.second} << '.' << int{value.hundredths} << 'Z';
  return stream.str();
}

TEST(YmdhmsText, WritesWhatAFormattedStreamWrites) {
  YmdhmsC value = example(TIMEBASE_UTC);
  for (std::uint32_t i = 0; i < 65536; i += 7) {
    value.year = static_cast<std::uint16_t>(i);
    value.month = value.second = static_cast<std::uint8_t>(i);
    value.day = value.hundredths = static_cast<std::uint8_t>(i >> 8);
    value.hour = value.minute = static_cast<std::uint8_t>(i >> 3);
    ASSERT_EQ(writePlainly(value), textOf(value));
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
