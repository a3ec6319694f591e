#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "receiver/KTX_RCV_MessageRecorder.h"

namespace KTX::RCV::TEST {
namespace {

std::string sentence(std::string const& body) {
  unsigned sum = 0;
  for (char const c : body) {
    sum ^= static_cast<unsigned char>(c);
  }
  char end[8];
  std::snprintf(end, sizeof(end), "*%02X\r\n", sum);
  return "$" + body + end;
}

std::string rmc(std::string const& time, std::string const& status, std::string const& date) {
  return sentence("GPRMC," + time + "," + status + ",4829.0005,N,00022.0016,E,0.16,212.28," + date +
                  ",,,A");
}

TEST(NmeaReader, ReadsDateAndTimeOfRmc) {
  WholeReadingC const reading(rmc("000231.42", "A", "220899"));
  ASSERT_EQ(1U, reading.events().size());
  ReceiverMessageC const& event = reading.event(0);
  EXPECT_EQ(MESSAGE_TIME, event.kind);
  EXPECT_EQ(FORMAT_NMEA, event.format);
  EXPECT_EQ("GPRMC", event.name);
  EXPECT_EQ(REFUSAL_NONE, event.refusal);
  EXPECT_EQ(TIMEFORM_UTC, event.timeForm);
  EXPECT_EQ("1999-08-22T00:02:31.420000000Z", isoText(event.utc));
  EXPECT_EQ(WARNING_NONE, event.warnings);
  EXPECT_EQ(1U, event.place.line);
  EXPECT_EQ(0U, event.place.offset);
  EXPECT_EQ(-1, event.accuracyNs);
}

TEST(NmeaReader, ReadsZdaOfAnyTalkerAndIgnoresItsZone) {
  for (std::string const talker : {"GP", "GN", "IN", "BD", "XY"}) {
    SCOPED_TRACE(talker);
    WholeReadingC const reading(sentence(talker + "ZDA,195719,16,04,2014,-02,30"));
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_EQ(talker + "ZDA", reading.event(0).name);
    EXPECT_EQ("2014-04-16T19:57:19.000000000Z", isoText(reading.event(0).utc));
    EXPECT_EQ(REFUSAL_NONE, reading.event(0).refusal);
  }
}

TEST(NmeaReader, PassesOverProprietarySentencesThatEndLikeATimeSentence) {
  WholeReadingC const reading(sentence("PXRMC,000231,A,,,,,,,220899,,,A"));
  EXPECT_TRUE(reading.events().empty());
  EXPECT_EQ(1U, reading.counts.sentences);
}

TEST(NmeaReader, NamesWhyATimeSentenceIsRefused) {
  struct {
    std::string text;
    RefusalE refusal;
    bool hasTime;
  } const cases[] = {
      {rmc("", "V", ""), REFUSAL_VOID, false},
      {rmc("000425.00", "V", "220899"), REFUSAL_VOID, true},
      {rmc("000425.00", "", "220899"), REFUSAL_VOID, true},
      {rmc("", "A", "220899"), REFUSAL_NO_TIME, false},
      {rmc("240000", "A", "220899"), REFUSAL_BAD_TIME, false},
      {rmc("236000", "A", "220899"), REFUSAL_BAD_TIME, false},
      {rmc("235961", "A", "220899"), REFUSAL_BAD_TIME, false},
      {rmc("23595", "A", "220899"), REFUSAL_BAD_TIME, false},
      {rmc("235959,5", "A", "220899"), REFUSAL_VOID, false},
      {rmc("2359595", "A", "220899"), REFUSAL_BAD_TIME, false},
      {rmc("235959.x", "A", "220899"), REFUSAL_BAD_TIME, false},
      {rmc("-10000", "A", "220899"), REFUSAL_BAD_TIME, false},
      {rmc("000425.00", "A", ""), REFUSAL_NO_DATE, false},
      {rmc("000231.099", "A", "2208-1"), REFUSAL_BAD_DATE, false},
      {rmc("000231.099", "A", "320899"), REFUSAL_BAD_DATE, false},
      {rmc("000231.099", "A", "290223"), REFUSAL_BAD_DATE, false},
      {rmc("000231.099", "A", "290224"), REFUSAL_NONE, true},
      {rmc("000231.099", "A", "22089"), REFUSAL_BAD_DATE, false},
      {rmc("235960.00", "A", "311216"), REFUSAL_LEAP_SECOND, true},
      {sentence("GPRMC,000231"), REFUSAL_VOID, false},
      {sentence("GPRMC"), REFUSAL_VOID, false},
      {sentence("GPZDA,095559,,,,,"), REFUSAL_NO_DATE, false},
      {sentence("GPZDA,,,,,,"), REFUSAL_NO_TIME, false},
      {sentence("GPZDA,095559,16,04,,,"), REFUSAL_BAD_DATE, false},
      {sentence("GPZDA,095559,31,04,2014,,"), REFUSAL_BAD_DATE, false},
      {sentence("GPZDA,095559,16,04,201,,"), REFUSAL_BAD_DATE, false},
      {sentence("GPZDA,195719,16,04,14,-02,00"), REFUSAL_BAD_DATE, false},
      {sentence("GPZDA,095559,016,04,2014,,"), REFUSAL_BAD_DATE, false},
      {sentence("GPZDA,095559,16,04,1899,,"), REFUSAL_BAD_DATE, false},
      {sentence("GPZDA,235960,31,12,2016,,"), REFUSAL_LEAP_SECOND, true},
      {sentence("GPZDA"), REFUSAL_NO_TIME, false},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    WholeReadingC const reading(c.text);
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_STREQ(refusalName(c.refusal), refusalName(reading.event(0).refusal));
    EXPECT_EQ(c.hasTime ? TIMEFORM_UTC : TIMEFORM_NONE, reading.event(0).timeForm);
  }
}

TEST(NmeaReader, CompletesTwoDigitYearsFrom1980To2079) {
  struct {
    char const* text;
    std::int32_t year;
  } const cases[] = {{"79", 2079}, {"80", 1980}, {"99", 1999}, {"00", 2000}, {"24", 2024}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    WholeReadingC const reading(rmc("000000", "A", std::string("0101") + c.text));
    EXPECT_EQ(c.year, reading.event(0).utc.year);
  }
}

TEST(NmeaReader, ReadsFractionsOfAnyLength) {
  struct {
    char const* text;
    std::int32_t nanosecond;
  } const cases[] = {{"000000", 0},
                     {"000000.", 0},
                     {"000000.5", 500000000},
                     {"000000.099", 99000000},
                     {"000000.123456789", 123456789},
                     {"000000.9999999999999", 999999999}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    WholeReadingC const reading(rmc(c.text, "A", "010120"));
    EXPECT_EQ(REFUSAL_NONE, reading.event(0).refusal);
    EXPECT_EQ(c.nanosecond, reading.event(0).utc.nanosecond);
  }
}

TEST(NmeaReader, RefusesAWrongOrCutChecksum) {
  for (char const* const text :
       {"$GPZDA,222449,25,10,2010,00,00*6E\r\n", "$GPZDA,222449,25,10,2010,00,00*4",
        "$GPZDA,222449,25,10,2010,00,00*\r\n", "$GPZDA,222449,25,10,2010,00,00*G3\r\n"}) {
    SCOPED_TRACE(text);
    WholeReadingC const reading(text);
    ASSERT_EQ(1U, reading.events().size());
    EXPECT_EQ(REFUSAL_BAD_CHECKSUM, reading.event(0).refusal);
    EXPECT_EQ("GPZDA", reading.event(0).name);
    EXPECT_EQ(1U, reading.counts.badChecksums);
  }
}

TEST(NmeaReader, TakesAChecksumInSmallLetters) {
  std::string text = sentence("GPZDA,222449,25,10,2010,00,08");
  ASSERT_NE(std::string::npos, text.find("*4E"));
  text.replace(text.find("*4E"), 3, "*4e");
  EXPECT_EQ(REFUSAL_NONE, WholeReadingC(text).event(0).refusal);
}

TEST(NmeaReader, TakesAStreamWithoutChecksumsWithASign) {
  WholeReadingC const reading(
      "$GPZDA,222449,25,10,2010,+00,00\r\n$GPZDA,222450,25,10,2010,+00,00\n");
  ASSERT_EQ(2U, reading.events().size());
  EXPECT_EQ(REFUSAL_NONE, reading.event(0).refusal);
  EXPECT_EQ(WARNING_NO_CHECKSUM, reading.event(0).warnings);
  EXPECT_EQ(2U, reading.counts.withoutChecksum);
  EXPECT_EQ(2U, reading.event(1).place.line);
}

TEST(NmeaReader, TakesAMissingChecksumForACutWhereOthersHaveOne) {
  WholeReadingC const reading(rmc("000000", "A", "010120") + "$GPZDA,222449,25,10,20\r\n");
  ASSERT_EQ(2U, reading.events().size());
  EXPECT_EQ(REFUSAL_CUT, reading.event(1).refusal);
}

TEST(NmeaReader, FindsTheSentenceThatCutsIntoAnother) {
  WholeReadingC const reading("$GPGSV,4,1,15,02,11,115,36,0" + rmc("000000", "A", "010120") +
                              "5,34,060,48*71\r\n" + rmc("000001", "A", "010120"));
  ASSERT_EQ(3U, reading.events().size());
  EXPECT_EQ(REFUSAL_CUT, reading.event(0).refusal);
  EXPECT_EQ("GPGSV", reading.event(0).name);
  EXPECT_EQ(REFUSAL_NONE, reading.event(1).refusal);
  EXPECT_EQ(28U, reading.event(1).place.offset);
  EXPECT_EQ(1U, reading.event(1).place.line);
  EXPECT_EQ(3U, reading.event(2).place.line);
  EXPECT_EQ(3U, reading.counts.sentences);
}

TEST(NmeaReader, NamesNothingThatIsNoAddress) {
  WholeReadingC const reading("$GP\"RMC,1*00\r\n$,*00\r\n$GP");
  ASSERT_EQ(3U, reading.events().size());
  EXPECT_EQ("", reading.event(0).name);
  EXPECT_EQ("", reading.event(1).name);
  EXPECT_EQ("GP", reading.event(2).name);
}

TEST(NmeaReader, SignsAZdaWhileTheReceiverHasNoFix) {
  std::string const zda = sentence("GPZDA,000000,01,01,2020,00,00");
  std::string const noFix = sentence("GPGGA,000000,,,,,0,00,,,M,,M,,");
  std::string const fix = sentence("GPGGA,000000,,,,,1,08,,,M,,M,,");
  std::string const unknown = sentence("GPGGA,000000,,,,,,08,,,M,,M,,");
  struct {
    std::string text;
    std::uint32_t signs;
  } const cases[] = {
      {zda, WARNING_NONE},
      {noFix + zda, WARNING_NO_FIX},
      {noFix + unknown + zda, WARNING_NO_FIX},
      {noFix + fix + zda, WARNING_NONE},
      {rmc("000000", "V", "010120") + zda, WARNING_NO_FIX},
      {rmc("000000", "V", "010120") + rmc("000000", "A", "010120") + zda, WARNING_NONE}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    WholeReadingC const reading(c.text);
    EXPECT_EQ(c.signs, reading.events().back().warnings);
    EXPECT_EQ(REFUSAL_NONE, reading.events().back().refusal);
  }
}

TEST(NmeaReader, CountsEveryKindOfSentence) {
  WholeReadingC const reading(sentence("GPGGA,1") + sentence("GPGGA,2") + sentence("GPGSV,1") +
                              rmc("000000", "A", "010120"));
  EXPECT_EQ(4U, reading.counts.sentences);
  EXPECT_EQ(2U, reading.counts.messageCount("GPGGA"));
  EXPECT_EQ(1U, reading.counts.messageCount("GPGSV"));
  EXPECT_EQ(1U, reading.counts.messageCount("GPRMC"));
  EXPECT_EQ(0U, reading.counts.messageCount("GPZDA"));
  EXPECT_EQ(4U, reading.counts.lines);
}

}  // namespace
}  // namespace KTX::RCV::TEST
